#include <vector>

#include "tests/support/decoded_text.h"

namespace marvane {
namespace {

class EventItem : public testing::Decoding
{
protected:
    static std::string Flags(const PDU_FLAG_DATA* flags, const char* label = "flags", Arrow arrow = ToTarget,
                             const BitNames& names = TxFlagNames)
    {
        return Decoded(
            [&](const DecoderContext& context) { DecodeFlagData(context, arrow, label, flags, names); });
    }
    static std::string Event(T_PDU_IT type, const void* data)
    {
        return Decoded([&](const DecoderContext& context) { DecodeEventItem(context, type, data); });
    }
};

TEST_F(EventItem, FlagsInAllTheirNullForms)
{
    UNUM8 byte = 0;
    const PDU_FLAG_DATA none = {.NumFlagBytes = 0, .pFlagData = nullptr};
    const PDU_FLAG_DATA unused = {.NumFlagBytes = 0, .pFlagData = &byte};
    const PDU_FLAG_DATA missing = {.NumFlagBytes = 2, .pFlagData = nullptr};
    EXPECT_EQ(Flags(nullptr), "   -->  flags\t= <NULL>\n");
    EXPECT_EQ(Flags(nullptr, nullptr, FromTarget.Deeper()), "    <<< <NULL STRING>\t= <NULL>\n");
    EXPECT_EQ(Flags(&none), "   -->  flags->NumFlagBytes\t= 0\n");
    EXPECT_EQ(Flags(&unused), "   -->  flags->NumFlagBytes\t= 0\n");
    EXPECT_EQ(Flags(&missing), "   -->  flags->pFlagData\t= <NULL>\n"
                               "   -->  flags *** WARNING: NumFlagBytes != 0 BUT pFlagData= <NULL> ***\n");
}

TEST_F(EventItem, ANamedBitHasALineTwoLevelsBelowTheLabels)
{
    UNUM8 byte = 0x20;
    const PDU_FLAG_DATA flags = {.NumFlagBytes = 1, .pFlagData = &byte};
    EXPECT_EQ(
        Flags(&flags),
        "    >>> flags          |00000000 <20>                                                               |\n"
        "\t\t -->  [00] 0x20 = ENABLE_EXTRA_INFO\n");
}

TEST_F(EventItem, ABitWithoutANameHasNoLine)
{
    UNUM8 byte = 0x01;
    const PDU_FLAG_DATA flags = {.NumFlagBytes = 1, .pFlagData = &byte};
    EXPECT_EQ(
        Flags(&flags),
        "    >>> flags          |00000000 <01>                                               .               |\n");
}

TEST_F(EventItem, BytesAfterTheFourthHaveNoBitLines)
{
    UNUM8 bytes[] = {0, 0, 0, 0x80, 0xFF, 0xFF};
    const PDU_FLAG_DATA flags = {.NumFlagBytes = 6, .pFlagData = bytes};
    EXPECT_EQ(
        Flags(&flags),
        "    >>> flags          |00000000 <00 00 00 80 FF FF>                                ......          |\n"
        "\t\t -->  [03] 0x80 = ISO15765_FRAME_PAD\n");
}

TEST_F(EventItem, EachTableNamesItsBits)
{
    UNUM8 bytes[] = {0xFF, 0xFF, 0xFF, 0xFF};
    const PDU_FLAG_DATA flags = {.NumFlagBytes = 4, .pFlagData = bytes};
    const auto named = [&](const BitNames& names) {
        const std::string text = Flags(&flags, "f", ToTarget, names);
        return text.substr(text.find('\n') + 1);
    };
    EXPECT_EQ(named(TxFlagNames), "\t\t -->  [00] 0x20 = ENABLE_EXTRA_INFO\n"
                                  "\t\t -->  [00] 0x40 = SUPPRESS_POS_RESP\n"
                                  "\t\t -->  [02] 0x01 = CAN_29BIT_ID\n"
                                  "\t\t -->  [02] 0x02 = WAIT_P3_MIN_ONLY\n"
                                  "\t\t -->  [03] 0x40 = ISO15765_ADDR_TYPE\n"
                                  "\t\t -->  [03] 0x80 = ISO15765_FRAME_PAD\n");
    EXPECT_EQ(named(CllCreateFlagNames),
              "\t\t -->  [00] 0x40 = ChecksumMode\n\t\t -->  [00] 0x80 = RawMode\n");
    EXPECT_EQ(named(RxFlagNames), "\t\t -->  [00] 0x80 = REMOTE_FRAME\n"
                                  "\t\t -->  [01] 0x01 = SW_CAN_HV_RX\n"
                                  "\t\t -->  [01] 0x02 = ECU_TIMING_CHANGE\n"
                                  "\t\t -->  [01] 0x04 = SPD_CHG_EVENT\n"
                                  "\t\t -->  [02] 0x01 = CAN_29BIT_ID\n"
                                  "\t\t -->  [03] 0x01 = TX_MSG_TYPE\n"
                                  "\t\t -->  [03] 0x02 = START_OF_MESSAGE\n"
                                  "\t\t -->  [03] 0x04 = RX_BREAK\n"
                                  "\t\t -->  [03] 0x08 = TX_INDICATION\n"
                                  "\t\t -->  [03] 0x10 = ISO15765_PADDING_ERROR\n"
                                  "\t\t -->  [03] 0x40 = CAN_SEGMENTATION\n"
                                  "\t\t -->  [03] 0x80 = ISO15765_ADDR_TYPE\n");
    EXPECT_EQ(named(TimestampFlagNames), "\t\t -->  [00] 0x40 = StartMsgTimestampIndicator\n"
                                         "\t\t -->  [00] 0x80 = TxMsgDoneTimestampIndicator\n");
}

TEST_F(EventItem, AWholeResult)
{
    UNUM8 rx[] = {0, 0, 0, 0x40};
    UNUM8 stamps[] = {0x80};
    UNUM8 header[] = {0x07, 0xE8};
    UNUM8 payload[] = {0x62, 0xF1, 0x90};
    PDU_EXTRA_INFO extra = {
        .NumHeaderBytes = 2, .NumFooterBytes = 0, .pHeaderBytes = header, .pFooterBytes = nullptr};
    const PDU_RESULT_DATA result = {.RxFlag = {4, rx},
                                    .UniqueRespIdentifier = 7,
                                    .AcceptanceId = 1,
                                    .TimestampFlags = {1, stamps},
                                    .TxMsgDoneTimestamp = 11,
                                    .StartMsgTimestamp = 22,
                                    .pExtraInfo = &extra,
                                    .NumDataBytes = 3,
                                    .pDataBytes = payload};
    EXPECT_EQ(
        Event(PDU_IT_RESULT, &result),
        "\t\t <--  pResult->RxFla |00000000 <00 00 00 40>                                      ...@            |\n"
        "\t\t  <<< [03] 0x40 = CAN_SEGMENTATION\n"
        "    <<< UniqueRespIdentifier\t= 7\n"
        "    <<< AcceptanceId        \t= 1\n"
        "\t\t <--  pResult->Times |00000000 <80>                                               .               |\n"
        "\t\t  <<< [00] 0x80 = TxMsgDoneTimestampIndicator\n"
        "    <<< TxMsgDoneTimestamp  \t= 11\n"
        "    <<< StartMsgTimestamp   \t= 22\n"
        "    <<< pExtraInfo            \t= " +
            testing::PointerText(&extra) +
            "\n    <<< pHeaderBytes   |00000000 <07 E8>                                            ..              |\n"
            "    <<< Footer bytes    \t= 0\n"
            "    <<< DataSize\t\t= 3\n"
            "    <<< pDataBytes     |00000000 <62 F1 90>                                         b..             |\n");
}

/// The lines of a result after its two times.
std::string Tail(const std::string& text)
{
    const std::string last = "StartMsgTimestamp   \t= 0\n";
    return text.substr(text.find(last) + last.size());
}

TEST_F(EventItem, HeaderAndFooterInTheirNullForms)
{
    PDU_EXTRA_INFO extra = {
        .NumHeaderBytes = 0, .NumFooterBytes = 4, .pHeaderBytes = nullptr, .pFooterBytes = nullptr};
    PDU_RESULT_DATA result = {};
    result.pExtraInfo = &extra;
    const std::string address = "    <<< pExtraInfo            \t= " + testing::PointerText(&extra) + "\n";
    const std::string end = "    <<< DataSize\t\t= 0\n"
                            "    <<<     pDataBytes: Size\t= <ZERO>\n"
                            "    <<<     pDataBytes: Address \t= <NULL>\n";
    EXPECT_EQ(Tail(Event(PDU_IT_RESULT, &result)), address +
                                                       "    <<< Num Header bytes\t= 0\n"
                                                       "    <<<   pFooterBytes: Address \t= <NULL>\n" +
                                                       end);
    UNUM8 footer[] = {0x55};
    extra = {3, 1, nullptr, footer};
    EXPECT_EQ(
        Tail(Event(PDU_IT_RESULT, &result)),
        address +
            "    <<< pResult->pExtraInfo->pHeaderBytes\t= <NULL> (size=3)\n"
            "    <<< pFooterBytes   |00000000 <55>                                               U               |\n" +
            end);
}

TEST_F(EventItem, AResultWithoutDataSaysSo)
{
    UNUM8 byte = 0;
    PDU_RESULT_DATA result = {};
    result.pDataBytes = &byte;
    EXPECT_EQ(Event(PDU_IT_RESULT, &result), "    <<< pResult->RxFlag->NumFlagBytes\t= 0\n"
                                             "    <<< UniqueRespIdentifier\t= 0\n"
                                             "    <<< AcceptanceId        \t= 0\n"
                                             "    <<< pResult->TimestampFlags->NumFlagBytes\t= 0\n"
                                             "    <<< TxMsgDoneTimestamp  \t= 0\n"
                                             "    <<< StartMsgTimestamp   \t= 0\n"
                                             "    <<< DataSize\t\t= 0\n"
                                             "    <<<     pDataBytes: Size\t= <ZERO>\n");
}

TEST_F(EventItem, LogMaxPduBuffLimitsThePayload)
{
    std::vector<UNUM8> payload(40, 0x30);
    PDU_RESULT_DATA result = {};
    result.NumDataBytes = 40;
    result.pDataBytes = payload.data();
    SetSetting(NumericKey::LogMaxPduBuff, 16);
    EXPECT_EQ(
        Tail(Event(PDU_IT_RESULT, &result)),
        "    <<< DataSize\t\t= 40\n"
        "    <<< pDataBytes     |00000000 <30 30 30 30 30 30 30 30 30 30 30 30 30 30 30 30>  0000000000000000|( ...)|\n");
    SetSetting(NumericKey::LogMaxPduBuff, 0);
    EXPECT_EQ(Tail(Event(PDU_IT_RESULT, &result)), "    <<< DataSize\t\t= 40\n");
}

TEST_F(EventItem, TheUndefinedIdentifierIsNamedAndItsNeighbourIsNot)
{
    PDU_RESULT_DATA result = {};
    result.UniqueRespIdentifier = 0xFFFFFFFE;
    EXPECT_NE(Event(PDU_IT_RESULT, &result).find("UniqueRespIdentifier\t= <PDU_ID_UNDEF>\n"),
              std::string::npos);
    result.UniqueRespIdentifier = 0xFFFFFFFD;
    EXPECT_NE(Event(PDU_IT_RESULT, &result).find("UniqueRespIdentifier\t= 4294967293\n"), std::string::npos);
}

TEST_F(EventItem, StatusesKnownAndUnknown)
{
    T_PDU_STATUS status = 0x8012;
    EXPECT_EQ(Event(PDU_IT_STATUS, &status), "    <<< Status        \t= PDU_COPST_FINISHED (0x8012)\n");
    status = 0x12;
    EXPECT_EQ(Event(PDU_IT_STATUS, &status), "    <<< Status        \t= <NULL> (0x0012)\n");
}

TEST_F(EventItem, ErrorsKnownAndUnknown)
{
    PDU_ERROR_DATA error = {.ErrorCodeId = PDU_ERR_EVT_RSC_LOCKED, .ExtraErrorInfoId = 5};
    EXPECT_EQ(Event(PDU_IT_ERROR, &error),
              "    <<< ErrorCode = PDU_ERR_EVT_RSC_LOCKED (0x0109), ExtraErrorData = 5\n");
    error = {0, 0};
    EXPECT_EQ(Event(PDU_IT_ERROR, &error),
              "    <<< ErrorCode = PDU_ERR_EVT_NOERROR (0x0000), ExtraErrorData = 0\n");
    error = {0x10A, 6};
    EXPECT_EQ(Event(PDU_IT_ERROR, &error),
              "    <<< ErrorCode = <UNKNOWN ERROR> (0x010A), ExtraErrorData = 6\n");
}

TEST_F(EventItem, InformationKnownAndUnknown)
{
    PDU_INFO_DATA info = {.InfoCode = PDU_INFO_RSC_LOCK_CHG, .ExtraInfoData = 1};
    EXPECT_EQ(Event(PDU_IT_INFO, &info), "    <<< Code = PDU_INFO_RSC_LOCK_CHG (32881), ExtraInfoData = 1\n");
    info = {1, 2};
    EXPECT_EQ(Event(PDU_IT_INFO, &info), "    <<< Code = <UNKNOWN CODE> (1), ExtraInfoData = 2\n");
}

TEST_F(EventItem, AnotherTypeIsNamedByItsNumberAndNullDataIsReported)
{
    UNUM32 data = 0;
    EXPECT_EQ(Event(4660, &data), "    <<< Unknown ItemType = 4660\n");
    for (const T_PDU_IT type : {PDU_IT_RESULT, PDU_IT_STATUS, PDU_IT_ERROR, PDU_IT_INFO})
        EXPECT_EQ(Event(type, nullptr), "    <<< Data = <NULL>\n");
}

TEST_F(EventItem, APayloadLargerThanTheBufferEndsWithTheMarker)
{
    std::vector<UNUM8> payload(30000);
    PDU_RESULT_DATA result = {};
    result.NumDataBytes = 30000;
    result.pDataBytes = payload.data();
    SetSetting(NumericKey::LogMaxPduBuff, 0xFFFFFFFF);
    ExpectCutOff(Event(PDU_IT_RESULT, &result));
}

TEST_F(EventItem, BothDecodersHaveTheirGates)
{
    ExpectThreeGates([](const DecoderContext& context) { DecodeEventItem(context, PDU_IT_RESULT, nullptr); });
    ExpectThreeGates([](const DecoderContext& context) {
        DecodeFlagData(context, ToTarget, "label", nullptr, TxFlagNames);
    });
}

} // namespace
} // namespace marvane
