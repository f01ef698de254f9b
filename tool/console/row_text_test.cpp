#include "tool/console/row_text.h"

#include <gtest/gtest.h>

#include "tool/console/json_text.h"

namespace marvane::tool {
namespace {

const std::uint8_t Message[] = {0x36, 0x01, 0xAA, 0xBB, 0xCC, 0xDD, 0xEE, 0xFF};

TEST(RowText, FewBytesAreShownWholeAndOfManyTheHead)
{
    EXPECT_EQ(BytesText(read::Bytes(Message).first(3), 3, 6, 4), "36 01 AA");
    EXPECT_EQ(BytesText(Message, 8, 6, 4), "36 01 AA BB +4");
    EXPECT_EQ(BytesText(read::Bytes(Message).first(2), 130, 6, 4), "36 01 +128");
    EXPECT_EQ(BytesText({}, 130, 6, 4), "+130");
    EXPECT_EQ(BytesText({}, 0, 6, 4), "");
}

TEST(RowText, MillisecondsHaveADigitOnlyByTheLibrarysClock)
{
    EXPECT_EQ(MillisecondsText({2'096, false}), "2.1");
    EXPECT_EQ(MillisecondsText({1'234'567, false}), "1,234.6");
    EXPECT_EQ(MillisecondsText({3'000, true}), "~3");
}

TEST(RowText, SecondsMayBeBeforeTheBeginning)
{
    EXPECT_EQ(SecondsText({1'000}, {1'011}), "0.011");
    EXPECT_EQ(SecondsText({1'011}, {1'000}), "-0.011");
    EXPECT_EQ(SecondsText({0}, {3'600'005}), "3600.005");
}

TEST(RowText, ControlCharactersAndBrokenUtf8AreMadeVisible)
{
    EXPECT_EQ(Printable("a\tb\x7F"), "a?b?");
    EXPECT_EQ(Printable("\xC2\x9B[31m \xC2\xA0"), "?[31m \xC2\xA0") << "an escape sequence in two bytes";
    EXPECT_EQ(Printable("Ger\xC3\xA4t"), "Ger\xC3\xA4t");
    EXPECT_EQ(Printable("Ger\xE4t"), "Ger?t");
    EXPECT_EQ(Printable("\xED\xA0\x80"), "???") << "a surrogate";
    EXPECT_EQ(Printable("\xC0\xAF"), "??") << "longer than it need be";
}

TEST(RowText, ColumnsAreCharacters)
{
    EXPECT_EQ(ColumnsOf("Ger\xC3\xA4t"), 5u);
    EXPECT_EQ(Shortened("Ger\xC3\xA4te", 5), "Ger..");
    EXPECT_EQ(Shortened("Ger\xC3\xA4t", 5), "Ger\xC3\xA4t");
}

TEST(RowText, ATextThatDoesNotFitGoesOnBelowItself)
{
    EXPECT_EQ(Wrapped("name", 6, "one two three four", 16), "name  one two\n      three four\n");
    EXPECT_EQ(Wrapped("name", 6, "short", 16), "name  short\n");
    EXPECT_EQ(Wrapped("name", 6, "awordthatislongerthanthat", 16), "name  awordthatislongerthanthat\n");
}

TEST(JsonText, StringsAreEscapedAndValidUtf8)
{
    EXPECT_EQ(JsonString("a\"\\\n\x01"), R"("a\"\\\n\u0001")");
    EXPECT_EQ(JsonString("Ger\xE4t"), "\"Ger\xEF\xBF\xBDt\"");
}

TEST(JsonText, MembersKeepTheirOrder)
{
    EXPECT_EQ(JsonObject().Add("b", 1).Add("a", true).AddRaw("c", JsonArray().Add("x").Text()).Text(),
              R"({"b":1,"a":true,"c":["x"]})");
}

} // namespace
} // namespace marvane::tool
