// Times on the command line: --since, --until, --at.
#pragma once

#include <algorithm>
#include <optional>
#include <string_view>
#include <vector>

#include "tool/console/arguments.h"
#include "tool/read/log_files.h"

namespace marvane::tool {

/// A time as it was written: "14:03", "14:03:07.250", "2026-11-25 14:03:07", "-5m".
struct TimeText
{
    std::optional<read::Date> Day;         ///< if it was written with its date
    std::int64_t TimeOfDay = 0;            ///< in ms since midnight
    std::optional<std::int64_t> BeforeEnd; ///< in ms, for "-5m"; the other fields mean nothing then
};

/// Reads a time; none if it is none.
std::optional<TimeText> ParseTime(std::string_view text);

/// The moment that a time means in a log that begins and ends at these: a clock without date is its first
/// occurrence in the log.
read::LogTime Resolve(const TimeText& time, read::LogTime begin, read::LogTime end);

/// The part of a log that a command is about; an end that is not given is open.
struct TimeRange
{
    std::optional<read::LogTime> Since;
    std::optional<read::LogTime> Until;

    /// True if a call was open then, if only for a part of it. One that never returned is open to the end.
    bool Touches(const read::Call& call) const
    {
        const bool isOver = call.State != read::CallState::InFlight;
        const bool isBefore = Since && isOver && call.EndTime < *Since;
        return !isBefore && (!Until || call.BeginTime <= *Until);
    }
    /// The moment of the part that is nearest to a time.
    read::LogTime Within(read::LogTime time) const
    {
        const read::LogTime begun = Since ? std::max(time, *Since) : time;
        return Until ? std::min(begun, *Until) : begun;
    }
    bool Holds(read::LogTime time) const { return (!Since || time >= *Since) && (!Until || time <= *Until); }
};

/// --since and --until for these files. Throws UsageError for a text that is no time, and Trouble if the end
/// of the log would have to be known and can't be.
TimeRange TimeRangeOf(const Arguments& arguments, const std::vector<read::LogFile>& files);

/// The moment that the value of one option means.
std::optional<read::LogTime> TimeOf(std::string_view option, const Arguments& arguments,
                                    const std::vector<read::LogFile>& files);

} // namespace marvane::tool
