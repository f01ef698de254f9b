#include "tool/analysis/durations.h"

#include <gtest/gtest.h>

namespace marvane::tool {
namespace {

TEST(Durations, PercentilesAreValuesThatOccurred)
{
    Durations durations;
    for (std::uint64_t value = 1; value <= 100; ++value)
        durations.Add(value);
    EXPECT_EQ(durations.Percentile(50), 50u);
    EXPECT_EQ(durations.Percentile(95), 95u);
    EXPECT_EQ(durations.Max(), 100u);
    EXPECT_EQ(durations.Total(), 5050u);
}

TEST(Durations, GreatValuesKeepThreeDigitsAndTheMaximumIsExact)
{
    Durations durations;
    durations.Add(123'456);
    EXPECT_EQ(durations.Percentile(50), 123'000u);
    EXPECT_EQ(durations.Max(), 123'456u);
}

TEST(Durations, NothingHasNoPercentile)
{
    EXPECT_EQ(Durations().Percentile(50), 0u);
}

} // namespace
} // namespace marvane::tool
