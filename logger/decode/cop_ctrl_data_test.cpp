#include <cstdlib>
#include <vector>

#include "tests/support/decoded_text.h"

namespace marvane {
namespace {

/// Decodes control data of 500 ms, one send cycle, endless reception, no flags, and the responses of the
/// test.
class CopCtrlData : public testing::Decoding
{
protected:
    static std::string Control(const PDU_COP_CTRL_DATA* control, UNUM32 calls = 2, UNUM32 level = 2)
    {
        return Decoded([&](const DecoderContext& context) { DecodeCopCtrlData(context, control); }, calls,
                       level);
    }

    static PDU_COP_CTRL_DATA WithResponses(std::vector<PDU_EXP_RESP_DATA>& responses)
    {
        return {500, 1, -1, 0, {0, nullptr}, static_cast<UNUM32>(responses.size()), responses.data()};
    }

    /// What follows the flags.
    static std::string Responses(std::vector<PDU_EXP_RESP_DATA> responses, UNUM32 level = 2)
    {
        const PDU_COP_CTRL_DATA control = WithResponses(responses);
        return AfterHead(Control(&control, 2, level));
    }

    static std::string AfterHead(const std::string& text)
    {
        EXPECT_TRUE(text.starts_with(Head)) << text;
        return text.substr(Head.size());
    }

    static PDU_EXP_RESP_DATA WithIds(std::vector<UNUM32>& ids)
    {
        return {0, 1, 0, nullptr, nullptr, static_cast<UNUM32>(ids.size()), ids.data()};
    }

    /// Control data with one response of these identifiers, decoded into a buffer that holds `before` bytes.
    /// What was added, with its stamps.
    static std::string AddedAfter(std::size_t before, std::vector<UNUM32> ids)
    {
        std::vector<PDU_EXP_RESP_DATA> responses = {WithIds(ids)};
        const PDU_COP_CTRL_DATA control = WithResponses(responses);
        PhaseText text(PhaseTime(7, 8, 9, 10));
        text.Add("%s"_fmt, std::string(before, 'x'));
        DecodeCopCtrlData({2, 2, text}, &control);
        EXPECT_LT(text.Text().size(), LogBuffer::Size);
        return std::string(text.Text().substr(before));
    }

    /// Identifiers that make a list line of 699 bytes, or of one byte more.
    static std::vector<UNUM32> LongList(bool tooLong)
    {
        std::vector<UNUM32> ids(135, 1234);
        ids[0] = ids[134] = 12345;
        if (tooLong)
            ids[1] = 12345;
        return ids;
    }

    inline static const std::string Head = "   -->  Time            \t= 500\n"
                                           "   -->  NumSendCycles   \t= 1\n"
                                           "   -->  NumReceiveCycles\t= <INFINITE>\n"
                                           "   -->  TempParamUpdate \t= 0\n"
                                           "   -->  pCoPCtrlData->TxFlag->NumFlagBytes\t= 0\n";
    inline static const std::string FirstOfOne =
        "   -->  Expected response\t= 1 of 1\n"
        "    >>> Type = 0 (POSITIVE), AcceptanceId = 1, Num match bytes\t= 0\n";
};

TEST_F(CopCtrlData, NullIsReported)
{
    EXPECT_EQ(Control(nullptr), "   -->  pCoPCtrlData    \t= <NULL>\n");
}

TEST_F(CopCtrlData, WithoutExpectedResponsesItsLinesEndWithTheirCount)
{
    const PDU_COP_CTRL_DATA control = {.Time = 4294967295u,
                                       .NumSendCycles = 3,
                                       .NumReceiveCycles = 4,
                                       .TempParamUpdate = 1,
                                       .TxFlag = {0, nullptr},
                                       .NumPossibleExpectedResponses = 0,
                                       .pExpectedResponseArray = nullptr};
    EXPECT_EQ(Control(&control), "   -->  Time            \t= 4294967295\n"
                                 "   -->  NumSendCycles   \t= 3\n"
                                 "   -->  NumReceiveCycles\t= 4\n"
                                 "   -->  TempParamUpdate \t= 1\n"
                                 "   -->  pCoPCtrlData->TxFlag->NumFlagBytes\t= 0\n"
                                 "   -->  NumExpResps     \t= 0\n");
}

TEST_F(CopCtrlData, ACountOfZeroDoesNotLookAtTheArray)
{
    const PDU_COP_CTRL_DATA control = {.Time = 500,
                                       .NumSendCycles = 1,
                                       .NumReceiveCycles = -1,
                                       .TempParamUpdate = 0,
                                       .TxFlag = {0, nullptr},
                                       .NumPossibleExpectedResponses = 0,
                                       .pExpectedResponseArray =
                                           reinterpret_cast<PDU_EXP_RESP_DATA*>(std::uintptr_t{0x10})};
    EXPECT_EQ(AfterHead(Control(&control)), "   -->  NumExpResps     \t= 0\n");
}

TEST_F(CopCtrlData, BothCyclesHaveThreeForms)
{
    const auto cycles = [](SNUM32 send, SNUM32 receive) {
        const PDU_COP_CTRL_DATA control = {.Time = 500,
                                           .NumSendCycles = send,
                                           .NumReceiveCycles = receive,
                                           .TempParamUpdate = 0,
                                           .TxFlag = {0, nullptr},
                                           .NumPossibleExpectedResponses = 0,
                                           .pExpectedResponseArray = nullptr};
        const std::string text = Control(&control);
        const std::size_t begin = text.find('\n') + 1;
        return text.substr(begin, text.find("   -->  TempParamUpdate") - begin);
    };
    EXPECT_EQ(cycles(-1, -2),
              "   -->  NumSendCycles   \t= <INFINITE>\n   -->  NumReceiveCycles\t= <MULTIPLE>\n");
    EXPECT_EQ(cycles(-2, -1),
              "   -->  NumSendCycles   \t= <MULTIPLE>\n   -->  NumReceiveCycles\t= <INFINITE>\n");
    EXPECT_EQ(cycles(0, -3), "   -->  NumSendCycles   \t= 0\n   -->  NumReceiveCycles\t= -3\n");
    EXPECT_EQ(cycles(2147483647, -2147483647 - 1),
              "   -->  NumSendCycles   \t= 2147483647\n   -->  NumReceiveCycles\t= -2147483648\n");
}

TEST_F(CopCtrlData, FlagsAreListedAndNamedWithTheTransmitTable)
{
    UNUM8 bytes[] = {0x20, 0, 0x01, 0x80};
    const PDU_COP_CTRL_DATA control = {.Time = 500,
                                       .NumSendCycles = 1,
                                       .NumReceiveCycles = -1,
                                       .TempParamUpdate = 0,
                                       .TxFlag = {4, bytes},
                                       .NumPossibleExpectedResponses = 0,
                                       .pExpectedResponseArray = nullptr};
    EXPECT_EQ(Control(&control), "   -->  Time            \t= 500\n"
                                 "   -->  NumSendCycles   \t= 1\n"
                                 "   -->  NumReceiveCycles\t= <INFINITE>\n"
                                 "   -->  TempParamUpdate \t= 0\n"
                                 "    >>> pCoPCtrlData-> |00000000 <20 00 01 80>                             "
                                 "          ...            |\n"
                                 "\t\t -->  [00] 0x20 = ENABLE_EXTRA_INFO\n"
                                 "\t\t -->  [02] 0x01 = CAN_29BIT_ID\n"
                                 "\t\t -->  [03] 0x80 = ISO15765_FRAME_PAD\n"
                                 "   -->  NumExpResps     \t= 0\n");
}

TEST_F(CopCtrlData, FlagBytesThatAreMissingAreReported)
{
    const PDU_COP_CTRL_DATA control = {.Time = 500,
                                       .NumSendCycles = 1,
                                       .NumReceiveCycles = -1,
                                       .TempParamUpdate = 0,
                                       .TxFlag = {2, nullptr},
                                       .NumPossibleExpectedResponses = 0,
                                       .pExpectedResponseArray = nullptr};
    EXPECT_EQ(Control(&control),
              "   -->  Time            \t= 500\n"
              "   -->  NumSendCycles   \t= 1\n"
              "   -->  NumReceiveCycles\t= <INFINITE>\n"
              "   -->  TempParamUpdate \t= 0\n"
              "   -->  pCoPCtrlData->TxFlag->pFlagData\t= <NULL>\n"
              "   -->  pCoPCtrlData->TxFlag *** WARNING: NumFlagBytes != 0 BUT pFlagData= <NULL> ***\n"
              "   -->  NumExpResps     \t= 0\n");
}

TEST_F(CopCtrlData, ResponsesWithoutAnArrayAreAnErrorWhateverTheirCount)
{
    for (const UNUM32 count : {1u, 3u, 4294967295u}) {
        const PDU_COP_CTRL_DATA control = {.Time = 500,
                                           .NumSendCycles = 1,
                                           .NumReceiveCycles = -1,
                                           .TempParamUpdate = 0,
                                           .TxFlag = {0, nullptr},
                                           .NumPossibleExpectedResponses = count,
                                           .pExpectedResponseArray = nullptr};
        EXPECT_EQ(AfterHead(Control(&control)), "   -->  pCoPCtrlData->pExpectedRspArray\t= <NULL>\n"
                                                "   -->  **ERROR** expected responses with no array! (" +
                                                    testing::PointerText(nullptr) + ", " +
                                                    std::to_string(count) + ")\n");
    }
}

TEST_F(CopCtrlData, AResponseIsPositiveAtZeroAndNegativeAtAllElse)
{
    EXPECT_EQ(Responses({{0, 1, 0, nullptr, nullptr, 0, nullptr},
                         {1, 2, 0, nullptr, nullptr, 0, nullptr},
                         {4294967295u, 4294967295u, 0, nullptr, nullptr, 0, nullptr}}),
              "   -->  Expected response\t= 1 of 3\n"
              "    >>> Type = 0 (POSITIVE), AcceptanceId = 1, Num match bytes\t= 0\n"
              "    >>> Num URIDs      \t= 0\n"
              "   -->  Expected response\t= 2 of 3\n"
              "    >>> Type = 1 (NEGATIVE), AcceptanceId = 2, Num match bytes\t= 0\n"
              "    >>> Num URIDs      \t= 0\n"
              "   -->  Expected response\t= 3 of 3\n"
              "    >>> Type = 4294967295 (NEGATIVE), AcceptanceId = 4294967295, Num match bytes\t= 0\n"
              "    >>> Num URIDs      \t= 0\n");
}

TEST_F(CopCtrlData, MaskAndPatternAreListedWholeWhateverLogMaxPduBuffSays)
{
    UNUM8 mask[17] = {};
    UNUM8 pattern[17];
    std::fill(std::begin(pattern), std::end(pattern), UNUM8{0x41});
    SetSetting(NumericKey::LogMaxPduBuff, 2);
    EXPECT_EQ(Responses({{0, 1, 17, mask, pattern, 0, nullptr}}),
              "   -->  Expected response\t= 1 of 1\n"
              "    >>> Type = 0 (POSITIVE), AcceptanceId = 1, Num match bytes\t= 17\n"
              "    >>> MaskData       |00000000 <00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00>  "
              "................|\n"
              "    >>> MaskData       |00000010 <00>                                               .         "
              "      |\n"
              "    >>> PatternData    |00000000 <41 41 41 41 41 41 41 41 41 41 41 41 41 41 41 41>  "
              "AAAAAAAAAAAAAAAA|\n"
              "    >>> PatternData    |00000010 <41>                                               A         "
              "      |\n"
              "    >>> Num URIDs      \t= 0\n");
}

TEST_F(CopCtrlData, MatchBytesThatAreMissingAreReported)
{
    UNUM8 byte = 0x41;
    EXPECT_EQ(
        Responses({{0, 1, 4294967295u, nullptr, nullptr, 0, nullptr}, {0, 2, 1, &byte, nullptr, 0, nullptr}}),
        "   -->  Expected response\t= 1 of 2\n"
        "    >>> Type = 0 (POSITIVE), AcceptanceId = 1, Num match bytes\t= 4294967295\n"
        "    >>>    MaskData   : Address \t= <NULL>\n"
        "    >>>    PatternData: Address \t= <NULL>\n"
        "    >>> Num URIDs      \t= 0\n"
        "   -->  Expected response\t= 2 of 2\n"
        "    >>> Type = 0 (POSITIVE), AcceptanceId = 2, Num match bytes\t= 1\n"
        "    >>> MaskData       |00000000 <41>                                               A               "
        "|\n"
        "    >>>    PatternData: Address \t= <NULL>\n"
        "    >>> Num URIDs      \t= 0\n");
}

TEST_F(CopCtrlData, WithoutMatchBytesNeitherPointerIsLookedAt)
{
    UNUM8* const unreadable = reinterpret_cast<UNUM8*>(std::uintptr_t{0x10});
    EXPECT_EQ(Responses({{0, 1, 0, unreadable, unreadable, 0, nullptr}}),
              FirstOfOne + "    >>> Num URIDs      \t= 0\n");
    EXPECT_EQ(Responses({{0, 1, 0, nullptr, nullptr, 0, reinterpret_cast<UNUM32*>(std::uintptr_t{0x10})}}),
              FirstOfOne + "    >>> Num URIDs      \t= 0\n");
}

TEST_F(CopCtrlData, LevelOneShowsEveryLineButTheBytes)
{
    UNUM8 byte = 0x41;
    UNUM32 id = 9;
    EXPECT_EQ(Responses({{0, 1, 1, &byte, &byte, 1, &id}, {0, 2, 1, nullptr, &byte, 0, nullptr}}, 1),
              "   -->  Expected response\t= 1 of 2\n"
              "    >>> Type = 0 (POSITIVE), AcceptanceId = 1, Num match bytes\t= 1\n"
              "\t\t -->   URIDs[001]:    9 \n"
              "   -->  Expected response\t= 2 of 2\n"
              "    >>> Type = 0 (POSITIVE), AcceptanceId = 2, Num match bytes\t= 1\n"
              "    >>>    MaskData   : Address \t= <NULL>\n"
              "    >>> Num URIDs      \t= 0\n");
}

TEST_F(CopCtrlData, IdentifiersStandInColumnsOfFourWithACommaBetweenAndABlankAtTheEnd)
{
    const auto list = [](std::vector<UNUM32> ids) { return Responses({WithIds(ids)}); };
    EXPECT_EQ(list({7}), FirstOfOne + "\t\t -->   URIDs[001]:    7 \n");
    EXPECT_EQ(list({7, 8}), FirstOfOne + "\t\t -->   URIDs[002]:    7,   8 \n");
    EXPECT_EQ(list({0, 12, 345, 6789, 12345, 4294967295u, 4294967293u}),
              FirstOfOne + "\t\t -->   URIDs[007]:    0,  12, 345,6789,12345,4294967295,4294967293 \n");
    EXPECT_EQ(list({0xFFFFFFFE, 1, 0xFFFFFFFE}),
              FirstOfOne + "\t\t -->   URIDs[003]: <PDU_ID_UNDEF>,   1,<PDU_ID_UNDEF> \n");
}

TEST_F(CopCtrlData, IdentifiersWithoutAListEndTheWalk)
{
    std::vector<UNUM32> ids = {5};
    for (const UNUM32 count : {1u, 4u, 4294967295u})
        EXPECT_EQ(Responses({WithIds(ids), {0, 1, 0, nullptr, nullptr, count, nullptr}, WithIds(ids)}),
                  "   -->  Expected response\t= 1 of 3\n"
                  "    >>> Type = 0 (POSITIVE), AcceptanceId = 1, Num match bytes\t= 0\n"
                  "\t\t -->   URIDs[001]:    5 \n"
                  "   -->  Expected response\t= 2 of 3\n"
                  "    >>> Type = 0 (POSITIVE), AcceptanceId = 1, Num match bytes\t= 0\n"
                  "    >>> WARNING: NumURIDs=" +
                      std::to_string(count) + " - but data array is NULL!\n");
}

TEST_F(CopCtrlData, AListOf699BytesIsLoggedWhole)
{
    std::vector<UNUM32> ids = LongList(false);
    std::string line = "\t\t -->   URIDs[135]: 12345,";
    for (int i = 0; i < 133; ++i)
        line += "1234,";
    line += "12345 \n";
    ASSERT_EQ(line.size(), 699u);
    EXPECT_EQ(Responses({WithIds(ids)}), FirstOfOne + line);
}

using CopCtrlDataDeathTest = CopCtrlData;

TEST_F(CopCtrlDataDeathTest, AListOf700BytesEndsTheProcessAndOneOf699DoesNot)
{
    const auto decodeAndExit = [](bool tooLong) {
        std::vector<UNUM32> ids = LongList(tooLong);
        Responses({WithIds(ids)});
        std::_Exit(42);
    };
    EXPECT_EXIT(decodeAndExit(false), ::testing::ExitedWithCode(42), "");
    EXPECT_EXIT(
        decodeAndExit(true), [](int status) { return !::testing::ExitedWithCode(42)(status); }, "");
}

TEST_F(CopCtrlDataDeathTest, AListLargerThanTheLogBufferEndsTheProcess)
{
    std::vector<UNUM32> ids(20000, PDU_ID_UNDEF);
    EXPECT_DEATH(Responses({WithIds(ids)}), "");
}

TEST_F(CopCtrlData, WithAClosedGateAListOfAnyLengthIsHarmless)
{
    std::vector<UNUM32> ids(20000);
    std::vector<PDU_EXP_RESP_DATA> responses = {WithIds(ids)};
    const PDU_COP_CTRL_DATA control = WithResponses(responses);
    EXPECT_EQ(Control(&control, 1, 2), "");
    EXPECT_EQ(Control(&control, 2, 0), "");
}

TEST_F(CopCtrlData, AListForWhichTheStampLeavesNoRoomIsDroppedWhole)
{
    // The line's stamp ends at the byte where 201 bytes of room are left, or at the next.
    const std::size_t stampEnd = AddedAfter(0, {7}).find("\t\t -->   URIDs");
    ASSERT_NE(stampEnd, std::string::npos);
    const std::size_t before = LogBuffer::Capacity - 201 - stampEnd;
    const std::string fits = AddedAfter(before, {7, 8, 9});
    EXPECT_EQ(fits.substr(stampEnd), "\t\t -->   URIDs[003]:    7,   8,   9 \n\t\t\t\t...\n");
    const std::string dropped = AddedAfter(before + 1, {7, 8, 9});
    EXPECT_EQ(dropped.substr(stampEnd), "\t\t\t\t...\n");
    EXPECT_EQ(dropped.substr(0, stampEnd), fits.substr(0, stampEnd));
}

TEST_F(CopCtrlData, ALongListInALittleRoomStaysInsideTheBuffer)
{
    const std::size_t stampEnd = AddedAfter(0, {7}).find("\t\t -->   URIDs");
    ExpectCutOff(AddedAfter(LogBuffer::Capacity - 201 - stampEnd, LongList(false)));
}

TEST_F(CopCtrlData, MoreResponsesThanTheBufferHoldsEndWithTheMarker)
{
    std::vector<UNUM32> ids = {1, 2};
    for (const std::size_t count : {1000u, 100000u}) {
        const std::string text = Responses(std::vector<PDU_EXP_RESP_DATA>(count, WithIds(ids)));
        EXPECT_TRUE(text.starts_with("   -->  Expected response\t= 1 of " + std::to_string(count) + "\n"));
        ExpectCutOff(text);
    }
}

TEST_F(CopCtrlData, MatchBytesLargerThanTheBufferEndWithTheMarker)
{
    std::vector<UNUM8> bytes(20000);
    ExpectCutOff(Responses({{0, 1, 20000, bytes.data(), bytes.data(), 0, nullptr}}));
}

TEST_F(CopCtrlData, HasItsGates)
{
    ExpectThreeGates([](const DecoderContext& context) { DecodeCopCtrlData(context, nullptr); });
    const PDU_COP_CTRL_DATA control = {.Time = 500,
                                       .NumSendCycles = 1,
                                       .NumReceiveCycles = -1,
                                       .TempParamUpdate = 0,
                                       .TxFlag = {0, nullptr},
                                       .NumPossibleExpectedResponses = 3,
                                       .pExpectedResponseArray = nullptr};
    ExpectThreeGates([&](const DecoderContext& context) { DecodeCopCtrlData(context, &control); });
}

TEST_F(CopCtrlData, WithAClosedGateNothingIsRead)
{
    const auto* const unreadable = reinterpret_cast<const PDU_COP_CTRL_DATA*>(std::uintptr_t{0x10});
    EXPECT_EQ(Control(unreadable, 1, 2), "");
    EXPECT_EQ(Control(unreadable, 2, 0), "");
    SetSetting(NumericKey::LogEnabled, 0);
    EXPECT_EQ(Control(unreadable), "");
}

} // namespace
} // namespace marvane
