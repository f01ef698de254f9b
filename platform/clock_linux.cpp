#include "platform/clock.h"

#include <atomic>
#include <chrono>
#include <ctime>

#include "platform/process.h"

namespace marvane::platform {

namespace {

// The C library guards the time zone by a lock that another thread may hold while the process forks; in the
// child nobody ever releases it. So the offset from UTC is taken before each fork, and a child computes with
// it: it must not call localtime_r, gmtime_r or mktime.
std::atomic<bool> IsForkedChild = false;
std::atomic<std::int64_t> OffsetAtFork = 0;

void KeepOffset()
{
    if (IsForkedChild)
        return;
    const std::time_t now = std::time(nullptr);
    std::tm calendar;
    localtime_r(&now, &calendar);
    OffsetAtFork = calendar.tm_gmtoff;
}

const bool ForksSeen = (CallAtFork(KeepOffset, [] {}), CallInForkedChild([] { IsForkedChild = true; }), true);

/// Broken-down local time, by the zone's rules or, in a forked child, the offset of its beginning.
std::tm LocalCalendar(std::time_t second)
{
    if (IsForkedChild)
        return UtcCalendarTime(second + OffsetAtFork);
    std::tm calendar;
    localtime_r(&second, &calendar);
    return calendar;
}

} // namespace

Moment Now()
{
    timespec now;
    clock_gettime(CLOCK_REALTIME, &now);
    return {now.tv_sec, static_cast<std::uint32_t>(now.tv_nsec) / 1000000};
}

TimeOfDay LocalTimeOfDay(std::int64_t second)
{
    const std::tm calendar = LocalCalendar(second);
    return {static_cast<std::uint16_t>(calendar.tm_hour), static_cast<std::uint16_t>(calendar.tm_min),
            static_cast<std::uint16_t>(calendar.tm_sec)};
}

std::tm LocalCalendarTime()
{
    return LocalCalendar(Now().Second);
}

std::tm LocalCalendarTime(std::int64_t second)
{
    return LocalCalendar(second);
}

std::tm UtcCalendarTime(std::int64_t seconds)
{
    using namespace std::chrono;
    const sys_seconds moment{std::chrono::seconds(seconds)};
    const sys_days day = floor<days>(moment);
    const year_month_day date(day);
    const hh_mm_ss time(moment - day);
    std::tm calendar = {};
    calendar.tm_year = static_cast<int>(date.year()) - 1900;
    calendar.tm_mon = static_cast<int>(static_cast<unsigned>(date.month())) - 1;
    calendar.tm_mday = static_cast<int>(static_cast<unsigned>(date.day()));
    calendar.tm_hour = static_cast<int>(time.hours().count());
    calendar.tm_min = static_cast<int>(time.minutes().count());
    calendar.tm_sec = static_cast<int>(time.seconds().count());
    calendar.tm_wday = static_cast<int>(weekday(day).c_encoding());
    calendar.tm_yday = static_cast<int>((day - sys_days(date.year() / January / 1)).count());
    return calendar;
}

} // namespace marvane::platform
