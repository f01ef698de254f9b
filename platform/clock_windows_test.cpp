// Stamps and file names have the time of the system, whatever the C library takes for its zone.
#include "platform/clock.h"

#include <algorithm>
#include <ctime>

#include <gtest/gtest.h>

#include <windows.h>

#include "tests/support/temporary_folder.h"

namespace marvane {
namespace {

/// The system's local time, in seconds since some moment.
std::int64_t SystemLocalSecond()
{
    SYSTEMTIME time;
    FILETIME asUtc;
    GetLocalTime(&time);
    SystemTimeToFileTime(&time, &asUtc);
    const std::uint64_t ticks = std::uint64_t{asUtc.dwHighDateTime} << 32 | asUtc.dwLowDateTime;
    return static_cast<std::int64_t>(ticks / 10000000) - 11644473600;
}

/// The local time of file names, in seconds since the same moment.
std::int64_t CalendarSecond()
{
    std::tm calendar = platform::LocalCalendarTime();
    return _mkgmtime(&calendar);
}

/// The local time of stamps, in seconds of the day.
std::int64_t StampSecondOfDay()
{
    const platform::TimeOfDay time = platform::LocalTimeOfDay(platform::Now().Second);
    return (time.Hour * 60 + time.Minute) * 60 + time.Second;
}

TEST(LocalTimeOfWindows, IsThatOfTheSystemAlthoughTheEnvironmentNamesAnotherZone)
{
    for (const char* zone : {"WEST+9", "Europe/Berlin", ":nonsense"}) {
        const testing::EnvironmentValue variable("TZ", zone);
        _tzset();
        const std::int64_t before = SystemLocalSecond();
        const std::int64_t name = CalendarSecond();
        const std::int64_t stamp = StampSecondOfDay();
        // The system's own reading is up to 16 ms late.
        const std::int64_t after = SystemLocalSecond() + 1;
        EXPECT_GE(name, before) << zone;
        EXPECT_LE(name, after) << zone;
        constexpr std::int64_t day = 24 * 3600;
        EXPECT_LE((stamp - before % day + day) % day, after - before) << zone;
    }
    _tzset();
}

TEST(LocalTimeOfWindows, HasAllFieldsOfTheCalendar)
{
    const std::tm local = platform::LocalCalendarTime();
    std::tm copy = local;
    const std::time_t seconds = _mkgmtime(&copy);
    const std::tm utc = platform::UtcCalendarTime(seconds);
    EXPECT_EQ(local.tm_wday, utc.tm_wday);
    EXPECT_EQ(local.tm_yday, utc.tm_yday);
}

std::int64_t NowInMilliseconds()
{
    const platform::Moment now = platform::Now();
    return now.Second * 1000 + now.Milliseconds;
}

TEST(ClockOfWindows, MovesByTheMillisecond)
{
    std::int64_t shortest = 1000;
    std::int64_t last = NowInMilliseconds();
    for (int steps = 0; steps < 50;) {
        const std::int64_t now = NowInMilliseconds();
        if (now == last)
            continue;
        shortest = std::min(shortest, now - last);
        last = now;
        ++steps;
    }
    EXPECT_EQ(shortest, 1);
}

} // namespace
} // namespace marvane
