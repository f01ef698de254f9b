// CheckFindings about the configuration file as a whole.
#include <algorithm>

#include "tool/setup/configuration_findings.h"
#include "tool/xml/xml_encoding.h"

namespace marvane::tool {

namespace {

constexpr std::string_view Blanks = " \t";

std::string Stripped(const std::string& line)
{
    const std::size_t begin = line.find_first_not_of(Blanks);
    return begin == std::string::npos ? std::string()
                                      : line.substr(begin, line.find_last_not_of(Blanks) - begin + 1);
}

bool IsUtf16(const std::string& bytes)
{
    return bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF") ||
           bytes.substr(0, 64).find('\0') != std::string::npos;
}

/// Number of the first line that is `wanted` but for blanks around it, 0 if there is none.
std::size_t LineThatIs(const Configuration& configuration, const char* wanted)
{
    for (std::size_t i = 0; i < configuration.Lines.size(); ++i)
        if (Stripped(configuration.Lines[i]) == wanted)
            return i + 1;
    return 0;
}

CheckFinding BlockNameFinding(const Configuration& configuration)
{
    const std::string rule = "Line 2 must be exactly \"<D_PDU_API_CFG>\"";
    const std::string effect = ": nothing of the file is read.";
    const std::size_t found = LineThatIs(configuration, OpeningTag);
    if (found == 2)
        return {FindingLevel::Error, {}, rule + ", without blanks around it" + effect, 2};
    if (found == 1)
        return {FindingLevel::Error, {}, rule + effect + " It is on line 1: put a line above it.", 2};
    if (found != 0)
        return {FindingLevel::Error,
                {},
                rule + effect + " It is on line " + std::to_string(found) +
                    ": one line alone may be above it.",
                2};
    const std::string second =
        configuration.Lines.size() < 2 ? "there is none" : "is \"" + configuration.Lines[1] + "\"";
    return {FindingLevel::Error, {}, rule + effect + " Line 2 " + second + ".", 2};
}

CheckFindings EndFindings(const Configuration& configuration)
{
    const std::size_t line = configuration.EndLine;
    if (configuration.End == ReadingStep::NoLine && line <= configuration.Lines.size())
        return {
            {FindingLevel::Error,
             {},
             "The line is longer than 999 characters: reading ends here, and nothing that follows counts.",
             line}};
    if (configuration.End == ReadingStep::NoLine) {
        const std::size_t indented = LineThatIs(configuration, ClosingTag);
        if (indented != 0)
            return {
                {FindingLevel::Warning,
                 {},
                 "The closing tag has blanks around it and does not count: lines that follow it are read too.",
                 indented}};
        return {{FindingLevel::Warning, "end of file",
                 "The last line must be exactly \"</D_PDU_API_CFG>\". What is above it counts all the same.",
                 0}};
    }
    for (std::size_t i = line; i < configuration.Lines.size(); ++i)
        if (configuration.Lines[i].find("<Attribute ") != std::string::npos)
            return {{FindingLevel::Warning,
                     {},
                     "The attribute is after the closing tag on line " + std::to_string(line) +
                         " and does not count.",
                     i + 1}};
    return {};
}

} // namespace

CheckFindings FileFindings(const Configuration& configuration)
{
    if (IsUtf16(configuration.Bytes))
        return {{FindingLevel::Error,
                 {},
                 "The file is UTF-16: nothing of it is read. Save it as UTF-8 without a byte-order mark.",
                 1}};
    if (configuration.End == ReadingStep::NoHeader)
        return {{FindingLevel::Error,
                 {},
                 configuration.Lines.empty()
                     ? "The file is empty."
                     : "The line is longer than 999 characters: nothing of the file is read.",
                 1}};
    if (configuration.End == ReadingStep::NoBlockName)
        return {BlockNameFinding(configuration)};
    CheckFindings findings;
    if (configuration.Bytes.starts_with("\xEF\xBB\xBF"))
        findings.push_back(
            {FindingLevel::Note, {}, "A byte-order mark; harmless, since any line 1 is accepted.", 1});
    else if (!configuration.Lines[0].starts_with("<?xml"))
        findings.push_back(
            {FindingLevel::Note, {}, "No XML declaration; harmless, since any line 1 is accepted.", 1});
    if (!IsUtf8(configuration.Lines[0]))
        findings.push_back(
            {FindingLevel::Note, {}, "The line is not UTF-8; harmless, since any line 1 is accepted.", 1});
    Append(findings, EndFindings(configuration));
    return findings;
}

} // namespace marvane::tool
