#include <vector>

#include "logger/decode/object_names.h"
#include "tests/support/decoded_text.h"

namespace marvane {
namespace {

class ComParamTest : public testing::Decoding
{
protected:
    static std::string Value(T_PDU_PT type, const void* data, Arrow arrow = ToTarget.Deeper(), UNUM32 id = 7)
    {
        return Decoded(
            [&](const DecoderContext& context) { DecodeParamValue(context, arrow, id, type, data); });
    }
};

TEST_F(ComParamTest, ANullItemIsReportedAtItsLevel)
{
    EXPECT_EQ(Decoded([](const DecoderContext& context) { DecodeComParam(context, ToTarget, nullptr); }),
              "   -->  ComParam pointer\t= <NULL>\n");
    EXPECT_EQ(
        Decoded([](const DecoderContext& context) { DecodeComParam(context, FromTarget.Deeper(), nullptr); }),
        "    <<< ComParam pointer\t= <NULL>\n");
}

TEST_F(ComParamTest, AnItemIsALineAndItsValueOneLevelDeeper)
{
    UNUM32 value = 500000;
    PDU_PARAM_ITEM item = {.ItemType = 0xDEAD,
                           .ComParamId = 7,
                           .ComParamDataType = PDU_PT_UNUM32,
                           .ComParamClass = PDU_PC_BUSTYPE,
                           .pComParamData = &value};
    RecordObjectName(PDU_OBJT_COMPARAM, 7, "CP_Baudrate");
    EXPECT_EQ(
        Decoded([&](const DecoderContext& context) { DecodeComParam(context, FromTarget, &item); }),
        "   <--  ComParam (" + testing::PointerText(&item) +
            ") Id = CP_Baudrate (id=7), DataType = PDU_PT_UNUM32 (0x0105), Class = PDU_PC_BUSTYPE (0x0005)\n"
            "    <<< CP_Baudrate                    (id=  7): =\t(u32)    500000\t(0x0007A120)\n");
}

TEST_F(ComParamTest, UnknownTypesAndClassesAreNamedSo)
{
    UNUM32 value = 1;
    PDU_PARAM_ITEM item = {.ItemType = PDU_IT_PARAM,
                           .ComParamId = 12345,
                           .ComParamDataType = 0x10A,
                           .ComParamClass = 8,
                           .pComParamData = &value};
    EXPECT_EQ(
        Decoded([&](const DecoderContext& context) { DecodeComParam(context, ToTarget, &item); }),
        "   -->  ComParam (" + testing::PointerText(&item) +
            ") Id = [NOT YET READ] (id=12345), DataType = <UNKNOWN> (0x010A), Class = <UNKNOWN> (0x0008)\n"
            "    >>> [NOT YET READ] (id=12345): \tunknown type= <UNKNOWN> (266)\n");
}

TEST_F(ComParamTest, ANullValueIsReportedOneLevelDeeper)
{
    PDU_PARAM_ITEM item = {.ItemType = PDU_IT_PARAM,
                           .ComParamId = 7,
                           .ComParamDataType = PDU_PT_UNUM8,
                           .ComParamClass = PDU_PC_TIMING,
                           .pComParamData = nullptr};
    EXPECT_EQ(
        Decoded([&](const DecoderContext& context) { DecodeComParam(context, ToTarget, &item); }),
        "   -->  ComParam (" + testing::PointerText(&item) +
            ") Id = [NOT YET READ] (id=7), DataType = PDU_PT_UNUM8 (0x0101), Class = PDU_PC_TIMING (0x0001)\n"
            "    >>> pDataVal\t= <NULL>\n");
}

TEST_F(ComParamTest, NumbersOfAllTypes)
{
    const UNUM8 u8 = 0xFE;
    const SNUM8 s8 = -128;
    const UNUM16 u16 = 0xFFFE;
    const SNUM16 s16 = -1;
    const UNUM32 u32 = 0xFFFFFFFF;
    const SNUM32 s32 = INT32_MIN;
    const SNUM8 positive = 5;
    const std::string name = "    >>> [NOT YET READ]                 (id=  7): =\t";
    EXPECT_EQ(Value(PDU_PT_UNUM8, &u8), name + "(u 8)       254\t(0xFE)\n");
    EXPECT_EQ(Value(PDU_PT_SNUM8, &s8), name + "(s 8)      -128\t(0xFFFFFF80)\n");
    EXPECT_EQ(Value(PDU_PT_SNUM8, &positive), name + "(s 8)         5\t(0x05)\n");
    EXPECT_EQ(Value(PDU_PT_UNUM16, &u16), name + "(u16)     65534\t(0xFFFE)\n");
    EXPECT_EQ(Value(PDU_PT_SNUM16, &s16), name + "(s16)        -1\t(0xFFFFFFFF)\n");
    EXPECT_EQ(Value(PDU_PT_UNUM32, &u32), name + "(u32)4294967295\t(0xFFFFFFFF)\n");
    EXPECT_EQ(Value(PDU_PT_SNUM32, &s32), name + "(s32)-2147483648\t(0x80000000)\n");
}

TEST_F(ComParamTest, ANumberAtAnOddAddressIsRead)
{
    alignas(4) const UNUM8 bytes[5] = {0, 0x78, 0x56, 0x34, 0x12};
    EXPECT_EQ(Value(PDU_PT_UNUM32, bytes + 1),
              "    >>> [NOT YET READ]                 (id=  7): =\t(u32) 305419896\t(0x12345678)\n");
}

TEST_F(ComParamTest, AByteFieldHasTheLevelOfItsValue)
{
    UNUM8 bytes[] = {0x3E, 0x80};
    const PDU_PARAM_BYTEFIELD_DATA field = {.ParamMaxLen = 10, .ParamActLen = 2, .pDataArray = bytes};
    EXPECT_EQ(
        Value(PDU_PT_BYTEFIELD, &field),
        "    >>> [NOT YET READ] (id=7): MaxLen\t= 10, ActLen\t= 2\n"
        "    >>> pDataArray     |00000000 <3E 80>                                            >.              |\n");
}

TEST_F(ComParamTest, AnEmptyByteFieldHasNoListing)
{
    UNUM8 byte = 0;
    const PDU_PARAM_BYTEFIELD_DATA field = {.ParamMaxLen = 10, .ParamActLen = 0, .pDataArray = &byte};
    EXPECT_EQ(Value(PDU_PT_BYTEFIELD, &field), "    >>> [NOT YET READ] (id=7): MaxLen\t= 10, ActLen\t= 0\n"
                                               "    >>>     pDataArray: Size\t= <ZERO>\n");
}

TEST_F(ComParamTest, AByteFieldWithoutItsArrayIsReported)
{
    const PDU_PARAM_BYTEFIELD_DATA field = {.ParamMaxLen = 1, .ParamActLen = 3, .pDataArray = nullptr};
    EXPECT_EQ(Value(PDU_PT_BYTEFIELD, &field, FromTarget.Deeper(2)),
              "\t\t <--  [NOT YET READ] (id=7): MaxLen\t= 1, ActLen\t= 3\n"
              "\t\t <--      pDataArray: Address \t= <NULL>\n");
}

TEST_F(ComParamTest, ALongFieldIsOneLevelDeeperAndCountsFourBytesEach)
{
    UNUM32 longs[] = {0x7E0, 0x7E8};
    const PDU_PARAM_LONGFIELD_DATA field = {.ParamMaxLen = 4, .ParamActLen = 2, .pDataArray = longs};
    EXPECT_EQ(
        Value(PDU_PT_LONGFIELD, &field, FromTarget.Deeper()),
        "\t\t <--  Id = [NOT YET READ] (id=7): MaxLen\t= 4, ActLen\t= 2\n"
        "\t\t <--  pDataArray     |00000000 <E0 07 00 00 E8 07 00 00>                          ........        |\n");
}

TEST_F(ComParamTest, NullFieldsHaveTheirOwnWords)
{
    EXPECT_EQ(Decoded([](const DecoderContext& context) {
                  DecodeByteField(context, ToTarget.Deeper(), 7, nullptr);
              }),
              "    >>> pByteField\t= <NULL>\n");
    EXPECT_EQ(Decoded([](const DecoderContext& context) {
                  DecodeLongField(context, ToTarget.Deeper(), 7, nullptr);
              }),
              "\t\t -->  pLongField\t= <NULL>\n");
    EXPECT_EQ(Decoded([](const DecoderContext& context) {
                  DecodeStructField(context, ToTarget.Deeper(), 7, nullptr);
              }),
              "\t\t -->  pStructField\t= <NULL>\n");
    EXPECT_EQ(Decoded([](const DecoderContext& context) {
                  DecodeSessionTiming(context, FromTarget.Deeper(2), nullptr);
              }),
              "\t\t  <<< pSessionTiming\t= <NULL>\n");
    EXPECT_EQ(Decoded([](const DecoderContext& context) {
                  DecodeAccessTiming(context, FromTarget.Deeper(2), nullptr);
              }),
              "\t\t  <<< pAccessTiming\t= <NULL>\n");
}

TEST_F(ComParamTest, SessionTimingsShowTheFirstElementAlone)
{
    PDU_PARAM_STRUCT_SESSION_TIMING timings[] = {
        {.session = 1, .P2Max_high = 0, .P2Max_low = 50, .P2Star_high = 1, .P2Star_low = 244},
        {.session = 2, .P2Max_high = 9, .P2Max_low = 9, .P2Star_high = 9, .P2Star_low = 9}};
    const PDU_PARAM_STRUCTFIELD_DATA field = {.ComParamStructType = PDU_CPST_SESSION_TIMING,
                                              .ParamMaxEntries = 8,
                                              .ParamActEntries = 2,
                                              .pStructArray = timings};
    EXPECT_EQ(Value(PDU_PT_STRUCTFIELD, &field, FromTarget.Deeper()),
              "\t\t <--  Id = [NOT YET READ] (id=7): ComParamStructType\t= 1\n"
              "\t\t <--  MaxEntries\t= 8\n"
              "\t\t <--  ActEntries\t= 2\n"
              "\t\t  <<< session\t= 1\n"
              "\t\t  <<< P2Max_high\t= 0\n"
              "\t\t  <<< P2Max_low\t= 50\n"
              "\t\t  <<< P2Star_high\t= 1\n"
              "\t\t  <<< P2Star_low\t= 244\n");
}

TEST_F(ComParamTest, TheTextOfATimingSetRunsIntoTheIndentsOfTheOtherDirection)
{
    PDU_PARAM_STRUCT_ACCESS_TIMING timing = {
        .P2Min = 1, .P2Max = 2, .P3Min = 3, .P3Max = 4, .P4Min = 5, .TimingSet = 255};
    const PDU_PARAM_STRUCTFIELD_DATA field = {.ComParamStructType = PDU_CPST_ACCESS_TIMING,
                                              .ParamMaxEntries = 1,
                                              .ParamActEntries = 1,
                                              .pStructArray = &timing};
    EXPECT_EQ(Value(PDU_PT_STRUCTFIELD, &field),
              "\t\t -->  Id = [NOT YET READ] (id=7): ComParamStructType\t= 2\n"
              "\t\t -->  MaxEntries\t= 1\n"
              "\t\t -->  ActEntries\t= 1\n"
              "\t\t  >>> P2Min\t= 1\n"
              "\t\t  >>> P2Max\t= 2\n"
              "\t\t  >>> P3Min\t= 3\n"
              "\t\t  >>> P3Max\t= 4\n"
              "\t\t  >>> P4Min\t= 5\n"
              "\t\t  >>> TimingSet\t= 255\n"
              "   <--  EXTENDED TIMING VALUES - USED AFTER INIT IF SET IN KEY BYTES\n");
}

TEST_F(ComParamTest, OnTheWayBackTheTextOfATimingSetFollowsTheMarkersText)
{
    const auto setText = [](UNUM8 set, unsigned depth) {
        PDU_PARAM_STRUCT_ACCESS_TIMING timing = {
            .P2Min = 0, .P2Max = 0, .P3Min = 0, .P3Max = 0, .P4Min = 0, .TimingSet = set};
        const std::string text = Decoded([&](const DecoderContext& context) {
            DecodeAccessTiming(context, FromTarget.Deeper(depth), &timing);
        });
        return text.substr(text.find("TimingSet\t= ") + 12);
    };
    EXPECT_EQ(setText(1, 2), "1\n\t\t\t\t...\nDEFAULT ECU TIMING SET ON TPI 1 FROM TESTER\n");
    EXPECT_EQ(setText(2, 2), "2\n\t\t\t\t...\nOVERRIDE TIMING VALUES FOR ECU (FOR TPI 2 RESPONSE)\n");
    EXPECT_EQ(setText(3, 3), "3\nOVERRIDE TIMING VALUES SET BY TESTER (FOR TPI 3)\n");
    EXPECT_EQ(setText(4, 4), "4\nNORMAL TIMING VALUES FOR ECU AFTER INIT\n");
    EXPECT_EQ(setText(0, 2), "0\n\t\t\t\t...\nUNKNOWN \"TimingSet\" SPECIFIED\n");
}

TEST_F(ComParamTest, AnUnknownStructTypeHasThreeLines)
{
    UNUM32 nothing = 0;
    const PDU_PARAM_STRUCTFIELD_DATA field = {
        .ComParamStructType = 3, .ParamMaxEntries = 4, .ParamActEntries = 5, .pStructArray = &nothing};
    EXPECT_EQ(Value(PDU_PT_STRUCTFIELD, &field),
              "\t\t -->  Id = [NOT YET READ] (id=7): ComParamStructType\t= 3\n"
              "\t\t -->  MaxEntries\t= 4\n"
              "\t\t -->  ActEntries\t= 5\n");
}

TEST_F(ComParamTest, AFieldLargerThanTheBufferEndsWithTheMarker)
{
    std::vector<UNUM8> bytes(50000);
    const PDU_PARAM_BYTEFIELD_DATA field = {
        .ParamMaxLen = 1, .ParamActLen = 50000, .pDataArray = bytes.data()};
    ExpectCutOff(Value(PDU_PT_BYTEFIELD, &field));
}

TEST_F(ComParamTest, EachDecoderHasItsGates)
{
    ExpectThreeGates([](const DecoderContext& context) { DecodeComParam(context, ToTarget, nullptr); });
    ExpectThreeGates([](const DecoderContext& context) { DecodeByteField(context, ToTarget, 1, nullptr); });
    ExpectThreeGates([](const DecoderContext& context) { DecodeLongField(context, ToTarget, 1, nullptr); });
    ExpectThreeGates([](const DecoderContext& context) { DecodeStructField(context, ToTarget, 1, nullptr); });
    ExpectThreeGates([](const DecoderContext& context) { DecodeSessionTiming(context, ToTarget, nullptr); });
    ExpectThreeGates([](const DecoderContext& context) { DecodeAccessTiming(context, ToTarget, nullptr); });
    const auto value = [](const DecoderContext& context) {
        DecodeParamValue(context, ToTarget, 1, PDU_PT_UNUM8, nullptr);
    };
    EXPECT_EQ(Decoded(value, 0, 0), "   -->  pDataVal\t= <NULL>\n");
    SetSetting(NumericKey::LogEnabled, 0);
    EXPECT_EQ(Decoded(value), "");
}

} // namespace
} // namespace marvane
