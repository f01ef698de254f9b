#include "tool/read/line_clock.h"

namespace marvane::read {

namespace {

/// The time with that time of day in the 24 hours from `earliest` on.
LogTime From(LogTime earliest, std::uint32_t timeOfDay)
{
    const std::int64_t midnight = earliest.Day() * MillisecondsPerDay;
    const LogTime sameDay{midnight + timeOfDay};
    return sameDay < earliest ? LogTime{sameDay.Ms + MillisecondsPerDay} : sameDay;
}

} // namespace

void LineClock::BeginFile(LogTime begun, bool isExact)
{
    last_ = begun;
    isFirst_ = true;
    isExact_ = isExact;
}

LogTime LineClock::Place(std::uint32_t timeOfDay, std::int64_t longestStepBack)
{
    if (!isFirst_)
        last_ = From({last_.Ms - longestStepBack}, timeOfDay);
    else if (isExact_)
        last_ = From({last_.Ms - MillisecondsPerDay / 2}, timeOfDay);
    else
        last_ = {last_.Day() * MillisecondsPerDay + timeOfDay};
    isFirst_ = false;
    return last_;
}

} // namespace marvane::read
