// The records' layout at compile time: it is the binary interface to applications and target libraries, of
// which those with 32 bits have another than those with 64.
#include "pdu/pdu_api.h"

namespace {

/// The number for this build's width of pointers.
constexpr std::size_t Bytes(std::size_t with32Bits, std::size_t with64Bits)
{
    return sizeof(void*) == 4 ? with32Bits : with64Bits;
}

static_assert(sizeof(void*) == 4 || sizeof(void*) == 8);

static_assert(sizeof(PDU_FLAG_DATA) == Bytes(8, 16) && offsetof(PDU_FLAG_DATA, pFlagData) == Bytes(4, 8));
static_assert(sizeof(PDU_DATA_ITEM) == Bytes(8, 16) && offsetof(PDU_DATA_ITEM, pData) == Bytes(4, 8));
static_assert(sizeof(PDU_PARAM_ITEM) == Bytes(20, 24) && offsetof(PDU_PARAM_ITEM, ComParamClass) == 12 &&
              offsetof(PDU_PARAM_ITEM, pComParamData) == 16);
static_assert(sizeof(PDU_PARAM_BYTEFIELD_DATA) == Bytes(12, 16));
static_assert(sizeof(PDU_PARAM_LONGFIELD_DATA) == Bytes(12, 16));
static_assert(sizeof(PDU_PARAM_STRUCTFIELD_DATA) == Bytes(16, 24) &&
              offsetof(PDU_PARAM_STRUCTFIELD_DATA, pStructArray) == Bytes(12, 16));
static_assert(sizeof(PDU_PARAM_STRUCT_SESSION_TIMING) == 6);
static_assert(sizeof(PDU_PARAM_STRUCT_ACCESS_TIMING) == 6);
static_assert(sizeof(PDU_EVENT_ITEM) == Bytes(20, 32) && offsetof(PDU_EVENT_ITEM, pCoPTag) == 8 &&
              offsetof(PDU_EVENT_ITEM, Timestamp) == Bytes(12, 16) &&
              offsetof(PDU_EVENT_ITEM, pData) == Bytes(16, 24));
static_assert(sizeof(PDU_EXTRA_INFO) == Bytes(16, 24) && offsetof(PDU_EXTRA_INFO, pHeaderBytes) == 8 &&
              offsetof(PDU_EXTRA_INFO, pFooterBytes) == Bytes(12, 16));
static_assert(sizeof(PDU_RESULT_DATA) == Bytes(44, 72) &&
              offsetof(PDU_RESULT_DATA, UniqueRespIdentifier) == Bytes(8, 16) &&
              offsetof(PDU_RESULT_DATA, AcceptanceId) == Bytes(12, 20) &&
              offsetof(PDU_RESULT_DATA, TimestampFlags) == Bytes(16, 24) &&
              offsetof(PDU_RESULT_DATA, TxMsgDoneTimestamp) == Bytes(24, 40) &&
              offsetof(PDU_RESULT_DATA, StartMsgTimestamp) == Bytes(28, 44) &&
              offsetof(PDU_RESULT_DATA, pExtraInfo) == Bytes(32, 48) &&
              offsetof(PDU_RESULT_DATA, NumDataBytes) == Bytes(36, 56) &&
              offsetof(PDU_RESULT_DATA, pDataBytes) == Bytes(40, 64));
static_assert(sizeof(PDU_ERROR_DATA) == 8);
static_assert(sizeof(PDU_INFO_DATA) == 8);
static_assert(sizeof(PDU_EXP_RESP_DATA) == Bytes(28, 48) &&
              offsetof(PDU_EXP_RESP_DATA, pMaskData) == Bytes(12, 16) &&
              offsetof(PDU_EXP_RESP_DATA, pPatternData) == Bytes(16, 24) &&
              offsetof(PDU_EXP_RESP_DATA, NumUniqueRespIds) == Bytes(20, 32) &&
              offsetof(PDU_EXP_RESP_DATA, pUniqueRespIds) == Bytes(24, 40));
static_assert(sizeof(PDU_COP_CTRL_DATA) == Bytes(32, 48) && offsetof(PDU_COP_CTRL_DATA, TxFlag) == 16 &&
              offsetof(PDU_COP_CTRL_DATA, NumPossibleExpectedResponses) == Bytes(24, 32) &&
              offsetof(PDU_COP_CTRL_DATA, pExpectedResponseArray) == Bytes(28, 40));
static_assert(sizeof(PDU_ECU_UNIQUE_RESP_DATA) == Bytes(12, 16));
static_assert(sizeof(PDU_UNIQUE_RESP_ID_TABLE_ITEM) == Bytes(12, 16));
static_assert(sizeof(PDU_PIN_DATA) == 8);
static_assert(sizeof(PDU_RSC_DATA) == Bytes(16, 24) && offsetof(PDU_RSC_DATA, pDLCPinData) == Bytes(12, 16));
static_assert(sizeof(PDU_RSC_STATUS_DATA) == 12);
static_assert(sizeof(PDU_RSC_STATUS_ITEM) == Bytes(12, 16));
static_assert(sizeof(PDU_RSC_ID_ITEM_DATA) == Bytes(12, 16));
static_assert(sizeof(PDU_RSC_ID_ITEM) == Bytes(12, 16));
static_assert(sizeof(PDU_RSC_CONFLICT_DATA) == 8);
static_assert(sizeof(PDU_RSC_CONFLICT_ITEM) == Bytes(12, 16));
static_assert(sizeof(PDU_MODULE_DATA) == Bytes(20, 32) && offsetof(PDU_MODULE_DATA, pVendorModuleName) == 8 &&
              offsetof(PDU_MODULE_DATA, pVendorAdditionalInfo) == Bytes(12, 16) &&
              offsetof(PDU_MODULE_DATA, ModuleStatus) == Bytes(16, 24));
static_assert(sizeof(PDU_MODULE_ITEM) == Bytes(12, 16));
static_assert(sizeof(PDU_VERSION_DATA) == 296 && offsetof(PDU_VERSION_DATA, HwName) == 12 &&
              offsetof(PDU_VERSION_DATA, HwVersion) == 76 && offsetof(PDU_VERSION_DATA, FwName) == 88 &&
              offsetof(PDU_VERSION_DATA, FwVersion) == 152 && offsetof(PDU_VERSION_DATA, VendorName) == 160 &&
              offsetof(PDU_VERSION_DATA, PDUApiSwName) == 224 &&
              offsetof(PDU_VERSION_DATA, PDUApiSwDate) == 292);
static_assert(sizeof(PDU_IO_PROG_VOLTAGE_DATA) == 8);
static_assert(sizeof(PDU_IO_BYTEARRAY_DATA) == Bytes(8, 16) &&
              offsetof(PDU_IO_BYTEARRAY_DATA, pData) == Bytes(4, 8));
static_assert(sizeof(PDU_IO_EVENT_QUEUE_PROPERTY_DATA) == 8);
static_assert(sizeof(PDU_IO_FILTER_DATA) == 36 && offsetof(PDU_IO_FILTER_DATA, FilterMaskMessage) == 12 &&
              offsetof(PDU_IO_FILTER_DATA, FilterPatternMessage) == 24);
static_assert(sizeof(PDU_IO_FILTER_LIST) == Bytes(8, 16) &&
              offsetof(PDU_IO_FILTER_LIST, pFilterData) == Bytes(4, 8));
static_assert(sizeof(PDU_IP_ADDR_INFO) == Bytes(8, 16) &&
              offsetof(PDU_IP_ADDR_INFO, pAddress) == Bytes(4, 8));
static_assert(sizeof(PDU_IO_VEHICLE_ID_REQUEST_DATA) == Bytes(24, 40) &&
              offsetof(PDU_IO_VEHICLE_ID_REQUEST_DATA, PreselectionValue) == Bytes(4, 8) &&
              offsetof(PDU_IO_VEHICLE_ID_REQUEST_DATA, CombinationMode) == Bytes(8, 16) &&
              offsetof(PDU_IO_VEHICLE_ID_REQUEST_DATA, VehicleDiscoveryTime) == Bytes(12, 20) &&
              offsetof(PDU_IO_VEHICLE_ID_REQUEST_DATA, NumDestinationAddresses) == Bytes(16, 24) &&
              offsetof(PDU_IO_VEHICLE_ID_REQUEST_DATA, pDestinationAddresses) == Bytes(20, 32));
static_assert(sizeof(PDU_IO_VEHICLE_ID_REQUEST_EX) == Bytes(28, 48) &&
              offsetof(PDU_IO_VEHICLE_ID_REQUEST_EX, Ver) == Bytes(24, 40));
static_assert(sizeof(PDU_IO_ETH_SWITCH_STATE_DATA) == 8);
static_assert(sizeof(PDU_IO_ENTITY_ADDRESS_DATA) == 8);
static_assert(sizeof(PDU_IO_ENTITY_STATUS_DATA) == 16);
static_assert(sizeof(LogParameter) == Bytes(16, 24) && offsetof(LogParameter, Name) == 8 &&
              offsetof(LogParameter, Data) == Bytes(12, 16));
static_assert(sizeof(LogParameterBytes) == Bytes(8, 16) && offsetof(LogParameterBytes, Bytes) == Bytes(4, 8));

} // namespace
