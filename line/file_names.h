// Names of log files: "D-PDU_API_Logger_25-11-2026_14-03-07.LGR".
//
// The date begins with the day, so names do not sort by time: order them by their FileTime.
#pragma once

#include <compare>
#include <cstdint>
#include <ctime>
#include <optional>
#include <string>
#include <string_view>

namespace marvane {

/// The two families of log files.
enum class LogFamily : std::uint8_t
{
    Api,  ///< calls and events
    Comms ///< comms reports, if they have files of their own
};

/// What the names of a family begin with.
constexpr std::string_view BaseName(LogFamily family)
{
    return family == LogFamily::Api ? "D-PDU_API_Logger" : "D-PDU_API_Comms";
}

/// Local time at which a file was begun, in seconds. Ordered by time.
struct FileTime
{
    std::uint16_t Year = 0;
    std::uint16_t Month = 0; ///< 1 to 12
    std::uint16_t Day = 0;   ///< 1 to 31
    std::uint16_t Hour = 0;
    std::uint16_t Minute = 0;
    std::uint16_t Second = 0;

    auto operator<=>(const FileTime&) const = default;
};

/// What the name of a log file says.
struct LogFileName
{
    /// Stands in front of the name of a comms file whose folder was configured without a separator at its
    /// end: the folder's name. Else empty. Part of the text that was parsed.
    std::string_view Prefix;
    LogFamily Family = LogFamily::Api;
    FileTime Begun;

    bool operator==(const LogFileName&) const = default;
};

/// Name of a file that is begun at a local time, without its folder.
std::string MakeLogFileName(LogFamily family, const std::tm& begun);

/// Pattern of the names of a family, "?" for any one character, for the search in a folder.
std::string LogFilePattern(LogFamily family);

/// Reads a name without its folder. None if it is not the name of a log file, or if its time is no time.
std::optional<LogFileName> ParseLogFileName(std::string_view name);

} // namespace marvane
