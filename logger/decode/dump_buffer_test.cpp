#include <vector>

#include "tests/support/decoded_text.h"

namespace marvane {
namespace {

class DumpBufferTest : public testing::Decoding
{
protected:
    static std::string Dumped(const std::vector<UNUM8>& bytes, UNUM32 limit, Arrow arrow = ToTarget,
                              const char* label = "label")
    {
        return Decoded([&](const DecoderContext& context) {
            DumpBuffer(context, arrow, label, bytes.data(), static_cast<UNUM32>(bytes.size()), limit);
        });
    }

    /// Bytes 0, 1, 2 ...
    static std::vector<UNUM8> Count(std::size_t size)
    {
        std::vector<UNUM8> bytes(size);
        for (std::size_t i = 0; i < size; ++i)
            bytes[i] = static_cast<UNUM8>(i);
        return bytes;
    }
};

TEST_F(DumpBufferTest, OneByteIsInItsColumns)
{
    const std::string line = Dumped({0x41}, 1);
    EXPECT_EQ(
        line,
        "   -->  label          |00000000 <41>                                               A               |\n");
    EXPECT_EQ(line.size(), 102u);
    EXPECT_EQ(line[36], '>');
    EXPECT_EQ(line[84], 'A');
    EXPECT_EQ(line[100], '|');
}

TEST_F(DumpBufferTest, SixteenBytesFillALine)
{
    EXPECT_EQ(
        Dumped(Count(16), 99),
        "   -->  label          |00000000 <00 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F>  ................|\n");
}

TEST_F(DumpBufferTest, SeventeenBytesTakeASecondLineOfOneCell)
{
    EXPECT_EQ(
        Dumped(Count(17), 17, FromTarget.Deeper()),
        "    <<< label          |00000000 <00 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F>  ................|\n"
        "    <<< label          |00000010 <10>                                               .               |\n");
}

TEST_F(DumpBufferTest, ALimitOf16CutsAfterTheBarInPlaceOfTheLineBreak)
{
    EXPECT_EQ(
        Dumped(std::vector<UNUM8>(40, 0x30), 16),
        "   -->  label          |00000000 <30 30 30 30 30 30 30 30 30 30 30 30 30 30 30 30>  0000000000000000|( ...)|\n");
}

TEST_F(DumpBufferTest, AShortCutLineHasItsMarkOneColumnAfterTheText)
{
    const std::string line = Dumped(std::vector<UNUM8>(40, 0x30), 3);
    EXPECT_EQ(
        line,
        "   -->  label          |00000000 <30 30 30>                                         000 ( ...)|\n");
    EXPECT_EQ(line[88], '(');
}

TEST_F(DumpBufferTest, ACutOfFifteenBytesOverwritesTheBar)
{
    const std::string line = Dumped(std::vector<UNUM8>(40, 0x30), 15);
    EXPECT_EQ(
        line,
        "   -->  label          |00000000 <30 30 30 30 30 30 30 30 30 30 30 30 30 30 30>     000000000000000 ( ...)|\n");
    EXPECT_EQ(line[100], '(');
}

TEST_F(DumpBufferTest, ALimitBeyondTheSizeChangesNothing)
{
    EXPECT_EQ(Dumped(Count(3), 3), Dumped(Count(3), 4000000000u));
}

TEST_F(DumpBufferTest, ALimitOfZeroListsNothingWithoutAWord)
{
    EXPECT_EQ(Dumped(Count(3), 0), "");
}

TEST_F(DumpBufferTest, OnlyPrintableBytesShowAsText)
{
    EXPECT_EQ(
        Dumped({0x1F, 0x20, 0x7E, 0x7F, 0x80, 0xFF}, 99),
        "   -->  label          |00000000 <1F 20 7E 7F 80 FF>                                . ~...          |\n");
}

TEST_F(DumpBufferTest, ALongLabelIsCutInTheListingAndWholeInTheReports)
{
    EXPECT_EQ(
        Dumped({0x41}, 1, ToTarget, "pByteArrayArray"),
        "   -->  pByteArrayArra |00000000 <41>                                               A               |\n");
    EXPECT_EQ(Dumped({}, 0, ToTarget, "pByteArrayArray"),
              "   -->  pByteArrayArray: Size\t= <ZERO>\n   -->  pByteArrayArray: Address \t= <NULL>\n");
}

TEST_F(DumpBufferTest, AnEmptyBufferAndANullOneAreReported)
{
    const UNUM8 byte = 1;
    EXPECT_EQ(
        Decoded([&](const DecoderContext& context) { DumpBuffer(context, ToTarget, "label", &byte, 0, 0); }),
        "   -->           label: Size\t= <ZERO>\n");
    EXPECT_EQ(Decoded([&](const DecoderContext& context) {
                  DumpBuffer(context, FromTarget, "label", nullptr, 5, 5);
              }),
              "   <--           label: Address \t= <NULL>\n");
    EXPECT_EQ(Decoded([&](const DecoderContext& context) {
                  DumpBuffer(context, FromTarget, "label", nullptr, 0, 0);
              }),
              "   <--           label: Size\t= <ZERO>\n   <--           label: Address \t= <NULL>\n");
}

TEST_F(DumpBufferTest, ReportsNeedLevelOneAndListingsLevelTwo)
{
    const UNUM8 byte = 0x41;
    const auto report = [](const DecoderContext& context) {
        DumpBuffer(context, ToTarget, "label", nullptr, 5, 5);
    };
    const auto list = [&](const DecoderContext& context) {
        DumpBuffer(context, ToTarget, "label", &byte, 1, 1);
    };
    for (UNUM32 calls = 0; calls <= 3; ++calls)
        for (UNUM32 level = 0; level <= 3; ++level) {
            EXPECT_EQ(Decoded(report, calls, level) != "", calls >= 1 && level >= 1) << calls << level;
            EXPECT_EQ(Decoded(list, calls, level) != "", calls >= 2 && level >= 2) << calls << level;
        }
    SetSetting(NumericKey::LogEnabled, 0);
    EXPECT_EQ(Decoded(report), "");
    EXPECT_EQ(Decoded(list), "");
}

TEST_F(DumpBufferTest, EachDirectionAndLevelHasItsIndent)
{
    const std::string rest =
        "label          |00000000 <41>                                               A               |\n";
    const char* indents[] = {"   -->  ", "    >>> ",   "\t\t -->  ", "\t\t  >>> ",   "   <--  ",
                             "    <<< ", "\t\t <--  ", "\t\t  <<< ", "\t\t\t\t...\n"};
    for (int index = 0; index < 9; ++index)
        EXPECT_EQ(Dumped({0x41}, 1, ToTarget.Deeper(index)), indents[index] + rest);
}

TEST_F(DumpBufferTest, AListingThatOutgrowsTheBufferEndsWithTheMarkerOnce)
{
    ExpectCutOff(Dumped(Count(100000), 100000));
}

TEST_F(DumpBufferTest, NothingIsAddedToAFullBuffer)
{
    PhaseText text;
    const DecoderContext context{2, 2, text};
    const std::vector<UNUM8> bytes(100000);
    DumpBuffer(context, ToTarget, "label", bytes.data(), 100000, 100000);
    const std::string full(text.Text());
    DumpBuffer(context, ToTarget, "label", bytes.data(), 100000, 100000);
    DumpBuffer(context, ToTarget, "label", nullptr, 0, 0);
    EXPECT_EQ(text.Text(), full);
}

} // namespace
} // namespace marvane
