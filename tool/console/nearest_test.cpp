#include "tool/console/nearest.h"

#include <gtest/gtest.h>

namespace marvane::tool {
namespace {

constexpr std::string_view Commands[] = {"summary", "talk", "show", "diff", "completion"};

TEST(EditDistance, CountsInsertedRemovedReplacedAndSwappedLetters)
{
    EXPECT_EQ(EditDistance("talk", "talk"), 0u);
    EXPECT_EQ(EditDistance("tlk", "talk"), 1u);
    EXPECT_EQ(EditDistance("talks", "talk"), 1u);
    EXPECT_EQ(EditDistance("tolk", "talk"), 1u);
    EXPECT_EQ(EditDistance("shwo", "show"), 1u);
    EXPECT_EQ(EditDistance("", "show"), 4u);
    EXPECT_EQ(EditDistance("kitten", "sitting"), 3u);
}

TEST(Nearest, IsTheWordThatWasMeant)
{
    EXPECT_EQ(Nearest("shwo", Commands), "show");
    EXPECT_EQ(Nearest("SUMARY", Commands), "summary");
    EXPECT_EQ(Nearest("comp", Commands), "completion");
}

TEST(Nearest, IsNothingIfNoWordIsNear)
{
    EXPECT_EQ(Nearest("frobnicate", Commands), "");
    EXPECT_EQ(Nearest("", Commands), "");
    EXPECT_EQ(DidYouMean("frobnicate", Commands), "");
}

TEST(DidYouMean, NamesTheNearestWord)
{
    EXPECT_EQ(DidYouMean("tlak", Commands), "; did you mean 'talk'?");
}

} // namespace
} // namespace marvane::tool
