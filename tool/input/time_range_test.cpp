#include "tool/input/time_range.h"

#include <gtest/gtest.h>

namespace marvane::tool {
namespace {

using read::LogTime;

LogTime At(int day, int hour, int minute = 0)
{
    return {(read::DaysOf({2026, 11, static_cast<unsigned>(day)}) * 24 + hour) * 3600'000 + minute * 60'000};
}

/// The moment that a text means in a log from 25 Nov 22:00 to 26 Nov 03:00, in ms after its first midnight.
std::int64_t Meant(std::string_view text)
{
    const std::optional<TimeText> time = ParseTime(text);
    return time ? Resolve(*time, At(25, 22), At(26, 3)) - At(25, 0) : -1;
}

TEST(ParseTime, ReadsClocksDatesAndSpansBeforeTheEnd)
{
    EXPECT_EQ(Meant("23:15"), (23 * 60 + 15) * 60'000);
    EXPECT_EQ(Meant("23:15:01"), (23 * 60 + 15) * 60'000 + 1000);
    EXPECT_EQ(Meant("23:15:01.25"), (23 * 60 + 15) * 60'000 + 1250);
    EXPECT_EQ(Meant("2026-11-25 23:15"), (23 * 60 + 15) * 60'000);
    EXPECT_EQ(Meant("25-11-2026T23:15"), (23 * 60 + 15) * 60'000);
    EXPECT_EQ(Meant("2026-11-26"), 24 * 3600'000);
    EXPECT_EQ(Meant("-5m"), 27 * 3600'000 - 300'000);
    EXPECT_EQ(Meant("-1.5s"), 27 * 3600'000 - 1500);
    EXPECT_EQ(Meant("-250ms"), 27 * 3600'000 - 250);
    EXPECT_EQ(Meant("-2h"), 25 * 3600'000);
    EXPECT_EQ(Meant("-30"), 27 * 3600'000 - 30'000);
}

TEST(ParseTime, RefusesWhatIsNoTime)
{
    for (const char* text : {"", "x", "25", "24:00", "12:60", "12:5", "12:05:", "12:05:01.", "12:05:01,5",
                             "-", "-5x", "--5m", "2026-13-01", "2026-11-25 x", "12:05 ", "-1e99"})
        EXPECT_FALSE(ParseTime(text)) << text;
}

TEST(Resolve, TakesTheFirstTimeThatTheLogHas)
{
    EXPECT_EQ(Meant("22:30"), 22 * 3600'000 + 30 * 60'000);
    EXPECT_EQ(Meant("01:00"), 25 * 3600'000);
    EXPECT_EQ(Meant("12:00"), 12 * 3600'000) << "neither day has it: the day of the beginning";
}

TEST(TimeRange, IsOpenWhereNothingIsGiven)
{
    EXPECT_TRUE(TimeRange().Holds(At(25, 1)));
    EXPECT_TRUE((TimeRange{At(25, 1), At(25, 2)}).Holds(At(25, 1)));
    EXPECT_TRUE((TimeRange{At(25, 1), At(25, 2)}).Holds(At(25, 2)));
    EXPECT_FALSE((TimeRange{At(25, 1), At(25, 2)}).Holds(At(25, 3)));
    EXPECT_FALSE((TimeRange{At(25, 1), At(25, 2)}).Holds(At(25, 0)));
}

} // namespace
} // namespace marvane::tool
