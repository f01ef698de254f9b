// The local time that a thread derives: once a second, and right when the zone's offset changes.
#include <cstdio>
#include <ctime>
#include <optional>
#include <string>

#include <gtest/gtest.h>

#include "platform/platform.h"
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

std::string TimeOf(const platform::ThreadClock& clock)
{
    char text[40];
    std::snprintf(text, sizeof text, "%02u:%02u:%02u.%03u", clock.Local.Hour, clock.Local.Minute,
                  clock.Local.Second, clock.Local.Milliseconds);
    return text;
}

std::string TimeAt(platform::ThreadClock& clock, std::int64_t second, unsigned milliseconds)
{
    platform::SetThreadClock(clock, second, milliseconds);
    return TimeOf(clock);
}

TEST(ThreadClock, AChangeToAndFromSummerTimeShowsInTheSecondInWhichItComes)
{
    if (platform::PathSeparator != '/')
        GTEST_SKIP() << "the zone belongs to the system here, not to the process";
    // An hour and a half east; summer from the last Sunday of March, 2:00, to that of October, 3:00.
    const Zone zone("WIN-1:30SUM-2:30,M3.5.0/2,M10.5.0/3");
    platform::ThreadClock clock;
    constexpr std::int64_t spring = 1711845000; // 31 March 2024, 0:30 UTC
    EXPECT_EQ(TimeAt(clock, spring - 1, 998), "01:59:59.998");
    EXPECT_EQ(TimeAt(clock, spring - 1, 999), "01:59:59.999");
    EXPECT_EQ(TimeAt(clock, spring, 0), "03:00:00.000");
    EXPECT_EQ(TimeAt(clock, spring, 1), "03:00:00.001");
    constexpr std::int64_t autumn = 1729989000; // 27 October 2024, 0:30 UTC
    EXPECT_EQ(TimeAt(clock, autumn - 1, 999), "02:59:59.999");
    EXPECT_EQ(TimeAt(clock, autumn, 0), "02:00:00.000");
}

TEST(ThreadClock, ATextIsKeptForItsSecondAlone)
{
    platform::ThreadClock clock;
    platform::SetThreadClock(clock, 1711845000, 10);
    EXPECT_EQ(clock.Text[0], 0);
    clock.Text[0] = 'x';
    platform::SetThreadClock(clock, 1711845000, 999);
    EXPECT_EQ(clock.Text[0], 'x');
    EXPECT_EQ(clock.Local.Milliseconds, 999);
    platform::SetThreadClock(clock, 1711845001, 0);
    EXPECT_EQ(clock.Text[0], 0);
    clock.Text[0] = 'x';
    platform::SetThreadClock(clock, 1711845000, 0); // a clock that was set back
    EXPECT_EQ(clock.Text[0], 0);
}

} // namespace
} // namespace marvane
