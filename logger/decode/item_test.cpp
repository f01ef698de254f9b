#include <vector>

#include "logger/decode/object_names.h"
#include "tests/support/decoded_text.h"

namespace marvane {
namespace {

class Item : public testing::Decoding
{
protected:
    static std::string Decode(T_PDU_IT type, const void* data, Arrow arrow, UNUM32 level = 2)
    {
        const PDU_DATA_ITEM item = {.ItemType = type, .pData = const_cast<void*>(data)};
        return Decoded([&](const DecoderContext& context) { DecodeItem(context, arrow, "item", &item); }, 2,
                       level);
    }

    /// The two lines with which an item of a type begins.
    static std::string Head(const std::string& type, const void* data, Arrow arrow)
    {
        const std::string shown = arrow == ToTarget ? "   -->  " : "   <--  ";
        return shown + "item->ItemType\t= " + type + "\n" + shown +
               "item->pData   \t= " + testing::PointerText(data) + "\n";
    }

    /// Expects the lines after the two of the head, for an item that goes in and one that comes back.
    static void ExpectLines(T_PDU_IT type, const std::string& name, const void* data, const std::string& in,
                            const std::string& back)
    {
        EXPECT_EQ(Decode(type, data, ToTarget), Head(name, data, ToTarget) + in);
        EXPECT_EQ(Decode(type, data, FromTarget), Head(name, data, FromTarget) + back);
    }

    /// What "%p" has to give: no more than eight columns need no padding.
    static std::string NarrowPointerText(const void* pointer)
    {
        const std::string text = testing::PointerText(pointer);
        return text.substr(text.find_first_not_of(' '));
    }
};

TEST_F(Item, ANullItemIsReportedUnderItsLabel)
{
    const auto null = [](Arrow arrow) {
        return Decoded(
            [&](const DecoderContext& context) { DecodeItem(context, arrow, "pInputData", nullptr); });
    };
    EXPECT_EQ(null(ToTarget), "   -->  pInputData\t= <NULL>\n");
    EXPECT_EQ(null(FromTarget), "   <--  pInputData\t= <NULL>\n");
}

TEST_F(Item, ANullLabelIsNamedInBothLinesOfTheHead)
{
    const PDU_DATA_ITEM item = {.ItemType = PDU_IT_IO_UNUM32, .pData = nullptr};
    EXPECT_EQ(
        Decoded([&](const DecoderContext& context) { DecodeItem(context, FromTarget, nullptr, &item); }),
        "   <--  <NULL STRING>->ItemType\t= PDU_IT_IO_UNUM32 (4096)\n"
        "   <--  <NULL STRING>->pData   \t= " +
            testing::PointerText(nullptr) + "\n");
}

TEST_F(Item, AnItemOfAnyTypeWithoutDataIsItsHead)
{
    const std::pair<T_PDU_IT, const char*> types[] = {
        {0x1000, "PDU_IT_IO_UNUM32 (4096)"},
        {0x1001, "PDU_IT_IO_PROG_VOLTAGE (4097)"},
        {0x1002, "PDU_IT_IO_BYTEARRAY (4098)"},
        {0x1003, "PDU_IT_IO_FILTER (4099)"},
        {0x1004, "PDU_IT_IO_EVENT_QUEUE_PROPERTY (4100)"},
        {0x1100, "PDU_IT_RSC_STATUS (4352)"},
        {0x1200, "PDU_IT_PARAM (4608)"},
        {0x1300, "PDU_IT_RESULT (4864)"},
        {0x1301, "PDU_IT_STATUS (4865)"},
        {0x1302, "PDU_IT_ERROR (4866)"},
        {0x1303, "PDU_IT_INFO (4867)"},
        {0x1400, "PDU_IT_RSC_ID (5120)"},
        {0x1500, "PDU_IT_RSC_CONFLICT (5376)"},
        {0x1600, "PDU_IT_MODULE_ID (5632)"},
        {0x1700, "PDU_IT_UNIQUE_RESP_ID_TABLE (5888)"},
        {0x1800, "PDU_IT_IO_VEHICLE_ID_REQUEST (6144)"},
        {0x1801, "PDU_IT_IO_ETH_SWITCH_STATE (6145)"},
        {0x1802, "PDU_IT_IO_ENTITY_ADDRESS (6146)"},
        {0x1803, "PDU_IT_IO_ENTITY_STATUS (6147)"},
        {0x10000, "<UNKNOWN> (65536)"},
        {0x1234, "<UNKNOWN> (4660)"},
    };
    for (const auto& [type, name] : types)
        ExpectLines(type, name, nullptr, "", "");
}

TEST_F(Item, AnUnknownTypeIsMisspelledAndItsDataNotRead)
{
    const void* const wild = reinterpret_cast<const void*>(std::uintptr_t{8});
    ExpectLines(0x1234, "<UNKNOWN> (4660)", wild, "    >>> UNKOWN\n", "    <<< UNKOWN\n");
    ExpectLines(0, "<UNKNOWN> (0)", wild, "    >>> UNKOWN\n", "    <<< UNKOWN\n");
    ExpectLines(0x1005, "<UNKNOWN> (4101)", wild, "    >>> UNKOWN\n", "    <<< UNKOWN\n");
    ExpectLines(0x1304, "<UNKNOWN> (4868)", wild, "    >>> UNKOWN\n", "    <<< UNKOWN\n");
    ExpectLines(0x1804, "<UNKNOWN> (6148)", wild, "    >>> UNKOWN\n", "    <<< UNKOWN\n");
    ExpectLines(0x10001, "<UNKNOWN> (65537)", wild, "    >>> UNKOWN\n", "    <<< UNKOWN\n");
    ExpectLines(0xFFFFFFFF, "<UNKNOWN> (-1)", wild, "    >>> UNKOWN\n", "    <<< UNKOWN\n");
}

TEST_F(Item, ANumberIsShownTwice)
{
    UNUM32 value = 0x10;
    ExpectLines(PDU_IT_IO_UNUM32, "PDU_IT_IO_UNUM32 (4096)", &value, "    >>> *pData   \t= 0x10 (16)\n",
                "    <<< *pData   \t= 0x10 (16)\n");
    value = 0xFFFFFFFF;
    ExpectLines(PDU_IT_IO_UNUM32, "PDU_IT_IO_UNUM32 (4096)", &value,
                "    >>> *pData   \t= 0xFFFFFFFF (4294967295)\n",
                "    <<< *pData   \t= 0xFFFFFFFF (4294967295)\n");
}

TEST_F(Item, AProgrammingVoltageShowsItsPinFirst)
{
    const PDU_IO_PROG_VOLTAGE_DATA data = {.ProgVoltage_mv = 18000, .PinOnDLC = 15};
    ExpectLines(PDU_IT_IO_PROG_VOLTAGE, "PDU_IT_IO_PROG_VOLTAGE (4097)", &data,
                "    >>> Pin = 15, Volts = 18000mV\n", "    <<< Pin = 15, Volts = 18000mV\n");
    const PDU_IO_PROG_VOLTAGE_DATA highest = {.ProgVoltage_mv = 0xFFFFFFFF, .PinOnDLC = 0xFFFFFFFE};
    ExpectLines(PDU_IT_IO_PROG_VOLTAGE, "PDU_IT_IO_PROG_VOLTAGE (4097)", &highest,
                "    >>> Pin = 4294967294, Volts = 4294967295mV\n",
                "    <<< Pin = 4294967294, Volts = 4294967295mV\n");
}

TEST_F(Item, AllBytesOfAnArrayAreListedWhateverThePayloadLimit)
{
    SetSetting(NumericKey::LogMaxPduBuff, 1);
    UNUM8 bytes[17] = {0x30, 0x31, 0x32, 0x33, 0x34, 0x35, 0x36, 0x37, 0x38,
                       0x39, 0x3A, 0x3B, 0x3C, 0x3D, 0x3E, 0x3F, 0xFF};
    const PDU_IO_BYTEARRAY_DATA data = {.DataSize = 17, .pData = bytes};
    ExpectLines(PDU_IT_IO_BYTEARRAY, "PDU_IT_IO_BYTEARRAY (4098)", &data,
                "   -->  pByteArrayArra |00000000 <30 31 32 33 34 35 36 37 38 39 3A 3B 3C 3D 3E 3F>  "
                "0123456789:;<=>?|\n"
                "   -->  pByteArrayArra |00000010 <FF>                                               .       "
                "        |\n",
                "   <--  pByteArrayArra |00000000 <30 31 32 33 34 35 36 37 38 39 3A 3B 3C 3D 3E 3F>  "
                "0123456789:;<=>?|\n"
                "   <--  pByteArrayArra |00000010 <FF>                                               .       "
                "        |\n");
}

TEST_F(Item, BytesOfAnArrayAreNotListedAtLevelOne)
{
    UNUM8 byte = 0x30;
    const PDU_IO_BYTEARRAY_DATA data = {.DataSize = 1, .pData = &byte};
    EXPECT_EQ(Decode(PDU_IT_IO_BYTEARRAY, &data, ToTarget, 1),
              Head("PDU_IT_IO_BYTEARRAY (4098)", &data, ToTarget));
}

TEST_F(Item, AnEmptyOrNullArrayIsReported)
{
    UNUM8 byte = 0x30;
    const PDU_IO_BYTEARRAY_DATA empty = {.DataSize = 0, .pData = &byte};
    ExpectLines(PDU_IT_IO_BYTEARRAY, "PDU_IT_IO_BYTEARRAY (4098)", &empty,
                "   -->  pByteArrayArray: Size\t= <ZERO>\n", "   <--  pByteArrayArray: Size\t= <ZERO>\n");
    const PDU_IO_BYTEARRAY_DATA null = {.DataSize = 5, .pData = nullptr};
    ExpectLines(PDU_IT_IO_BYTEARRAY, "PDU_IT_IO_BYTEARRAY (4098)", &null,
                "   -->  pByteArrayArray: Address \t= <NULL>\n",
                "   <--  pByteArrayArray: Address \t= <NULL>\n");
    const PDU_IO_BYTEARRAY_DATA both = {.DataSize = 0, .pData = nullptr};
    ExpectLines(PDU_IT_IO_BYTEARRAY, "PDU_IT_IO_BYTEARRAY (4098)", &both,
                "   -->  pByteArrayArray: Size\t= <ZERO>\n"
                "   -->  pByteArrayArray: Address \t= <NULL>\n",
                "   <--  pByteArrayArray: Size\t= <ZERO>\n"
                "   <--  pByteArrayArray: Address \t= <NULL>\n");
}

TEST_F(Item, FiltersStandBelowTheHead)
{
    PDU_IO_FILTER_DATA filter = {.FilterType = PDU_FLT_PASS_UUDT,
                                 .FilterNumber = 3,
                                 .FilterCompareSize = 2,
                                 .FilterMaskMessage = {0xFF, 0xF0},
                                 .FilterPatternMessage = {0x10, 0x20}};
    const PDU_IO_FILTER_LIST data = {.NumFilterEntries = 1, .pFilterData = &filter};
    ExpectLines(PDU_IT_IO_FILTER, "PDU_IT_IO_FILTER (4099)", &data,
                "    >>> ->NumFilterEntries \t= 1\n"
                "\t\t -->  FilterEntry[00] Type=PDU_FLT_PASS_UUDT (17), Number=3, FilterSize=2\n"
                "\t\t  >>> pMaskMsg       |00000000 <FF F0>                                            ..    "
                "          |\n"
                "\t\t  >>> pPatternMsg    |00000000 <10 20>                                            .     "
                "          |\n",
                "    <<< ->NumFilterEntries \t= 1\n"
                "\t\t <--  FilterEntry[00] Type=PDU_FLT_PASS_UUDT (17), Number=3, FilterSize=2\n"
                "\t\t  <<< pMaskMsg       |00000000 <FF F0>                                            ..    "
                "          |\n"
                "\t\t  <<< pPatternMsg    |00000000 <10 20>                                            .     "
                "          |\n");
}

TEST_F(Item, AnEventQueuesModeIsSigned)
{
    const PDU_IO_EVENT_QUEUE_PROPERTY_DATA data = {.QueueSize = 64, .QueueMode = 2};
    ExpectLines(PDU_IT_IO_EVENT_QUEUE_PROPERTY, "PDU_IT_IO_EVENT_QUEUE_PROPERTY (4100)", &data,
                "    >>> QueueSize = 64, QueueMode = 2\n", "    <<< QueueSize = 64, QueueMode = 2\n");
    const PDU_IO_EVENT_QUEUE_PROPERTY_DATA highest = {.QueueSize = 0xFFFFFFFF, .QueueMode = 0xFFFFFFFF};
    ExpectLines(PDU_IT_IO_EVENT_QUEUE_PROPERTY, "PDU_IT_IO_EVENT_QUEUE_PROPERTY (4100)", &highest,
                "    >>> QueueSize = 4294967295, QueueMode = -1\n",
                "    <<< QueueSize = 4294967295, QueueMode = -1\n");
}

TEST_F(Item, AResourcesStatusIsTakenApartBitByBit)
{
    PDU_RSC_STATUS_DATA data = {.hMod = 0xFFFFFFFF, .ResourceId = 400, .ResourceStatus = 0x0A};
    RecordObjectName(PDU_OBJT_RESOURCE, 400, "RSC_CAN");
    ExpectLines(
        PDU_IT_RSC_STATUS, "PDU_IT_RSC_STATUS (4352)", &data,
        "    >>> hMod = 4294967295, ResourceId = RSC_CAN (400), Status = 0xA\n"
        "\t\t -->  Status decode: Phys ComParams Locked = 1, TX Q locked = 0, Available = 1, In use = 0\n",
        "    <<< hMod = 4294967295, ResourceId = RSC_CAN (400), Status = 0xA\n"
        "\t\t <--  Status decode: Phys ComParams Locked = 1, TX Q locked = 0, Available = 1, In use = 0\n");
    data = {1, 0xFFFFFFFE, 0xFFFFFFF5};
    ExpectLines(
        PDU_IT_RSC_STATUS, "PDU_IT_RSC_STATUS (4352)", &data,
        "    >>> hMod = 1, ResourceId = <UNKNOWN> (4294967294), Status = 0xFFFFFFF5\n"
        "\t\t -->  Status decode: Phys ComParams Locked = 0, TX Q locked = 1, Available = 0, In use = 1\n",
        "    <<< hMod = 1, ResourceId = <UNKNOWN> (4294967294), Status = 0xFFFFFFF5\n"
        "\t\t <--  Status decode: Phys ComParams Locked = 0, TX Q locked = 1, Available = 0, In use = 1\n");
}

TEST_F(Item, EachBitOfAResourcesStatusHasItsOwnPlace)
{
    const auto decoded = [](UNUM32 status) {
        const PDU_RSC_STATUS_DATA data = {.hMod = 1, .ResourceId = 2, .ResourceStatus = status};
        const std::string text = Decode(PDU_IT_RSC_STATUS, &data, ToTarget);
        return text.substr(text.find("Phys"));
    };
    EXPECT_EQ(decoded(0), "Phys ComParams Locked = 0, TX Q locked = 0, Available = 0, In use = 0\n");
    EXPECT_EQ(decoded(1), "Phys ComParams Locked = 0, TX Q locked = 0, Available = 0, In use = 1\n");
    EXPECT_EQ(decoded(2), "Phys ComParams Locked = 0, TX Q locked = 0, Available = 1, In use = 0\n");
    EXPECT_EQ(decoded(4), "Phys ComParams Locked = 0, TX Q locked = 1, Available = 0, In use = 0\n");
    EXPECT_EQ(decoded(8), "Phys ComParams Locked = 1, TX Q locked = 0, Available = 0, In use = 0\n");
    EXPECT_EQ(decoded(0xFFFFFFF0), "Phys ComParams Locked = 0, TX Q locked = 0, Available = 0, In use = 0\n");
}

TEST_F(Item, AComParamIsOneLevelBelowTheHead)
{
    UNUM32 value = 500000;
    const PDU_PARAM_ITEM param = {.ItemType = PDU_IT_PARAM,
                                  .ComParamId = 7,
                                  .ComParamDataType = PDU_PT_UNUM32,
                                  .ComParamClass = PDU_PC_BUSTYPE,
                                  .pComParamData = &value};
    RecordObjectName(PDU_OBJT_COMPARAM, 7, "CP_Baudrate");
    const std::string line = "ComParam (" + testing::PointerText(&param) +
                             ") Id = CP_Baudrate (id=7), DataType = PDU_PT_UNUM32 (0x0105), "
                             "Class = PDU_PC_BUSTYPE (0x0005)\n";
    ExpectLines(PDU_IT_PARAM, "PDU_IT_PARAM (4608)", &param,
                "    >>> " + line +
                    "\t\t -->  CP_Baudrate                    (id=  7): =\t(u32)    500000\t(0x0007A120)\n",
                "    <<< " + line +
                    "\t\t <--  CP_Baudrate                    (id=  7): =\t(u32)    500000\t(0x0007A120)\n");
}

TEST_F(Item, TimingsOfAComParamRunPastTheArrows)
{
    PDU_PARAM_STRUCT_ACCESS_TIMING timing = {
        .P2Min = 1, .P2Max = 2, .P3Min = 3, .P3Max = 4, .P4Min = 5, .TimingSet = 255};
    const PDU_PARAM_STRUCTFIELD_DATA field = {.ComParamStructType = PDU_CPST_ACCESS_TIMING,
                                              .ParamMaxEntries = 2,
                                              .ParamActEntries = 1,
                                              .pStructArray = &timing};
    const PDU_PARAM_ITEM param = {.ItemType = PDU_IT_PARAM,
                                  .ComParamId = 7,
                                  .ComParamDataType = PDU_PT_STRUCTFIELD,
                                  .ComParamClass = PDU_PC_TIMING,
                                  .pComParamData = const_cast<void*>(static_cast<const void*>(&field))};
    const std::string line = "ComParam (" + testing::PointerText(&param) +
                             ") Id = [NOT YET READ] (id=7), DataType = PDU_PT_STRUCTFIELD (0x0108), "
                             "Class = PDU_PC_TIMING (0x0001)\n";
    ExpectLines(PDU_IT_PARAM, "PDU_IT_PARAM (4608)", &param,
                "    >>> " + line +
                    "\t\t  >>> Id = [NOT YET READ] (id=7): ComParamStructType\t= 2\n"
                    "\t\t  >>> MaxEntries\t= 2\n"
                    "\t\t  >>> ActEntries\t= 1\n"
                    "   <--  P2Min\t= 1\n"
                    "   <--  P2Max\t= 2\n"
                    "   <--  P3Min\t= 3\n"
                    "   <--  P3Max\t= 4\n"
                    "   <--  P4Min\t= 5\n"
                    "   <--  TimingSet\t= 255\n"
                    "    <<< EXTENDED TIMING VALUES - USED AFTER INIT IF SET IN KEY BYTES\n",
                "    <<< " + line +
                    "\t\t  <<< Id = [NOT YET READ] (id=7): ComParamStructType\t= 2\n"
                    "\t\t  <<< MaxEntries\t= 2\n"
                    "\t\t  <<< ActEntries\t= 1\n"
                    "\t\t\t\t...\nP2Min\t= 1\n"
                    "\t\t\t\t...\nP2Max\t= 2\n"
                    "\t\t\t\t...\nP3Min\t= 3\n"
                    "\t\t\t\t...\nP3Max\t= 4\n"
                    "\t\t\t\t...\nP4Min\t= 5\n"
                    "\t\t\t\t...\nTimingSet\t= 255\n"
                    "EXTENDED TIMING VALUES - USED AFTER INIT IF SET IN KEY BYTES\n");
}

TEST_F(Item, AResultIsShownAsTheEventThatItIs)
{
    UNUM8 flags[] = {0x80};
    UNUM8 payload[] = {0x62, 0xF1, 0x90};
    PDU_RESULT_DATA result = {.RxFlag = {1, flags},
                              .UniqueRespIdentifier = 7,
                              .AcceptanceId = 8,
                              .TimestampFlags = {0, nullptr},
                              .TxMsgDoneTimestamp = 9,
                              .StartMsgTimestamp = 10,
                              .pExtraInfo = nullptr,
                              .NumDataBytes = 3,
                              .pDataBytes = payload};
    const PDU_EVENT_ITEM event = {
        .ItemType = PDU_IT_RESULT, .hCop = 5, .pCoPTag = flags, .Timestamp = 4294967295u, .pData = &result};
    const std::string line = "PDU_IT_RESULT (0x1300): hCoP = 5, Tag = " + testing::PointerText(flags) +
                             ", Type = 4864, Timestamp = 4294967295, pData=" + testing::PointerText(&result) +
                             "\n";
    // Below its own line an event always has the arrows of one that comes back.
    const std::string rest = "\t\t <--  pResult->RxFla |00000000 <80>                                        "
                             "       .               |\n"
                             "\t\t  <<< [00] 0x80 = REMOTE_FRAME\n"
                             "    <<< UniqueRespIdentifier\t= 7\n"
                             "    <<< AcceptanceId        \t= 8\n"
                             "    <<< pResult->TimestampFlags->NumFlagBytes\t= 0\n"
                             "    <<< TxMsgDoneTimestamp  \t= 9\n"
                             "    <<< StartMsgTimestamp   \t= 10\n"
                             "    <<< DataSize\t\t= 3\n"
                             "    <<< pDataBytes     |00000000 <62 F1 90>                                    "
                             "     b..             |\n";
    ExpectLines(PDU_IT_RESULT, "PDU_IT_RESULT (4864)", &event, "    >>> " + line + rest,
                "    <<< " + line + rest);
}

TEST_F(Item, AStatusAnErrorAndInformationAreShownAsEvents)
{
    T_PDU_STATUS status = PDU_COPST_FINISHED;
    PDU_ERROR_DATA error = {.ErrorCodeId = PDU_ERR_EVT_RX_TIMEOUT, .ExtraErrorInfoId = 5};
    PDU_INFO_DATA info = {.InfoCode = PDU_INFO_MODULE_LIST_CHG, .ExtraInfoData = 6};
    const std::string null = testing::PointerText(nullptr);
    PDU_EVENT_ITEM event = {
        .ItemType = PDU_IT_STATUS, .hCop = 0xFFFFFFFF, .pCoPTag = nullptr, .Timestamp = 1, .pData = &status};
    std::string line = "PDU_IT_STATUS (0x1301): hCoP = 4294967295, Tag = " + null +
                       ", Type = 4865, Timestamp = 1, pData=" + testing::PointerText(&status) +
                       "\n    <<< Status        \t= PDU_COPST_FINISHED (0x8012)\n";
    ExpectLines(PDU_IT_STATUS, "PDU_IT_STATUS (4865)", &event, "    >>> " + line, "    <<< " + line);
    event = {PDU_IT_ERROR, 2, nullptr, 1, &error};
    line = "PDU_IT_ERROR (0x1302): hCoP = 2, Tag = " + null +
           ", Type = 4866, Timestamp = 1, pData=" + testing::PointerText(&error) +
           "\n    <<< ErrorCode = PDU_ERR_EVT_RX_TIMEOUT (0x0103), ExtraErrorData = 5\n";
    ExpectLines(PDU_IT_ERROR, "PDU_IT_ERROR (4866)", &event, "    >>> " + line, "    <<< " + line);
    event = {PDU_IT_INFO, 2, nullptr, 1, &info};
    line = "PDU_IT_INFO (0x1303): hCoP = 2, Tag = " + null +
           ", Type = 4867, Timestamp = 1, pData=" + testing::PointerText(&info) +
           "\n    <<< Code = PDU_INFO_MODULE_LIST_CHG (32880), ExtraInfoData = 6\n";
    ExpectLines(PDU_IT_INFO, "PDU_IT_INFO (4867)", &event, "    >>> " + line, "    <<< " + line);
}

TEST_F(Item, TheInnerTypeOfAnEventDecidesHowItIsShown)
{
    PDU_ERROR_DATA error = {.ErrorCodeId = PDU_ERR_EVT_RX_TIMEOUT, .ExtraErrorInfoId = 5};
    const PDU_EVENT_ITEM event = {
        .ItemType = PDU_IT_ERROR, .hCop = 2, .pCoPTag = nullptr, .Timestamp = 3, .pData = &error};
    const std::string line = "PDU_IT_ERROR (0x1302): hCoP = 2, Tag = " + testing::PointerText(nullptr) +
                             ", Type = 4866, Timestamp = 3, pData=" + testing::PointerText(&error) +
                             "\n    <<< ErrorCode = PDU_ERR_EVT_RX_TIMEOUT (0x0103), ExtraErrorData = 5\n";
    ExpectLines(PDU_IT_RESULT, "PDU_IT_RESULT (4864)", &event, "    >>> " + line, "    <<< " + line);
    ExpectLines(PDU_IT_STATUS, "PDU_IT_STATUS (4865)", &event, "    >>> " + line, "    <<< " + line);
    ExpectLines(PDU_IT_INFO, "PDU_IT_INFO (4867)", &event, "    >>> " + line, "    <<< " + line);
}

TEST_F(Item, AnEventOfAnUnknownInnerTypeSaysSo)
{
    UNUM32 data = 0;
    const PDU_EVENT_ITEM event = {
        .ItemType = 0xFFFFFFFF, .hCop = 2, .pCoPTag = nullptr, .Timestamp = 3, .pData = &data};
    const std::string line = "<UNKNOWN> (0xFFFFFFFF): hCoP = 2, Tag = " + testing::PointerText(nullptr) +
                             ", Type = -1, Timestamp = 3, pData=" + testing::PointerText(&data) +
                             "\n    <<< Unknown ItemType = 4294967295\n";
    ExpectLines(PDU_IT_RESULT, "PDU_IT_RESULT (4864)", &event, "    >>> " + line, "    <<< " + line);
}

TEST_F(Item, AnEventWithoutDataIsReportedAndNotFollowed)
{
    const PDU_EVENT_ITEM event = {
        .ItemType = PDU_IT_STATUS, .hCop = 2, .pCoPTag = nullptr, .Timestamp = 3, .pData = nullptr};
    const std::string null = testing::PointerText(nullptr);
    const std::string line = "PDU_IT_STATUS (0x1301): hCoP = 2, Tag = " + null +
                             ", Type = 4865, Timestamp = 3, pData=" + null + "\n    <<< Data = <NULL>\n";
    ExpectLines(PDU_IT_STATUS, "PDU_IT_STATUS (4865)", &event, "    >>> " + line, "    <<< " + line);
}

TEST_F(Item, ResourceIdsAreListedByModule)
{
    UNUM32 ids[] = {400};
    PDU_RSC_ID_ITEM_DATA modules[] = {{.hMod = 1, .NumIds = 1, .pResourceIdArray = ids},
                                      {.hMod = PDU_HANDLE_UNDEF, .NumIds = 0, .pResourceIdArray = nullptr}};
    const PDU_RSC_ID_ITEM data = {
        .ItemType = PDU_IT_RSC_ID, .NumModules = 2, .pResourceIdDataArray = modules};
    RecordObjectName(PDU_OBJT_RESOURCE, 400, "RSC_CAN");
    const std::string line =
        "Type = 5120, NumModules = 2, pRsrcDataArray = " + NarrowPointerText(modules) + "\n";
    const std::string array = testing::PointerText(ids);
    const std::string null = testing::PointerText(nullptr);
    ExpectLines(PDU_IT_RSC_ID, "PDU_IT_RSC_ID (5120)", &data,
                "    >>> " + line +
                    "\t\t -->  pRsrcIdLst->pResourceIdDataArray[0]\n"
                    "\t\t -->  RsrcItem:\thMod = 0x00000001, NumIds = 1, pResourceIdArray = " +
                    array +
                    "\n\t\t  >>> pResourceId[ 0]\t= 400 (RSC_CAN)\n"
                    "\t\t -->  pRsrcIdLst->pResourceIdDataArray[1]\n"
                    "\t\t -->  RsrcItem:\thMod = <PDU_HANDLE_UNDEF>, NumIds = 0, pResourceIdArray = " +
                    null + "\n\t\t  >>> pResourceId[RsrcItem]\t= <NULL>\n",
                "    <<< " + line +
                    "\t\t <--  pRsrcIdLst->pResourceIdDataArray[0]\n"
                    "\t\t <--  RsrcItem:\thMod = 0x00000001, NumIds = 1, pResourceIdArray = " +
                    array +
                    "\n\t\t  <<< pResourceId[ 0]\t= 400 (RSC_CAN)\n"
                    "\t\t <--  pRsrcIdLst->pResourceIdDataArray[1]\n"
                    "\t\t <--  RsrcItem:\thMod = <PDU_HANDLE_UNDEF>, NumIds = 0, pResourceIdArray = " +
                    null + "\n\t\t  <<< pResourceId[RsrcItem]\t= <NULL>\n");
}

TEST_F(Item, ResourceIdsOfANullListAreTheSummaryAlone)
{
    const PDU_RSC_ID_ITEM data = {
        .ItemType = 0xFFFFFFFF, .NumModules = 4294967295u, .pResourceIdDataArray = nullptr};
    const std::string line =
        "Type = -1, NumModules = 4294967295, pRsrcDataArray = " + NarrowPointerText(nullptr) + "\n";
    ExpectLines(PDU_IT_RSC_ID, "PDU_IT_RSC_ID (5120)", &data, "    >>> " + line, "    <<< " + line);
}

TEST_F(Item, ResourceIdsOfNoModuleAreTheSummaryAlone)
{
    PDU_RSC_ID_ITEM_DATA module = {};
    const PDU_RSC_ID_ITEM data = {
        .ItemType = PDU_IT_RSC_ID, .NumModules = 0, .pResourceIdDataArray = &module};
    const std::string line =
        "Type = 5120, NumModules = 0, pRsrcDataArray = " + NarrowPointerText(&module) + "\n";
    ExpectLines(PDU_IT_RSC_ID, "PDU_IT_RSC_ID (5120)", &data, "    >>> " + line, "    <<< " + line);
}

TEST_F(Item, AConflictIsOneEntryWithASignedId)
{
    PDU_RSC_CONFLICT_DATA data = {.hMod = 0xFFFFFFFF, .ResourceId = 400};
    RecordObjectName(PDU_OBJT_RESOURCE, 400, "RSC_CAN");
    ExpectLines(PDU_IT_RSC_CONFLICT, "PDU_IT_RSC_CONFLICT (5376)", &data,
                "    >>> hMod = 4294967295, ResourceId = RSC_CAN (400)\n",
                "    <<< hMod = 4294967295, ResourceId = RSC_CAN (400)\n");
    data = {1, 0xFFFFFFFE};
    ExpectLines(PDU_IT_RSC_CONFLICT, "PDU_IT_RSC_CONFLICT (5376)", &data,
                "    >>> hMod = 1, ResourceId = <UNKNOWN> (-2)\n",
                "    <<< hMod = 1, ResourceId = <UNKNOWN> (-2)\n");
}

TEST_F(Item, ModulesAlwaysHaveTheArrowsOfAResult)
{
    CHAR8 name[] = "VCI";
    PDU_MODULE_DATA module = {.ModuleTypeId = 11,
                              .hMod = 1,
                              .pVendorModuleName = name,
                              .pVendorAdditionalInfo = nullptr,
                              .ModuleStatus = PDU_MODST_READY};
    const PDU_MODULE_ITEM data = {.ItemType = PDU_IT_MODULE_ID, .NumEntries = 1, .pModuleData = &module};
    const std::string lines = "   <--  Module entry\t= 1 of 1\n"
                              "    <<< ModuleTypeId         \t= 11\n"
                              "    <<< hMod                 \t= 0x00000001\n"
                              "    <<< pVendorModuleName    \t= \"VCI\"\n"
                              "    <<< pVendorAdditionalInfo\t= \"<NULL STRING>\"\n"
                              "    <<< ModuleStatus         \t= PDU_MODST_READY (0x8060)\n";
    ExpectLines(PDU_IT_MODULE_ID, "PDU_IT_MODULE_ID (5632)", &data, lines, lines);
}

TEST_F(Item, AResponseTableIsOneLevelBelowTheHead)
{
    const UNUM8 value = 5;
    PDU_PARAM_ITEM param = {.ItemType = PDU_IT_PARAM,
                            .ComParamId = 7,
                            .ComParamDataType = PDU_PT_UNUM8,
                            .ComParamClass = PDU_PC_UNIQUE_ID,
                            .pComParamData = const_cast<UNUM8*>(&value)};
    PDU_ECU_UNIQUE_RESP_DATA entries[] = {
        {.UniqueRespIdentifier = 7, .NumParamItems = 1, .pParams = &param},
        {.UniqueRespIdentifier = PDU_ID_UNDEF, .NumParamItems = 0, .pParams = nullptr}};
    const PDU_UNIQUE_RESP_ID_TABLE_ITEM data = {
        .ItemType = PDU_IT_UNIQUE_RESP_ID_TABLE, .NumEntries = 2, .pUniqueData = entries};
    const std::string line = "ComParam (" + testing::PointerText(&param) +
                             ") Id = [NOT YET READ] (id=7), DataType = PDU_PT_UNUM8 (0x0101), "
                             "Class = PDU_PC_UNIQUE_ID (0x0006)\n";
    ExpectLines(PDU_IT_UNIQUE_RESP_ID_TABLE, "PDU_IT_UNIQUE_RESP_ID_TABLE (5888)", &data,
                "    >>> [   1 of    2] - URID = 7, Num params = 1\n"
                "\t\t -->  " +
                    line +
                    "\t\t  >>> [NOT YET READ]                 (id=  7): =\t(u 8)         5\t(0x05)\n"
                    "    >>> [   2 of    2] - URID = <PDU_ID_UNDEF>, Num params = 0\n",
                "    <<< [   1 of    2] - URID = 7, Num params = 1\n"
                "\t\t <--  " +
                    line +
                    "\t\t  <<< [NOT YET READ]                 (id=  7): =\t(u 8)         5\t(0x05)\n"
                    "    <<< [   2 of    2] - URID = <PDU_ID_UNDEF>, Num params = 0\n");
}

TEST_F(Item, AVehicleIdRequestHasTheLevelOfTheHead)
{
    CHAR8 value[] = "WVW";
    UNUM8 address[] = {192, 168, 0, 1};
    PDU_IP_ADDR_INFO addresses[] = {{.IpVersion = 4, .pAddress = address}};
    const PDU_IO_VEHICLE_ID_REQUEST_DATA data = {.PreselectionMode = 1,
                                                 .PreselectionValue = value,
                                                 .CombinationMode = 2,
                                                 .VehicleDiscoveryTime = 500,
                                                 .NumDestinationAddresses = 1,
                                                 .pDestinationAddresses = addresses};
    const std::string line = "CombinationMode=GroupID (2), PreselectionMode=1, PreselectionValue='WVW', "
                             "VehicleDiscoveryTime=500, NumDestAddrs=1\n";
    ExpectLines(PDU_IT_IO_VEHICLE_ID_REQUEST, "PDU_IT_IO_VEHICLE_ID_REQUEST (6144)", &data,
                "   -->  " + line + "    >>> pDestinationAddress[00] (IPv4) = 192.168.0.1\n",
                "   <--  " + line + "    <<< pDestinationAddress[00] (IPv4) = 192.168.0.1\n");
}

TEST_F(Item, AnExtendedVehicleIdRequestHasNoNameAndItsVersionAtTheEnd)
{
    const PDU_IO_VEHICLE_ID_REQUEST_EX data = {.Request = {.PreselectionMode = 1,
                                                           .PreselectionValue = nullptr,
                                                           .CombinationMode = 9,
                                                           .VehicleDiscoveryTime = 0,
                                                           .NumDestinationAddresses = 0,
                                                           .pDestinationAddresses = nullptr},
                                               .Ver = 0x02};
    const std::string line = "CombinationMode=<UNKNOWN> (9), PreselectionMode=1, "
                             "PreselectionValue='<NULL STRING>', VehicleDiscoveryTime=0, NumDestAddrs=0\n";
    ExpectLines(PDU_IT_IO_VEHICLE_ID_REQUEST_EX, "<UNKNOWN> (65536)", &data,
                "   -->  " + line + "   -->  Ver=0x02\n", "   <--  " + line + "   <--  Ver=0x02\n");
}

TEST_F(Item, SwitchAndEntityAlwaysHaveTheArrowOfAnArgument)
{
    const PDU_IO_ETH_SWITCH_STATE_DATA state = {.State = 1, .PinNumber = 8};
    ExpectLines(PDU_IT_IO_ETH_SWITCH_STATE, "PDU_IT_IO_ETH_SWITCH_STATE (6145)", &state,
                "   -->  Pin Number\t\t= 8 -> ON (1)\n", "   -->  Pin Number\t\t= 8 -> ON (1)\n");
    const PDU_IO_ENTITY_ADDRESS_DATA address = {.LogicalAddress = 0xE80, .CtrlTimeout = 2000};
    const std::string addressLine = "   -->  PDU_IO_ENTITY_ADDRESS_DATA: Addr = 0x0E80, Ctrl T/O = 2000\n";
    ExpectLines(PDU_IT_IO_ENTITY_ADDRESS, "PDU_IT_IO_ENTITY_ADDRESS (6146)", &address, addressLine,
                addressLine);
    const PDU_IO_ENTITY_STATUS_DATA status = {
        .EntityType = 1, .TcpClientsMax = 8, .TcpClients = 2, .MaxDataSize = 4095};
    const std::string statusLine = "   -->  PDU_IO_ENTITY_STATUS_DATA: EntityType=1 (Node), TcpClientsMax=8, "
                                   "TcpClients=2, MaxDataSize=4095\n";
    ExpectLines(PDU_IT_IO_ENTITY_STATUS, "PDU_IT_IO_ENTITY_STATUS (6147)", &status, statusLine, statusLine);
}

TEST_F(Item, WithAClosedGateNothingIsRead)
{
    UNUM32 value = 1;
    const PDU_DATA_ITEM item = {.ItemType = PDU_IT_IO_UNUM32, .pData = &value};
    ExpectThreeGates([&](const DecoderContext& context) { DecodeItem(context, ToTarget, "item", &item); });
    ExpectThreeGates([](const DecoderContext& context) { DecodeItem(context, FromTarget, "item", nullptr); });
    const auto* const wild = reinterpret_cast<const PDU_DATA_ITEM*>(std::uintptr_t{8});
    const auto decode = [&](const DecoderContext& context) { DecodeItem(context, ToTarget, "item", wild); };
    EXPECT_EQ(Decoded(decode, 1, 2), "");
    EXPECT_EQ(Decoded(decode, 2, 0), "");
    SetSetting(NumericKey::LogEnabled, 0);
    EXPECT_EQ(Decoded(decode, 2, 2), "");
}

TEST_F(Item, EachTypeHasItsGates)
{
    const PDU_EVENT_ITEM event = {
        .ItemType = 0, .hCop = 0, .pCoPTag = nullptr, .Timestamp = 0, .pData = nullptr};
    const PDU_RSC_ID_ITEM ids = {.ItemType = 0, .NumModules = 0, .pResourceIdDataArray = nullptr};
    const PDU_DATA_ITEM items[] = {{.ItemType = PDU_IT_RESULT, .pData = const_cast<PDU_EVENT_ITEM*>(&event)},
                                   {.ItemType = PDU_IT_RSC_ID, .pData = const_cast<PDU_RSC_ID_ITEM*>(&ids)},
                                   {.ItemType = 0x1234, .pData = const_cast<PDU_RSC_ID_ITEM*>(&ids)}};
    for (const PDU_DATA_ITEM& item : items)
        ExpectThreeGates(
            [&](const DecoderContext& context) { DecodeItem(context, ToTarget, "item", &item); });
}

TEST_F(Item, AListLargerThanTheBufferEndsWithTheMarker)
{
    std::vector<PDU_RSC_ID_ITEM_DATA> modules(10000);
    const PDU_RSC_ID_ITEM data = {
        .ItemType = PDU_IT_RSC_ID, .NumModules = 10000, .pResourceIdDataArray = modules.data()};
    ExpectCutOff(Decode(PDU_IT_RSC_ID, &data, ToTarget));
}

} // namespace
} // namespace marvane
