#include "tool/report/packed_text.h"

#include <gtest/gtest.h>

#include "tests/support/page_block.h"

namespace marvane::tool {
namespace {

TEST(PackedText, OfNothingIsAWholeArchive)
{
    EXPECT_EQ(testing::Unpacked(PackedText().Finish()), "");
}

TEST(PackedText, HoldsAllThatWasWritten)
{
    PackedText packed;
    std::string expected;
    for (int i = 0; i < 100'000; ++i) {
        const std::string line = std::to_string(i * 7919) + '\n';
        packed.Write(line);
        expected += line;
    }
    const std::string text = packed.Finish();
    EXPECT_EQ(testing::Unpacked(text), expected);
    EXPECT_LT(text.size(), expected.size());
}

TEST(PackedText, IsPlainToABrowser)
{
    PackedText packed;
    packed.Write("</script><!-- & \"");
    const std::string letters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/=";
    EXPECT_EQ(packed.Finish().find_first_not_of(letters), std::string::npos);
}

} // namespace
} // namespace marvane::tool
