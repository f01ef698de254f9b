// What kind of line a text after its stamp is.
#pragma once

#include <string_view>

#include "tool/read/records.h"

namespace marvane::read {

struct KnownLine
{
    LineKind Kind = LineKind::Other;
    /// Entry: name and arguments. CallOut, NotLoaded: the name. Exit: name and status. Mark: without "# ".
    /// Version: the version. Header: "{Loaded=N}". Setting: "KEY = VALUE". Else the whole text.
    std::string_view Rest;
};

/// The kind of a line from its text after the stamp. Never Continuation or Foreign.
KnownLine KindOf(std::string_view text);

/// The first line of a comms report, taken apart.
struct ReportTitle
{
    std::string_view Protocol; ///< empty for "NULL"
    Direction Way;
    std::string_view Title;
};

/// None if the text is no first line of a report.
std::optional<ReportTitle> ParseReportTitle(std::string_view text);

/// What follows an exit line's "- ".
struct ExitText
{
    std::string_view Name;
    std::string_view StatusName;
    std::optional<std::uint32_t> Status; ///< none for a callback
    bool IsWhole = false;                ///< false: the line is cut
};

ExitText ParseExit(std::string_view rest);

} // namespace marvane::read
