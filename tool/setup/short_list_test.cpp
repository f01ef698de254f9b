#include "tool/setup/short_list.h"

#include <gtest/gtest.h>

namespace marvane::tool {
namespace {

TEST(ShortLists, NameAFewWholeAndTheFirstOfMany)
{
    EXPECT_EQ(ShortList({}), "");
    EXPECT_EQ(ShortList({"A"}), "A");
    EXPECT_EQ(ShortList({"A", "B", "C", "D", "E"}), "A, B, C, D, E");
    EXPECT_EQ(ShortList({"A", "B", "C", "D", "E", "F"}), "A, B, C and 3 more");
}

} // namespace
} // namespace marvane::tool
