#include "tool/commands/text_search.h"

#include <gtest/gtest.h>

namespace marvane::tool {
namespace {

TEST(TextSearch, FindsWhatAPlainSearchFinds)
{
    // Texts of few different characters have many beginnings of each other in them.
    const auto text = [](unsigned number, unsigned length) {
        std::string made;
        for (; made.size() < length; number /= 3)
            made += "0Xq"[number % 3];
        return made;
    };
    for (unsigned length = 0; length <= 4; ++length)
        for (unsigned wanted = 0; wanted < 81; ++wanted) {
            const std::string search = text(wanted, length);
            for (unsigned number = 0; number < 729; ++number)
                ASSERT_EQ(TextSearch(search).IsIn(text(number, 6)),
                          text(number, 6).find(search) != std::string::npos)
                    << search << " in " << text(number, 6);
        }
}

TEST(TextSearch, IsInNoShorterText)
{
    EXPECT_FALSE(TextSearch("PDU_").IsIn("PDU"));
    EXPECT_FALSE(TextSearch("PDU_").IsIn(""));
    EXPECT_TRUE(TextSearch("").IsIn(""));
}

} // namespace
} // namespace marvane::tool
