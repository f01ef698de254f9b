// The local time is right when the zone's offset changes.
#include "platform/clock.h"

#include <chrono>
#include <cstdio>
#include <ctime>
#include <optional>
#include <string>
#include <thread>

#include <gtest/gtest.h>

#include "platform/files.h"
#include "tests/support/temporary_folder.h"

namespace marvane {
namespace {

/// A zone for a test. The standard library reads it anew for localtime.
class Zone
{
public:
    explicit Zone(const std::string& rules)
    {
        variable_.emplace("TZ", rules);
        Apply();
    }
    ~Zone()
    {
        variable_.reset();
        Apply();
    }

private:
    static void Apply()
    {
        const std::time_t any = 0;
        static_cast<void>(std::localtime(&any));
    }

    std::optional<testing::EnvironmentValue> variable_;
};

std::string TimeAt(std::int64_t second)
{
    const platform::TimeOfDay time = platform::LocalTimeOfDay(second);
    char text[40];
    std::snprintf(text, sizeof text, "%02u:%02u:%02u", time.Hour, time.Minute, time.Second);
    return text;
}

TEST(LocalTime, OfASecondIsTheSameInBothForms)
{
    for (const std::int64_t second : {0, 951782399, 1774746000, 2000000000}) {
        const std::tm calendar = platform::LocalCalendarTime(second);
        char text[40];
        std::strftime(text, sizeof text, "%H:%M:%S", &calendar);
        EXPECT_EQ(text, TimeAt(second));
    }
}

TEST(LocalTime, AgreesWithTheCalendar)
{
    // The second may change between the readings; then they are repeated.
    for (;;) {
        const std::tm before = platform::LocalCalendarTime();
        const platform::Moment now = platform::Now();
        const std::tm after = platform::LocalCalendarTime();
        if (before.tm_sec != after.tm_sec)
            continue;
        char text[40];
        std::strftime(text, sizeof text, "%H:%M:%S", &before);
        EXPECT_EQ(TimeAt(now.Second), text);
        EXPECT_LT(now.Milliseconds, 1000u);
        return;
    }
}

TEST(LocalTime, AChangeToAndFromSummerTimeShowsInTheSecondInWhichItComes)
{
    if (platform::PathSeparator != '/')
        GTEST_SKIP() << "the zone belongs to the system here, not to the process";
    // An hour and a half east; summer from the last Sunday of March, 2:00, to that of October, 3:00.
    const Zone zone("WIN-1:30SUM-2:30,M3.5.0/2,M10.5.0/3");
    constexpr std::int64_t spring = 1711845000; // 31 March 2024, 0:30 UTC
    EXPECT_EQ(TimeAt(spring - 1), "01:59:59");
    EXPECT_EQ(TimeAt(spring), "03:00:00");
    constexpr std::int64_t autumn = 1729989000; // 27 October 2024, 0:30 UTC
    EXPECT_EQ(TimeAt(autumn - 1), "02:59:59");
    EXPECT_EQ(TimeAt(autumn), "02:00:00");
}

TEST(UtcTime, BreaksSecondsDown)
{
    const std::tm time = platform::UtcCalendarTime(1'000'000'000);
    EXPECT_EQ(time.tm_hour, 1);
    EXPECT_EQ(time.tm_min, 46);
    EXPECT_EQ(time.tm_sec, 40);
}

TEST(UtcTime, GoesOnAfter2038InProgramsOf32BitsToo)
{
    EXPECT_EQ(platform::UtcCalendarTime(5'000'000'000).tm_year + 1900, 2128);
}

// The compiler's library and the system's must mean the same by a span of time.
TEST(Pause, LastsAsLongAsItWasAskedFor)
{
    using namespace std::chrono;
    const auto begin = steady_clock::now();
    std::this_thread::sleep_for(milliseconds(20));
    EXPECT_GE(duration_cast<milliseconds>(steady_clock::now() - begin).count(), 19); // ticks of the clock
}

} // namespace
} // namespace marvane
