// Every row of every table, written out once more, so that a slip in one of the two shows.
#include <algorithm>
#include <vector>

#include "tests/support/decoded_text.h"

namespace marvane {
namespace {

/// Expects a table to hold these rows in this order, and nothing for the codes beside them.
void ExpectRows(NameTable table, const std::vector<NameEntry>& rows)
{
    const auto expected = [&](UNUM32 code) {
        const auto row =
            std::find_if(rows.begin(), rows.end(), [&](const NameEntry& one) { return one.Code == code; });
        return row == rows.end() ? "<none>" : row->Name;
    };
    ASSERT_EQ(table.size(), rows.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
        EXPECT_EQ(table[i].Code, rows[i].Code);
        EXPECT_EQ(table[i].Name, rows[i].Name);
        EXPECT_EQ(NameOf(table, rows[i].Code, "<none>"), rows[i].Name);
        for (const UNUM32 beside : {rows[i].Code - 1, rows[i].Code + 1})
            EXPECT_EQ(NameOf(table, beside, "<none>"), expected(beside)) << beside;
    }
    for (const UNUM32 code : {0u, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFEu, 0xFFFFFFFFu})
        EXPECT_EQ(NameOf(table, code, "<none>"), expected(code)) << code;
}

/// Expects these names for these bits, and empty names for all others of the 32.
void ExpectBits(const BitNames& names, const std::vector<std::pair<std::size_t, std::string_view>>& named)
{
    std::array<std::string_view, 32> expected = {};
    for (const auto& [bit, name] : named)
        expected.at(bit) = name;
    for (std::size_t bit = 0; bit < 32; ++bit)
        EXPECT_EQ(names[bit], expected[bit]) << bit;
}

TEST(NameTables, ResultsOfCalls)
{
    ExpectRows(ErrorCodeNames, {
                                   {0x00, "PDU_STATUS_NOERROR"},
                                   {0x01, "PDU_ERR_FCT_FAILED"},
                                   {0x10, "PDU_ERR_RESERVED_1"},
                                   {0x11, "PDU_ERR_COMM_PC_TO_VCI_FAILED"},
                                   {0x20, "PDU_ERR_PDUAPI_NOT_CONSTRUCTED"},
                                   {0x21, "PDU_ERR_SHARING_VIOLATION"},
                                   {0x30, "PDU_ERR_RESOURCE_BUSY"},
                                   {0x31, "PDU_ERR_RESOURCE_TABLE_CHANGED"},
                                   {0x32, "PDU_ERR_RESOURCE_ERROR"},
                                   {0x40, "PDU_ERR_CLL_NOT_CONNECTED"},
                                   {0x41, "PDU_ERR_CLL_NOT_STARTED"},
                                   {0x50, "PDU_ERR_INVALID_PARAMETERS"},
                                   {0x60, "PDU_ERR_INVALID_HANDLE"},
                                   {0x61, "PDU_ERR_VALUE_NOT_SUPPORTED"},
                                   {0x62, "PDU_ERR_ID_NOT_SUPPORTED"},
                                   {0x63, "PDU_ERR_COMPARAM_NOT_SUPPORTED"},
                                   {0x64, "PDU_ERR_COMPARAM_LOCKED"},
                                   {0x70, "PDU_ERR_TX_QUEUE_FULL"},
                                   {0x71, "PDU_ERR_EVENT_QUEUE_EMPTY"},
                                   {0x80, "PDU_ERR_VOLTAGE_NOT_SUPPORTED"},
                                   {0x81, "PDU_ERR_MUX_RSC_NOT_SUPPORTED"},
                                   {0x82, "PDU_ERR_CABLE_UNKNOWN"},
                                   {0x83, "PDU_ERR_NO_CABLE_DETECTED"},
                                   {0x84, "PDU_ERR_CLL_CONNECTED"},
                                   {0x90, "PDU_ERR_TEMPPARAM_NOT_ALLOWED"},
                                   {0xA0, "PDU_ERR_RSC_LOCKED"},
                                   {0xA1, "PDU_ERR_RSC_LOCKED_BY_OTHER_CLL"},
                                   {0xA2, "PDU_ERR_RSC_NOT_LOCKED"},
                                   {0xA3, "PDU_ERR_MODULE_NOT_CONNECTED"},
                                   {0xA4, "PDU_ERR_API_SW_OUT_OF_DATE"},
                                   {0xA5, "PDU_ERR_MODULE_FW_OUT_OF_DATE"},
                                   {0xA6, "PDU_ERR_PIN_NOT_CONNECTED"},
                                   {0xB0, "PDU_ERR_IP_PROTOCOL_NOT_SUPPORTED"},
                                   {0xB1, "PDU_ERR_DOIP_ROUTING_ACTIVATION_FAILED"},
                                   {0xB2, "PDU_ERR_DOIP_ROUTING_ACTIVATION_AUTHENTICATION_FAILED"},
                                   {0xB3, "PDU_ERR_DOIP_AMBIGUOUS_LOGICAL_ADDRESS"},
                                   {0xB4, "PDU_ERR_DOIP_ROUTING_ACTIVATION_INVALID_SOURCE_ADDRESS"},
                                   {0xB5, "PDU_ERR_DOIP_ROUTING_ACTIVATION_NO_DATA_SOCKET_AVAILABLE"},
                                   {0xB6, "PDU_ERR_DOIP_ROUTING_ACTIVATION_SOURCE_ADDRESS_CHANGED"},
                                   {0xB7, "PDU_ERR_DOIP_ROUTING_ACTIVATION_SOURCE_ADDRESS_IN_USE"},
                                   {0xB8, "PDU_ERR_DOIP_ROUTING_ACTIVATION_CONFIRMATION_REJECTED"},
                                   {0xB9, "PDU_ERR_DOIP_ROUTING_ACTIVATION_TYPE_UNSUPPORTED"},
                                   {0xBA, "PDU_ERR_DOIP_ROUTING_ACTIVATION_RESPONSE_CODE_UNKNOWN"},
                                   {0xBB, "PDU_ERR_DOIP_ROUTING_ACTIVATION_RESPONSE_TIMEOUT"},
                                   {0xBC, "PDU_ERR_DOIP_RESPONSE_TIMEOUT"},
                                   {0xBD, "PDU_ERR_TLS_REQUIRED"},
                                   {0xBE, "PDU_ERR_TLS_CONF_INCOMPLETE"},
                                   {0xBF, "PDU_ERR_TLS_VERSION_AGREEMENT_FAILED"},
                                   {0xC0, "PDU_ERR_TLS_CIPHER_AGREEMENT_FAILED"},
                                   {0xC1, "PDU_ERR_TLS_CERT_VERIFY_FAILED"},
                                   {0xC2, "PDU_ERR_TLS_VERSION_NOT_SUPPORTED"},
                                   {0xC3, "PDU_ERR_TLS_CIPHER_NOT_SUPPORTED"},
                               });
}

TEST(NameTables, StatesOfPrimitivesLinksAndModules)
{
    ExpectRows(StatusCodeNames, {
                                    {0x8010, "PDU_COPST_IDLE"},
                                    {0x8011, "PDU_COPST_EXECUTING"},
                                    {0x8012, "PDU_COPST_FINISHED"},
                                    {0x8013, "PDU_COPST_CANCELLED"},
                                    {0x8014, "PDU_COPST_WAITING"},
                                    {0x8050, "PDU_CLLST_OFFLINE"},
                                    {0x8051, "PDU_CLLST_ONLINE"},
                                    {0x8052, "PDU_CLLST_COMM_STARTED"},
                                    {0x8060, "PDU_MODST_READY"},
                                    {0x8061, "PDU_MODST_NOT_READY"},
                                    {0x8062, "PDU_MODST_NOT_AVAIL"},
                                    {0x8063, "PDU_MODST_AVAIL"},
                                });
}

TEST(NameTables, FilterTypes)
{
    ExpectRows(FilterTypeNames, {
                                    {0x01, "PDU_FLT_PASS"},
                                    {0x02, "PDU_FLT_BLOCK"},
                                    {0x11, "PDU_FLT_PASS_UUDT"},
                                    {0x12, "PDU_FLT_BLOCK_UUDT"},
                                });
}

TEST(NameTables, InformationCodes)
{
    ExpectRows(InfoCodeNames, {
                                  {0x8070, "PDU_INFO_MODULE_LIST_CHG"},
                                  {0x8071, "PDU_INFO_RSC_LOCK_CHG"},
                                  {0x8072, "PDU_INFO_PHYS_COMPARAM_CHG"},
                              });
}

TEST(NameTables, ErrorsOfEvents)
{
    ExpectRows(EventErrorNames, {
                                    {0x000, "PDU_ERR_EVT_NOERROR"},
                                    {0x100, "PDU_ERR_EVT_FRAME_STRUCT"},
                                    {0x101, "PDU_ERR_EVT_TX_ERROR"},
                                    {0x102, "PDU_ERR_EVT_TESTER_PRESENT_ERROR"},
                                    {0x103, "PDU_ERR_EVT_RX_TIMEOUT"},
                                    {0x104, "PDU_ERR_EVT_RX_ERROR"},
                                    {0x105, "PDU_ERR_EVT_PROT_ERR"},
                                    {0x106, "PDU_ERR_EVT_LOST_COMM_TO_VCI"},
                                    {0x107, "PDU_ERR_EVT_VCI_HARDWARE_FAULT"},
                                    {0x108, "PDU_ERR_EVT_INIT_ERROR"},
                                    {0x109, "PDU_ERR_EVT_RSC_LOCKED"},
                                });
}

TEST(NameTables, PrimitiveTypes)
{
    ExpectRows(CoPTypeNames, {
                                 {0x8001, "PDU_COPT_STARTCOMM"},
                                 {0x8002, "PDU_COPT_STOPCOMM"},
                                 {0x8003, "PDU_COPT_UPDATEPARAM"},
                                 {0x8004, "PDU_COPT_SENDRECV"},
                                 {0x8005, "PDU_COPT_DELAY"},
                                 {0x8006, "PDU_COPT_RESTORE_PARAM"},
                             });
}

TEST(NameTables, ObjectTypes)
{
    ExpectRows(ObjectTypeNames, {
                                    {0x8021, "PDU_OBJT_PROTOCOL"},
                                    {0x8022, "PDU_OBJT_BUSTYPE"},
                                    {0x8023, "PDU_OBJT_IO_CTRL"},
                                    {0x8024, "PDU_OBJT_COMPARAM"},
                                    {0x8025, "PDU_OBJT_PINTYPE"},
                                    {0x8026, "PDU_OBJT_RESOURCE"},
                                });
}

TEST(NameTables, ComParamClasses)
{
    ExpectRows(ComParamClassNames, {
                                       {1, "PDU_PC_TIMING"},
                                       {2, "PDU_PC_INIT"},
                                       {3, "PDU_PC_COM"},
                                       {4, "PDU_PC_ERRHDL"},
                                       {5, "PDU_PC_BUSTYPE"},
                                       {6, "PDU_PC_UNIQUE_ID"},
                                       {7, "PDU_PC_TESTER_PRESENT"},
                                   });
}

TEST(NameTables, ComParamTypes)
{
    ExpectRows(ComParamTypeNames, {
                                      {0x101, "PDU_PT_UNUM8"},
                                      {0x102, "PDU_PT_SNUM8"},
                                      {0x103, "PDU_PT_UNUM16"},
                                      {0x104, "PDU_PT_SNUM16"},
                                      {0x105, "PDU_PT_UNUM32"},
                                      {0x106, "PDU_PT_SNUM32"},
                                      {0x107, "PDU_PT_BYTEFIELD"},
                                      {0x108, "PDU_PT_STRUCTFIELD"},
                                      {0x109, "PDU_PT_LONGFIELD"},
                                  });
}

TEST(NameTables, ItemTypesButTheExtendedRequest)
{
    ExpectRows(ItemTypeNames, {
                                  {0x1000, "PDU_IT_IO_UNUM32"},
                                  {0x1001, "PDU_IT_IO_PROG_VOLTAGE"},
                                  {0x1002, "PDU_IT_IO_BYTEARRAY"},
                                  {0x1003, "PDU_IT_IO_FILTER"},
                                  {0x1004, "PDU_IT_IO_EVENT_QUEUE_PROPERTY"},
                                  {0x1100, "PDU_IT_RSC_STATUS"},
                                  {0x1200, "PDU_IT_PARAM"},
                                  {0x1300, "PDU_IT_RESULT"},
                                  {0x1301, "PDU_IT_STATUS"},
                                  {0x1302, "PDU_IT_ERROR"},
                                  {0x1303, "PDU_IT_INFO"},
                                  {0x1400, "PDU_IT_RSC_ID"},
                                  {0x1500, "PDU_IT_RSC_CONFLICT"},
                                  {0x1600, "PDU_IT_MODULE_ID"},
                                  {0x1700, "PDU_IT_UNIQUE_RESP_ID_TABLE"},
                                  {0x1800, "PDU_IT_IO_VEHICLE_ID_REQUEST"},
                                  {0x1801, "PDU_IT_IO_ETH_SWITCH_STATE"},
                                  {0x1802, "PDU_IT_IO_ENTITY_ADDRESS"},
                                  {0x1803, "PDU_IT_IO_ENTITY_STATUS"},
                              });
}

TEST(NameTables, EventTypes)
{
    ExpectRows(EventTypeNames, {
                                   {0x801, "PDU_EVT_DATA_AVAILABLE"},
                                   {0x802, "PDU_EVT_DATA_LOST"},
                               });
}

TEST(NameTables, CombinationModes)
{
    ExpectRows(CombinationModeNames, {
                                         {0, "Entity"},
                                         {1, "VIN"},
                                         {2, "GroupID"},
                                         {3, "Collection"},
                                     });
}

TEST(NameTables, TimingSets)
{
    ExpectRows(TimingSetNames, {
                                   {1, "DEFAULT ECU TIMING SET ON TPI 1 FROM TESTER"},
                                   {2, "OVERRIDE TIMING VALUES FOR ECU (FOR TPI 2 RESPONSE)"},
                                   {3, "OVERRIDE TIMING VALUES SET BY TESTER (FOR TPI 3)"},
                                   {4, "NORMAL TIMING VALUES FOR ECU AFTER INIT"},
                                   {255, "EXTENDED TIMING VALUES - USED AFTER INIT IF SET IN KEY BYTES"},
                               });
}

TEST(NameTables, TheNumbersOfRows)
{
    EXPECT_EQ(ErrorCodeNames.size(), 52u);
    EXPECT_EQ(StatusCodeNames.size(), 12u);
    EXPECT_EQ(FilterTypeNames.size(), 4u);
    EXPECT_EQ(InfoCodeNames.size(), 3u);
    EXPECT_EQ(EventErrorNames.size(), 11u);
    EXPECT_EQ(CoPTypeNames.size(), 6u);
    EXPECT_EQ(ObjectTypeNames.size(), 6u);
    EXPECT_EQ(ComParamClassNames.size(), 7u);
    EXPECT_EQ(ComParamTypeNames.size(), 9u);
    EXPECT_EQ(ItemTypeNames.size(), 19u);
    EXPECT_EQ(CombinationModeNames.size(), 4u);
    EXPECT_EQ(EventTypeNames.size(), 2u);
}

TEST(NameTables, TheExtendedVehicleIdRequestHasNoName)
{
    EXPECT_EQ(NameOf(ItemTypeNames, PDU_IT_IO_VEHICLE_ID_REQUEST_EX, "<UNKNOWN>"), "<UNKNOWN>");
    EXPECT_EQ(PDU_IT_IO_VEHICLE_ID_REQUEST_EX, 0x10000u);
}

TEST(NameTables, EqualCodesOfDifferentTablesStayApart)
{
    EXPECT_EQ(NameOf(EventErrorNames, 0x109, ""), "PDU_ERR_EVT_RSC_LOCKED");
    EXPECT_EQ(NameOf(ComParamTypeNames, 0x109, ""), "PDU_PT_LONGFIELD");
    EXPECT_EQ(NameOf(ErrorCodeNames, 1, ""), "PDU_ERR_FCT_FAILED");
    EXPECT_EQ(NameOf(FilterTypeNames, 1, ""), "PDU_FLT_PASS");
    EXPECT_EQ(NameOf(ComParamClassNames, 1, ""), "PDU_PC_TIMING");
    EXPECT_EQ(NameOf(EventErrorNames, 0, ""), "PDU_ERR_EVT_NOERROR");
    EXPECT_EQ(NameOf(ErrorCodeNames, 0, ""), "PDU_STATUS_NOERROR");
}

TEST(NameTables, ALookUpTwiceGivesTheSameText)
{
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(NameOf(StatusCodeNames, 0x8014, "<NULL>"), "PDU_COPST_WAITING");
        EXPECT_EQ(NameOf(StatusCodeNames, 0x8015, "<NULL>"), "<NULL>");
        EXPECT_EQ(NameOf(StatusCodeNames, 0x8015, "other"), "other");
        EXPECT_EQ(StatusCodeNames.size(), 12u);
    }
}

TEST(NameTables, AnEmptyTableHasNoNames)
{
    EXPECT_EQ(NameOf({}, 0, "<none>"), "<none>");
}

TEST(NameTables, AStatusIsNamedOrAnUnknownError)
{
    EXPECT_EQ(StatusText(0x00), "PDU_STATUS_NOERROR");
    EXPECT_EQ(StatusText(0x20), "PDU_ERR_PDUAPI_NOT_CONSTRUCTED");
    EXPECT_EQ(StatusText(0xC3), "PDU_ERR_TLS_CIPHER_NOT_SUPPORTED");
    EXPECT_EQ(StatusText(0x02), "<UNKNOWN ERROR>");
    EXPECT_EQ(StatusText(0xC4), "<UNKNOWN ERROR>");
    EXPECT_EQ(StatusText(0x103), "<UNKNOWN ERROR>");
    EXPECT_EQ(StatusText(0xFFFFFFFF), "<UNKNOWN ERROR>");
}

TEST(NameTables, TransmitFlags)
{
    ExpectBits(TxFlagNames, {
                                {5, "ENABLE_EXTRA_INFO"},
                                {6, "SUPPRESS_POS_RESP"},
                                {16, "CAN_29BIT_ID"},
                                {17, "WAIT_P3_MIN_ONLY"},
                                {30, "ISO15765_ADDR_TYPE"},
                                {31, "ISO15765_FRAME_PAD"},
                            });
}

TEST(NameTables, FlagsOfALinksCreation)
{
    ExpectBits(CllCreateFlagNames, {
                                       {6, "ChecksumMode"},
                                       {7, "RawMode"},
                                   });
}

TEST(NameTables, ReceiveFlags)
{
    ExpectBits(RxFlagNames, {
                                {7, "REMOTE_FRAME"},
                                {8, "SW_CAN_HV_RX"},
                                {9, "ECU_TIMING_CHANGE"},
                                {10, "SPD_CHG_EVENT"},
                                {16, "CAN_29BIT_ID"},
                                {24, "TX_MSG_TYPE"},
                                {25, "START_OF_MESSAGE"},
                                {26, "RX_BREAK"},
                                {27, "TX_INDICATION"},
                                {28, "ISO15765_PADDING_ERROR"},
                                {30, "CAN_SEGMENTATION"},
                                {31, "ISO15765_ADDR_TYPE"},
                            });
}

TEST(NameTables, TimestampFlags)
{
    ExpectBits(TimestampFlagNames, {
                                       {6, "StartMsgTimestampIndicator"},
                                       {7, "TxMsgDoneTimestampIndicator"},
                                   });
}

/// The words that stand for a missing name, as the log shows them.
class MissingNames : public testing::Decoding
{
};

TEST_F(MissingNames, DifferFromTableToTable)
{
    const auto event = [](T_PDU_IT type, const void* data) {
        return Decoded([&](const DecoderContext& context) { DecodeEventItem(context, type, data); });
    };
    const T_PDU_STATUS status = 1;
    EXPECT_EQ(event(PDU_IT_STATUS, &status), "    <<< Status        \t= <NULL> (0x0001)\n");
    const PDU_ERROR_DATA error = {.ErrorCodeId = 1, .ExtraErrorInfoId = 2};
    EXPECT_EQ(event(PDU_IT_ERROR, &error),
              "    <<< ErrorCode = <UNKNOWN ERROR> (0x0001), ExtraErrorData = 2\n");
    const PDU_INFO_DATA info = {.InfoCode = 1, .ExtraInfoData = 2};
    EXPECT_EQ(event(PDU_IT_INFO, &info), "    <<< Code = <UNKNOWN CODE> (1), ExtraInfoData = 2\n");
}

} // namespace
} // namespace marvane
