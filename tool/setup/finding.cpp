#include "tool/setup/finding.h"

#include <algorithm>
#include <cstddef>

#include "tool/console/json_text.h"

namespace marvane::tool {

namespace {

constexpr std::size_t TextColumn = 22;
constexpr std::size_t TextWidth = 78;

std::ptrdiff_t Count(const CheckFindings& findings, FindingLevel level)
{
    return std::count_if(findings.begin(), findings.end(),
                         [level](const CheckFinding& finding) { return finding.Level == level; });
}

std::string Counted(std::ptrdiff_t count, const char* word)
{
    return std::to_string(count) + " " + word + (count == 1 ? "" : "s");
}

/// Lines of at most TextWidth columns, cut at blanks; a longer word stays whole.
std::vector<std::string> Wrapped(const std::string& text)
{
    std::vector<std::string> lines;
    for (std::size_t at = 0; at <= text.size();) {
        const std::size_t lineEnd = std::min(text.find('\n', at), text.size());
        std::size_t end = lineEnd;
        if (end - at > TextWidth) {
            end = text.rfind(' ', at + TextWidth);
            if (end == std::string::npos || end <= at)
                end = std::min(text.find(' ', at), lineEnd);
        }
        lines.push_back(text.substr(at, end - at));
        at = end + 1;
    }
    return lines;
}

} // namespace

std::string ShownFinding(const CheckFinding& finding)
{
    static constexpr const char* marks[] = {"  ok  ", "  --  ", "   !  ", "   X  "};
    std::string head = marks[static_cast<std::size_t>(finding.Level)];
    head += finding.Line != 0 ? "line " + std::to_string(finding.Line) : finding.Place;
    head.resize(std::max(head.size() + 1, TextColumn), ' ');
    std::string shown;
    for (const std::string& line : Wrapped(finding.Text))
        shown += (shown.empty() ? head : std::string(TextColumn, ' ')) + line + "\n";
    return shown;
}

std::string CountedFindings(const CheckFindings& findings)
{
    return Counted(Count(findings, FindingLevel::Error), "error") + ", " +
           Counted(Count(findings, FindingLevel::Warning), "warning");
}

std::string FindingsJson(const CheckFindings& findings)
{
    static constexpr const char* levels[] = {"ok", "note", "warning", "error"};
    JsonArray json;
    for (const CheckFinding& finding : findings) {
        JsonObject object;
        object.Add("level", levels[static_cast<std::size_t>(finding.Level)]);
        if (finding.Line != 0)
            object.Add("line", finding.Line);
        if (!finding.Place.empty())
            object.Add("place", finding.Place);
        json.AddRaw(object.Add("text", finding.Text).Text());
    }
    return json.Text();
}

bool HasErrors(const CheckFindings& findings)
{
    return Count(findings, FindingLevel::Error) != 0;
}

bool HasWarnings(const CheckFindings& findings)
{
    return Count(findings, FindingLevel::Warning) != 0;
}

} // namespace marvane::tool
