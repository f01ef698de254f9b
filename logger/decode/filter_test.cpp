#include <vector>

#include "tests/support/decoded_text.h"

namespace marvane {
namespace {

class Filter : public testing::Decoding
{
protected:
    static std::string List(const PDU_IO_FILTER_LIST* list, Arrow arrow = ToTarget.Deeper(), UNUM32 level = 2)
    {
        return Decoded([&](const DecoderContext& context) { DecodeFilterList(context, arrow, list); }, 2,
                       level);
    }
};

TEST_F(Filter, ANullListIsReported)
{
    EXPECT_EQ(List(nullptr), "    >>> pFltLst\t= <NULL>\n");
    EXPECT_EQ(List(nullptr, FromTarget.Deeper()), "    <<< pFltLst\t= <NULL>\n");
}

TEST_F(Filter, AnEmptyListShowsItsAddress)
{
    PDU_IO_FILTER_DATA filter = {};
    const PDU_IO_FILTER_LIST list = {.NumFilterEntries = 0, .pFilterData = &filter};
    EXPECT_EQ(List(&list), "    >>> ->NumFilterEntries \t= 0\n    >>> ->pFilterData \t@ " +
                               testing::PointerText(&filter) + "\n");
}

TEST_F(Filter, EntriesWithoutAnArrayAreReported)
{
    const PDU_IO_FILTER_LIST list = {.NumFilterEntries = 2, .pFilterData = nullptr};
    EXPECT_EQ(List(&list),
              "    >>> ->NumFilterEntries \t= 2\n    >>> Entries but pFltLst->pFilterData\t= <NULL>\n");
}

TEST_F(Filter, MaskAndPatternAreListedUnderTheEntry)
{
    PDU_IO_FILTER_DATA filters[] = {{.FilterType = PDU_FLT_PASS_UUDT,
                                     .FilterNumber = 1,
                                     .FilterCompareSize = 4,
                                     .FilterMaskMessage = {0xFF, 0xFF, 0xFF, 0xFF},
                                     .FilterPatternMessage = {0, 0, 7, 0xE8}},
                                    {.FilterType = 3,
                                     .FilterNumber = 2,
                                     .FilterCompareSize = 1,
                                     .FilterMaskMessage = {0x0F},
                                     .FilterPatternMessage = {0x41}}};
    const PDU_IO_FILTER_LIST list = {.NumFilterEntries = 2, .pFilterData = filters};
    EXPECT_EQ(
        List(&list),
        "    >>> ->NumFilterEntries \t= 2\n"
        "\t\t -->  FilterEntry[00] Type=PDU_FLT_PASS_UUDT (17), Number=1, FilterSize=4\n"
        "\t\t  >>> pMaskMsg       |00000000 <FF FF FF FF>                                      ....            |\n"
        "\t\t  >>> pPatternMsg    |00000000 <00 00 07 E8>                                      ....            |\n"
        "\t\t -->  FilterEntry[01] Type=<UNKNOWN> (3), Number=2, FilterSize=1\n"
        "\t\t  >>> pMaskMsg       |00000000 <0F>                                               .               |\n"
        "\t\t  >>> pPatternMsg    |00000000 <41>                                               A               |\n");
    EXPECT_TRUE(List(&list, FromTarget.Deeper())
                    .starts_with("    <<< ->NumFilterEntries \t= 2\n\t\t <--  FilterEntry[00]"));
    EXPECT_NE(List(&list, FromTarget.Deeper()).find("\n\t\t  <<< pMaskMsg       |"), std::string::npos);
}

TEST_F(Filter, ASizeOfZeroIsReportedForBoth)
{
    PDU_IO_FILTER_DATA filter = {.FilterType = PDU_FLT_BLOCK,
                                 .FilterNumber = 1,
                                 .FilterCompareSize = 0,
                                 .FilterMaskMessage = {},
                                 .FilterPatternMessage = {}};
    const PDU_IO_FILTER_LIST list = {.NumFilterEntries = 1, .pFilterData = &filter};
    EXPECT_EQ(List(&list), "    >>> ->NumFilterEntries \t= 1\n"
                           "\t\t -->  FilterEntry[00] Type=PDU_FLT_BLOCK (2), Number=1, FilterSize=0\n"
                           "\t\t  >>>    pMaskMsg   : Size\t= <ZERO>\n"
                           "\t\t  >>>    pPatternMsg: Size\t= <ZERO>\n");
}

TEST_F(Filter, ASizeBeyondTheRecordListsTwelveBytesAndTheMarkOfACut)
{
    PDU_IO_FILTER_DATA filter = {.FilterType = PDU_FLT_PASS,
                                 .FilterNumber = 1,
                                 .FilterCompareSize = 13,
                                 .FilterMaskMessage = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12},
                                 .FilterPatternMessage = {}};
    const PDU_IO_FILTER_LIST list = {.NumFilterEntries = 1, .pFilterData = &filter};
    EXPECT_EQ(
        List(&list),
        "    >>> ->NumFilterEntries \t= 1\n"
        "\t\t -->  FilterEntry[00] Type=PDU_FLT_PASS (1), Number=1, FilterSize=13\n"
        "\t\t  >>> pMaskMsg       |00000000 <01 02 03 04 05 06 07 08 09 0A 0B 0C>              ............ ( ...)|\n"
        "\t\t  >>> pPatternMsg    |00000000 <00 00 00 00 00 00 00 00 00 00 00 00>              ............ ( ...)|\n");
}

TEST_F(Filter, LevelOneShowsEntriesWithoutBytes)
{
    PDU_IO_FILTER_DATA filter = {.FilterType = PDU_FLT_BLOCK_UUDT,
                                 .FilterNumber = 1,
                                 .FilterCompareSize = 4,
                                 .FilterMaskMessage = {},
                                 .FilterPatternMessage = {}};
    const PDU_IO_FILTER_LIST list = {.NumFilterEntries = 1, .pFilterData = &filter};
    EXPECT_EQ(List(&list, ToTarget.Deeper(), 1),
              "    >>> ->NumFilterEntries \t= 1\n"
              "\t\t -->  FilterEntry[00] Type=PDU_FLT_BLOCK_UUDT (18), Number=1, FilterSize=4\n");
}

TEST_F(Filter, AListLargerThanTheBufferEndsWithTheMarker)
{
    std::vector<PDU_IO_FILTER_DATA> filters(1000);
    const PDU_IO_FILTER_LIST list = {.NumFilterEntries = 1000, .pFilterData = filters.data()};
    ExpectCutOff(List(&list));
}

TEST_F(Filter, HasItsGates)
{
    ExpectThreeGates(
        [](const DecoderContext& context) { DecodeFilterList(context, ToTarget.Deeper(), nullptr); });
}

} // namespace
} // namespace marvane
