#include "tool/read/line_kind.h"

#include "line/marks.h"
#include "pdu/code_names.h"
#include "tool/read/call_text.h"

namespace marvane::read {

namespace {

constexpr std::string_view NoLabel = "NULL";

std::optional<std::string_view> ReportLabel(std::string_view text)
{
    if (text.starts_with(NoLabel))
        return NoLabel;
    for (const NameEntry& label : CommsProtocolLabels)
        if (text.starts_with(label.Name))
            return text.substr(0, label.Name.size());
    return std::nullopt;
}

LineKind KindOf(LineMark mark)
{
    switch (mark) {
    case LineMark::Entry:
        return LineKind::Entry;
    case LineMark::Exit:
        return LineKind::Exit;
    case LineMark::CallOutEnd:
        return LineKind::CallOut;
    case LineMark::ChangingFile:
    case LineMark::ContinuationFile:
    case LineMark::ClosingFile:
        return LineKind::Mark;
    case LineMark::NotLoaded:
        return LineKind::NotLoaded;
    case LineMark::Initialise:
        return LineKind::Initialise;
    case LineMark::Version:
        return LineKind::Version;
    case LineMark::Header:
        return LineKind::Header;
    case LineMark::Setting:
        return LineKind::Setting;
    case LineMark::BufferFull:
        return LineKind::Full;
    case LineMark::None:
        break;
    }
    return LineKind::Other;
}

} // namespace

KnownLine KindOf(std::string_view text)
{
    if (ParseArrow(text))
        return {LineKind::Decoded, text};
    const MarkedLine marked = ParseMark(text);
    const LineKind kind = KindOf(marked.Mark);
    if (kind == LineKind::Mark)
        return {kind, text.substr(marks::FileChange.size())};
    if (kind != LineKind::Other)
        return {kind, marked.Rest};
    return {ParseReportTitle(text) ? LineKind::Comms : LineKind::Other, text};
}

std::optional<ReportTitle> ParseReportTitle(std::string_view text)
{
    const std::optional<std::string_view> label = ReportLabel(text);
    if (!label)
        return std::nullopt;
    const std::string_view rest = text.substr(label->size());
    const std::optional<Direction> way = ParseReportArrow(rest);
    if (!way)
        return std::nullopt;
    const std::string_view title = rest.substr(ReportArrow(*way).size());
    return ReportTitle{*label == NoLabel ? std::string_view() : *label, *way,
                       title.starts_with(' ') ? title.substr(1) : title};
}

ExitText ParseExit(std::string_view rest)
{
    ExitText exit;
    const std::size_t open = rest.find('<');
    exit.Name = rest.substr(0, open);
    if (open == std::string_view::npos) {
        exit.IsWhole = exit.Name == FunctionName(Function::CallbackTrap);
        return exit;
    }
    const std::string_view status = rest.substr(open + 1);
    if (!status.ends_with(")>"))
        return exit;
    const std::string_view value = status.substr(0, status.size() - 1);
    exit.Status = NumberInValue(value);
    exit.StatusName = NameInValue(value);
    exit.IsWhole = exit.Status.has_value();
    return exit;
}

} // namespace marvane::read
