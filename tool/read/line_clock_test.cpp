#include <gtest/gtest.h>

#include "tool/read/line_clock.h"

namespace marvane::read {

namespace {

constexpr std::uint32_t Hour = 60 * 60 * 1000;

LogTime At(unsigned day, std::int64_t timeOfDay)
{
    return {DaysOf({2026, 3, day}) * MillisecondsPerDay + timeOfDay};
}

class LineClockTest : public ::testing::Test
{
protected:
    void Begin(unsigned day, std::int64_t timeOfDay) { clock_.BeginFile(At(day, timeOfDay), true); }
    LineClock clock_;
};

} // namespace

TEST_F(LineClockTest, TheFirstLineMayBeStampedBeforeTheFileWasMade)
{
    Begin(2, 0);
    EXPECT_EQ(clock_.At(24 * Hour - 1), At(1, 24 * Hour - 1));
    EXPECT_EQ(clock_.At(5), At(2, 5));
}

TEST_F(LineClockTest, BridgesMidnight)
{
    Begin(1, 23 * Hour);
    EXPECT_EQ(clock_.At(23 * Hour + 5), At(1, 23 * Hour + 5));
    EXPECT_EQ(clock_.At(3), At(2, 3));
    EXPECT_EQ(clock_.At(20 * Hour), At(2, 20 * Hour));
    EXPECT_EQ(clock_.At(1 * Hour), At(3, 1 * Hour));
}

TEST_F(LineClockTest, ASmallStepBackIsNoMidnight)
{
    Begin(1, 12 * Hour);
    EXPECT_EQ(clock_.At(12 * Hour), At(1, 12 * Hour));
    EXPECT_EQ(clock_.At(12 * Hour - 5), At(1, 12 * Hour - 5));
    EXPECT_EQ(clock_.At(11 * Hour), At(1, 11 * Hour)); // summer time ends
}

TEST_F(LineClockTest, ASmallStepBackOverMidnightIsTheDayBefore)
{
    Begin(1, 23 * Hour);
    EXPECT_EQ(clock_.At(23 * Hour), At(1, 23 * Hour));
    EXPECT_EQ(clock_.At(2), At(2, 2));
    EXPECT_EQ(clock_.At(24 * Hour - 3), At(1, 24 * Hour - 3));
    EXPECT_EQ(clock_.At(4), At(2, 4));
}

TEST_F(LineClockTest, ANewSessionIsNeverEarlier)
{
    Begin(1, 12 * Hour);
    EXPECT_EQ(clock_.At(12 * Hour), At(1, 12 * Hour));
    EXPECT_EQ(clock_.AtSessionBegin(12 * Hour - 10), At(1, 12 * Hour - 10));
    EXPECT_EQ(clock_.AtSessionBegin(11 * Hour), At(2, 11 * Hour));
}

TEST_F(LineClockTest, WithoutATimeInTheNameTheFirstLineHasItsDate)
{
    clock_.BeginFile(At(5, 1), false);
    EXPECT_EQ(clock_.At(23 * Hour), At(5, 23 * Hour));
}

} // namespace marvane::read
