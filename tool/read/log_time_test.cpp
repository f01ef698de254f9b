#include <gtest/gtest.h>

#include "tool/read/log_time.h"

namespace marvane::read {

TEST(LogTime, CountsDaysFromTheEpoch)
{
    EXPECT_EQ(DaysOf({1970, 1, 1}), 0);
    EXPECT_EQ(DaysOf({1969, 12, 31}), -1);
    EXPECT_EQ(DaysOf({2000, 3, 1}), 11017);
    EXPECT_EQ(DaysOf({2026, 11, 21}), 20778);
}

TEST(LogTime, FindsTheDateOfEachDayOfAThousandYears)
{
    Date expected{1600, 1, 1};
    for (std::int64_t day = DaysOf({1600, 1, 1}); day < DaysOf({2600, 1, 1}); ++day) {
        const Date date = DateOf(day);
        ASSERT_EQ(DaysOf(date), day);
        ASSERT_TRUE(date == expected || date.Day == 1) << day;
        expected = {date.Year, date.Month, date.Day + 1};
    }
}

TEST(LogTime, SplitsIntoDayAndTimeOfDay)
{
    EXPECT_EQ(LogTime{MillisecondsPerDay + 5}.Day(), 1);
    EXPECT_EQ(LogTime{MillisecondsPerDay + 5}.TimeOfDay(), 5u);
    EXPECT_EQ(LogTime{-1}.Day(), -1);
    EXPECT_EQ(LogTime{-1}.TimeOfDay(), 86399999u);
}

} // namespace marvane::read
