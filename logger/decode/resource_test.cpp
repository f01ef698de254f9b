#include <vector>

#include "logger/decode/object_names.h"
#include "tests/support/decoded_text.h"

namespace marvane {
namespace {

class Resource : public testing::Decoding
{
protected:
    static std::string Data(const PDU_RSC_DATA* data, const char* label = "pRscData")
    {
        return Decoded([&](const DecoderContext& context) { DecodeRscData(context, label, data); });
    }
    static std::string Ids(const PDU_RSC_ID_ITEM_DATA* entry, const char* label = "RsrcItem",
                           Arrow arrow = FromTarget.Deeper(2))
    {
        return Decoded([&](const DecoderContext& context) { DecodeRscIdList(context, arrow, label, entry); });
    }
    static std::string Module(const PDU_MODULE_DATA* entry, Arrow arrow = FromTarget.Deeper())
    {
        return Decoded([&](const DecoderContext& context) { DecodeModuleData(context, arrow, entry); });
    }
    static std::string Modules(const PDU_MODULE_ITEM* item)
    {
        return Decoded([&](const DecoderContext& context) { DecodeModuleIdList(context, item); });
    }
};

TEST_F(Resource, NullDataIsReportedUnderItsLabel)
{
    EXPECT_EQ(Data(nullptr), "   -->  pRscData\t= <NULL>\n");
    EXPECT_EQ(Data(nullptr, nullptr), "   -->  <NULL STRING>\t= <NULL>\n");
}

TEST_F(Resource, NamesAreUnknownUntilTheApplicationAsked)
{
    PDU_PIN_DATA pins[] = {{.DLCPinNumber = 6, .DLCPinTypeId = 300},
                           {.DLCPinNumber = 14, .DLCPinTypeId = 301},
                           {.DLCPinNumber = 1, .DLCPinTypeId = 302}};
    const PDU_RSC_DATA data = {.BusTypeId = 200, .ProtocolId = 100, .NumPinData = 3, .pDLCPinData = pins};
    EXPECT_EQ(Data(&data),
              "   -->  pRscData       : BusTypeId = <UNKNOWN> (200), ProtocolId = <UNKNOWN> (100), "
              "NumPinData = 3\n"
              "    >>> pDLCPinData[0]:\tNum =  6, Type = <UNKNOWN> (300)\n"
              "    >>> pDLCPinData[1]:\tNum = 14, Type = <UNKNOWN> (301)\n"
              "    >>> pDLCPinData[2]:\tNum =  1, Type = <UNKNOWN> (302)\n");
    RecordObjectName(PDU_OBJT_BUSTYPE, 200, "CAN");
    RecordObjectName(PDU_OBJT_PROTOCOL, 100, "UDS");
    RecordObjectName(PDU_OBJT_PINTYPE, 300, "HI");
    EXPECT_EQ(Data(&data, "pResourceIdData"),
              "   -->  pResourceIdData: BusTypeId = CAN (200), ProtocolId = UDS (100), NumPinData = 3\n"
              "    >>> pDLCPinData[0]:\tNum =  6, Type = HI (300)\n"
              "    >>> pDLCPinData[1]:\tNum = 14, Type = <UNKNOWN> (301)\n"
              "    >>> pDLCPinData[2]:\tNum =  1, Type = <UNKNOWN> (302)\n");
}

TEST_F(Resource, MissingPinsAreReportedAndWarnedOfIfCounted)
{
    const std::string head =
        "   -->  pRscData       : BusTypeId = <UNKNOWN> (1), ProtocolId = <UNKNOWN> (2), NumPinData = ";
    const PDU_RSC_DATA none = {.BusTypeId = 1, .ProtocolId = 2, .NumPinData = 0, .pDLCPinData = nullptr};
    EXPECT_EQ(Data(&none), head + "0\n    >>> RsrcName: pRscData\t= <NULL>\n");
    const PDU_RSC_DATA counted = {.BusTypeId = 1, .ProtocolId = 2, .NumPinData = 4, .pDLCPinData = nullptr};
    EXPECT_EQ(Data(&counted),
              head + "4\n"
                     "    >>> RsrcName: pRscData\t= <NULL>\n"
                     "    >>> *** WARNING - pRscData: NumPinData = 4 BUT pDLCPinData: <NULL> ***\n");
}

TEST_F(Resource, PinsWithoutACountAreNotListed)
{
    PDU_PIN_DATA pin = {.DLCPinNumber = 6, .DLCPinTypeId = 300};
    const PDU_RSC_DATA data = {.BusTypeId = 1, .ProtocolId = 2, .NumPinData = 0, .pDLCPinData = &pin};
    EXPECT_EQ(
        Data(&data),
        "   -->  pRscData       : BusTypeId = <UNKNOWN> (1), ProtocolId = <UNKNOWN> (2), NumPinData = 0\n");
}

TEST_F(Resource, IdsStandTwoLevelsDeep)
{
    UNUM32 ids[] = {400, 7};
    RecordObjectName(PDU_OBJT_RESOURCE, 400, "CAN_6_14");
    const PDU_RSC_ID_ITEM_DATA entry = {.hMod = 1, .NumIds = 2, .pResourceIdArray = ids};
    EXPECT_EQ(Ids(&entry), "\t\t <--  RsrcItem:\thMod = 0x00000001, NumIds = 2, pResourceIdArray = " +
                               testing::PointerText(ids) +
                               "\n\t\t  <<< pResourceId[ 0]\t= 400 (CAN_6_14)\n"
                               "\t\t  <<< pResourceId[ 1]\t= 7 (<UNKNOWN>)\n");
    EXPECT_EQ(Ids(nullptr), "\t\t <--  RsrcItem\t= <NULL>\n");
    EXPECT_EQ(Ids(nullptr, nullptr, ToTarget.Deeper(2)), "\t\t -->  <NULL STRING>\t= <NULL>\n");
}

TEST_F(Resource, MissingIdsAreWarnedOfInTheWordsOfPins)
{
    const PDU_RSC_ID_ITEM_DATA none = {.hMod = PDU_HANDLE_UNDEF, .NumIds = 0, .pResourceIdArray = nullptr};
    const std::string null = testing::PointerText(nullptr);
    EXPECT_EQ(Ids(&none), "\t\t <--  RsrcItem:\thMod = <PDU_HANDLE_UNDEF>, NumIds = 0, pResourceIdArray = " +
                              null + "\n\t\t  <<< pResourceId[RsrcItem]\t= <NULL>\n");
    const PDU_RSC_ID_ITEM_DATA counted = {.hMod = 2, .NumIds = 5, .pResourceIdArray = nullptr};
    EXPECT_EQ(Ids(&counted),
              "\t\t <--  RsrcItem:\thMod = 0x00000002, NumIds = 5, pResourceIdArray = " + null +
                  "\n\t\t  <<< pResourceId[RsrcItem]\t= <NULL>\n"
                  "\t\t  <<< *** WARNING - RsrcItem: NumIds = 5 BUT pDLCPinData= <NULL> ***\n");
}

TEST_F(Resource, AConflictHasTheDeepestArrowToTheTarget)
{
    const PDU_RSC_CONFLICT_DATA entry = {.hMod = 1, .ResourceId = 400};
    const auto conflict = [](const PDU_RSC_CONFLICT_DATA* data) {
        return Decoded([&](const DecoderContext& context) { DecodeRscConflictList(context, data); });
    };
    EXPECT_EQ(conflict(&entry), "\t\t  >>> pConflictData:\t\thMod=0x00000001, ResourceId=<UNKNOWN>(400)\n");
    EXPECT_EQ(conflict(nullptr), "\t\t  >>> pConflictData\t= <NULL>\n");
}

TEST_F(Resource, AModulesTextsMayBeNull)
{
    CHAR8 name[] = "VCI";
    const PDU_MODULE_DATA entry = {.ModuleTypeId = 3,
                                   .hMod = PDU_HANDLE_UNDEF,
                                   .pVendorModuleName = name,
                                   .pVendorAdditionalInfo = nullptr,
                                   .ModuleStatus = PDU_MODST_READY};
    EXPECT_EQ(Module(&entry), "    <<< ModuleTypeId         \t= 3\n"
                              "    <<< hMod                 \t= <PDU_HANDLE_UNDEF>\n"
                              "    <<< pVendorModuleName    \t= \"VCI\"\n"
                              "    <<< pVendorAdditionalInfo\t= \"<NULL STRING>\"\n"
                              "    <<< ModuleStatus         \t= PDU_MODST_READY (0x8060)\n");
    const PDU_MODULE_DATA other = {.ModuleTypeId = 3,
                                   .hMod = 1,
                                   .pVendorModuleName = nullptr,
                                   .pVendorAdditionalInfo = name,
                                   .ModuleStatus = 0x9999};
    EXPECT_EQ(Module(&other, ToTarget.Deeper()), "    >>> ModuleTypeId         \t= 3\n"
                                                 "    >>> hMod                 \t= 0x00000001\n"
                                                 "    >>> pVendorModuleName    \t= \"<NULL STRING>\"\n"
                                                 "    >>> pVendorAdditionalInfo\t= \"VCI\"\n"
                                                 "    >>> ModuleStatus         \t= <NULL> (0x9999)\n");
    EXPECT_EQ(Module(nullptr), "    <<< pModuleData\t= <NULL>\n");
}

TEST_F(Resource, AListOfModulesWithAWrongTypePrintsWarningAndBoth)
{
    PDU_MODULE_DATA modules[] = {{.ModuleTypeId = 1,
                                  .hMod = 1,
                                  .pVendorModuleName = nullptr,
                                  .pVendorAdditionalInfo = nullptr,
                                  .ModuleStatus = PDU_MODST_AVAIL},
                                 {.ModuleTypeId = 2,
                                  .hMod = 2,
                                  .pVendorModuleName = nullptr,
                                  .pVendorAdditionalInfo = nullptr,
                                  .ModuleStatus = PDU_MODST_AVAIL}};
    const PDU_MODULE_ITEM item = {.ItemType = 9, .NumEntries = 2, .pModuleData = modules};
    const std::string texts = "    <<< pVendorModuleName    \t= \"<NULL STRING>\"\n"
                              "    <<< pVendorAdditionalInfo\t= \"<NULL STRING>\"\n"
                              "    <<< ModuleStatus         \t= PDU_MODST_AVAIL (0x8063)\n";
    EXPECT_EQ(Modules(&item), "   <--  WARNING: Wrong item type 9, should be 5632!\n"
                              "   <--  Module entry\t= 1 of 2\n"
                              "    <<< ModuleTypeId         \t= 1\n"
                              "    <<< hMod                 \t= 0x00000001\n" +
                                  texts +
                                  "   <--  Module entry\t= 2 of 2\n"
                                  "    <<< ModuleTypeId         \t= 2\n"
                                  "    <<< hMod                 \t= 0x00000002\n" +
                                  texts);
}

TEST_F(Resource, AListWithoutModulesSaysWhy)
{
    PDU_MODULE_DATA module = {};
    const PDU_MODULE_ITEM null = {.ItemType = PDU_IT_MODULE_ID, .NumEntries = 5, .pModuleData = nullptr};
    EXPECT_EQ(Modules(&null), "   <--  pItem->pModuleData\t= <NULL>\n");
    const PDU_MODULE_ITEM none = {.ItemType = PDU_IT_MODULE_ID, .NumEntries = 0, .pModuleData = &module};
    EXPECT_EQ(Modules(&none), "   <--  Num Modules \t= 0\n");
}

TEST_F(Resource, ListsLargerThanTheBufferEndWithTheMarker)
{
    std::vector<PDU_PIN_DATA> pins(10000);
    const PDU_RSC_DATA data = {
        .BusTypeId = 1, .ProtocolId = 2, .NumPinData = 10000, .pDLCPinData = pins.data()};
    ExpectCutOff(Data(&data));
    std::vector<UNUM32> ids(10000);
    const PDU_RSC_ID_ITEM_DATA entry = {.hMod = 1, .NumIds = 10000, .pResourceIdArray = ids.data()};
    ExpectCutOff(Ids(&entry));
    std::vector<PDU_MODULE_DATA> modules(10000);
    const PDU_MODULE_ITEM item = {
        .ItemType = PDU_IT_MODULE_ID, .NumEntries = 10000, .pModuleData = modules.data()};
    ExpectCutOff(Modules(&item));
}

TEST_F(Resource, AWildCountIsReadNoFurtherThanTheBufferReaches)
{
    // As many as fill the buffer are there; the count promises four billion.
    std::vector<UNUM32> ids(1000);
    const PDU_RSC_ID_ITEM_DATA entry = {.hMod = 1, .NumIds = 0xFFFFFFFF, .pResourceIdArray = ids.data()};
    ExpectCutOff(Ids(&entry));
}

TEST_F(Resource, EachDecoderHasItsGates)
{
    const PDU_MODULE_ITEM item = {.ItemType = PDU_IT_MODULE_ID, .NumEntries = 0, .pModuleData = nullptr};
    ExpectThreeGates([](const DecoderContext& context) { DecodeRscData(context, "label", nullptr); });
    ExpectThreeGates([](const DecoderContext& context) {
        DecodeRscIdList(context, ToTarget.Deeper(2), "label", nullptr);
    });
    ExpectThreeGates([](const DecoderContext& context) { DecodeRscConflictList(context, nullptr); });
    ExpectThreeGates(
        [](const DecoderContext& context) { DecodeModuleData(context, ToTarget.Deeper(), nullptr); });
    ExpectThreeGates([&](const DecoderContext& context) { DecodeModuleIdList(context, &item); });
}

} // namespace
} // namespace marvane
