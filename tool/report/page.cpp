// The places of the skeleton are names between "@@". What each is replaced with:
//     POLICY   the content security policy, with the hashes of style and script
//     TITLE    the title, as text
//     STYLE    page.css
//     DATA     a script element of plain text for each block of data
//     SCRIPT   all *.js, joined in the order of their names
#include "tool/report/page.h"

#include "tool/report/base64.h"

namespace marvane::tool {

namespace {

constexpr std::string_view Mark = "@@";

/// "sha256-..." as a policy names it, of the hash in hexadecimal.
std::string PolicyHash(std::string_view hex)
{
    const auto digit = [](char letter) { return letter <= '9' ? letter - '0' : letter - 'a' + 10; };
    std::string bytes;
    for (std::size_t i = 0; i + 1 < hex.size(); i += 2)
        bytes += static_cast<char>(digit(hex[i]) << 4 | digit(hex[i + 1]));
    return "'sha256-" + Base64Text(bytes) + "'";
}

std::string Policy()
{
    return "default-src 'none'; script-src " + PolicyHash(REPORT_SCRIPT_HASH) + "; style-src " +
           PolicyHash(REPORT_STYLE_HASH) + "; img-src data:; base-uri 'none'; form-action 'none'";
}

void WriteBlock(Sink& sink, std::string_view id, std::string_view data)
{
    sink.Write("<script type=\"text/plain\" id=\"");
    sink.Write(id);
    sink.Write("\">");
    sink.Write(data);
    sink.Write("</script>\n");
}

void WriteData(const PageContent& content, Sink& sink)
{
    WriteBlock(sink, "model", content.Model);
    WriteBlock(sink, "lines", content.Lines);
    if (!content.Raw.empty())
        WriteBlock(sink, "raw", content.Raw);
}

void WritePlace(std::string_view name, const PageContent& content, Sink& sink)
{
    if (name == "POLICY")
        sink.Write(Policy());
    else if (name == "TITLE")
        sink.Write(HtmlText(content.Title));
    else if (name == "STYLE")
        sink.Write(ReportStyle());
    else if (name == "DATA")
        WriteData(content, sink);
    else if (name == "SCRIPT")
        sink.Write(ReportScript());
}

} // namespace

std::string HtmlText(std::string_view text)
{
    std::string html;
    for (const char letter : text) {
        if (letter == '&')
            html += "&amp;";
        else if (letter == '<')
            html += "&lt;";
        else if (letter == '>')
            html += "&gt;";
        else if (letter == '"')
            html += "&quot;";
        else
            html += letter;
    }
    return html;
}

void WritePage(const PageContent& content, Sink& sink)
{
    std::string_view rest = ReportPage();
    for (;;) {
        const std::size_t begin = rest.find(Mark);
        const std::size_t end =
            begin == std::string_view::npos ? begin : rest.find(Mark, begin + Mark.size());
        if (end == std::string_view::npos)
            break;
        sink.Write(rest.substr(0, begin));
        WritePlace(rest.substr(begin + Mark.size(), end - begin - Mark.size()), content, sink);
        rest.remove_prefix(end + Mark.size());
    }
    sink.Write(rest);
}

} // namespace marvane::tool
