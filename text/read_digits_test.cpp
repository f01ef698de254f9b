#include "text/read_digits.h"

#include <string>

#include <gtest/gtest.h>

namespace marvane {
namespace {

TEST(ReadDigits, ReadsAsManyHexadecimalDigitsAsAsked)
{
    std::uint32_t wide = 0;
    EXPECT_TRUE(ReadHex<8>("0F00BA12", wide));
    EXPECT_EQ(wide, 0x0F00BA12u);
    std::uint8_t narrow = 0;
    EXPECT_TRUE(ReadHex<2>("A5 and more", narrow));
    EXPECT_EQ(narrow, 0xA5);
}

TEST(ReadDigits, ReadsAsManyDecimalDigitsAsAsked)
{
    std::uint16_t value = 0;
    EXPECT_TRUE(ReadDecimal<4>("2026-", value));
    EXPECT_EQ(value, 2026);
    EXPECT_TRUE(ReadDecimal<2>("073", value));
    EXPECT_EQ(value, 7);
}

TEST(ReadDigits, RefusesEveryOtherCharacterInEveryPlace)
{
    std::uint8_t hex;
    std::uint16_t decimal;
    for (int i = 0; i < 256; ++i) {
        const char c = static_cast<char>(i);
        const bool isDigit = c >= '0' && c <= '9';
        for (const std::string& text : {std::string{c, '1'}, std::string{'1', c}}) {
            EXPECT_EQ(ReadHex<2>(text.data(), hex), isDigit || (c >= 'A' && c <= 'F')) << i;
            EXPECT_EQ(ReadDecimal<2>(text.data(), decimal), isDigit) << i;
        }
    }
}

} // namespace
} // namespace marvane
