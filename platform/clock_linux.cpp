#include "platform/clock.h"

#include <ctime>

namespace marvane::platform {

Moment Now()
{
    timespec now;
    clock_gettime(CLOCK_REALTIME, &now);
    return {now.tv_sec, static_cast<std::uint32_t>(now.tv_nsec) / 1000000};
}

TimeOfDay LocalTimeOfDay(std::int64_t second)
{
    const std::time_t moment = second;
    std::tm calendar;
    localtime_r(&moment, &calendar);
    return {static_cast<std::uint16_t>(calendar.tm_hour), static_cast<std::uint16_t>(calendar.tm_min),
            static_cast<std::uint16_t>(calendar.tm_sec)};
}

std::tm LocalCalendarTime()
{
    const std::time_t now = std::time(nullptr);
    std::tm calendar;
    localtime_r(&now, &calendar);
    return calendar;
}

std::tm UtcCalendarTime(std::time_t seconds)
{
    std::tm calendar;
    gmtime_r(&seconds, &calendar);
    return calendar;
}

} // namespace marvane::platform
