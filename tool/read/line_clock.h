// The date of each line: log lines have the time of day alone.
#pragma once

#include <cstdint>
#include <optional>

#include "tool/read/log_time.h"

namespace marvane::read {

class LineClock
{
public:
    /// A file begins. With `isExact` its first line is within twelve hours of `begun`, before or after (a
    /// header is stamped before its file is made); else it has the date of `begun`.
    void BeginFile(LogTime begun, bool isExact);

    /// The time of the next line, from its milliseconds since midnight. A step back is midnight if it is
    /// longer than what clocks are set back by; a phase's time is read before it is written, so short steps
    /// back are normal, over midnight too.
    LogTime At(std::uint32_t timeOfDay) { return Place(timeOfDay, LongestStepBack); }
    /// The same for the first line of a session: the one before it is complete, so any step back is a new
    /// day.
    LogTime AtSessionBegin(std::uint32_t timeOfDay) { return Place(timeOfDay, LongestRace); }

private:
    static constexpr std::int64_t Hour = 60LL * 60 * 1000;
    static constexpr std::int64_t LongestStepBack = 3 * Hour;
    static constexpr std::int64_t LongestRace = 60LL * 1000;

    LogTime Place(std::uint32_t timeOfDay, std::int64_t longestStepBack);

    LogTime last_;
    bool isFirst_ = true;
    bool isExact_ = false;
};

} // namespace marvane::read
