#include "tool/input/spooled_texts.h"

#include <gtest/gtest.h>

namespace marvane::tool {
namespace {

std::string TextOf(const SpooledTexts& texts, std::size_t number)
{
    std::string text;
    texts.Read(number, [&](std::string_view piece) { text += piece; });
    return text;
}

TEST(SpooledTexts, GiveEachTextWholeWhereverItIsKept)
{
    for (const std::size_t mostHeld : {0u, 1u, 7u, 1000u}) {
        SpooledTexts texts(mostHeld);
        std::string expected[3];
        for (std::size_t i = 0; i < 30; ++i) {
            const std::string piece(i % 5, static_cast<char>('a' + i % 26));
            texts.Add(i % 3, piece);
            expected[i % 3] += piece;
        }
        for (std::size_t number = 0; number < 3; ++number)
            EXPECT_EQ(TextOf(texts, number), expected[number]) << mostHeld;
    }
}

TEST(SpooledTexts, OfANumberThatNobodyUsedIsEmpty)
{
    EXPECT_EQ(TextOf(SpooledTexts(), 4), "");
}

} // namespace
} // namespace marvane::tool
