// The D-PDU API of ISO 22900-2 as this library sees it: constants, records and the 29 functions.
// One header for the application's side, the target library's side and the decoders between them.
#pragma once

#include <cstddef>
#include <cstdint>

using CHAR8 = char;
using UNUM8 = std::uint8_t;
using SNUM8 = std::int8_t;
using UNUM16 = std::uint16_t;
using SNUM16 = std::int16_t;
using UNUM32 = std::uint32_t;
using SNUM32 = std::int32_t;

// Codes are plain numbers, not enumerations: values without a name are ordinary input here.
using T_PDU_ERROR = UNUM32;
using T_PDU_STATUS = UNUM32;
using T_PDU_COPT = UNUM32;
using T_PDU_OBJT = UNUM32;
using T_PDU_IT = UNUM32;
using T_PDU_PT = UNUM32;
using T_PDU_PC = UNUM32;
using T_PDU_CPST = UNUM32;
using T_PDU_EVT_DATA = UNUM32;
using T_PDU_INFO = UNUM32;
using T_PDU_ERR_EVT = UNUM32;
using T_PDU_FILTER = UNUM32;
using T_PDU_QUEUE_MODE = UNUM32;

inline constexpr UNUM32 PDU_HANDLE_UNDEF = 0xFFFFFFFF;
inline constexpr UNUM32 PDU_ID_UNDEF = 0xFFFFFFFE;

// Results of the functions.
inline constexpr T_PDU_ERROR PDU_STATUS_NOERROR = 0x00;
inline constexpr T_PDU_ERROR PDU_ERR_FCT_FAILED = 0x01;
inline constexpr T_PDU_ERROR PDU_ERR_RESERVED_1 = 0x10;
inline constexpr T_PDU_ERROR PDU_ERR_COMM_PC_TO_VCI_FAILED = 0x11;
inline constexpr T_PDU_ERROR PDU_ERR_PDUAPI_NOT_CONSTRUCTED = 0x20;
inline constexpr T_PDU_ERROR PDU_ERR_SHARING_VIOLATION = 0x21;
inline constexpr T_PDU_ERROR PDU_ERR_RESOURCE_BUSY = 0x30;
inline constexpr T_PDU_ERROR PDU_ERR_RESOURCE_TABLE_CHANGED = 0x31;
inline constexpr T_PDU_ERROR PDU_ERR_RESOURCE_ERROR = 0x32;
inline constexpr T_PDU_ERROR PDU_ERR_CLL_NOT_CONNECTED = 0x40;
inline constexpr T_PDU_ERROR PDU_ERR_CLL_NOT_STARTED = 0x41;
inline constexpr T_PDU_ERROR PDU_ERR_INVALID_PARAMETERS = 0x50;
inline constexpr T_PDU_ERROR PDU_ERR_INVALID_HANDLE = 0x60;
inline constexpr T_PDU_ERROR PDU_ERR_VALUE_NOT_SUPPORTED = 0x61;
inline constexpr T_PDU_ERROR PDU_ERR_ID_NOT_SUPPORTED = 0x62;
inline constexpr T_PDU_ERROR PDU_ERR_COMPARAM_NOT_SUPPORTED = 0x63;
inline constexpr T_PDU_ERROR PDU_ERR_COMPARAM_LOCKED = 0x64;
inline constexpr T_PDU_ERROR PDU_ERR_TX_QUEUE_FULL = 0x70;
inline constexpr T_PDU_ERROR PDU_ERR_EVENT_QUEUE_EMPTY = 0x71;
inline constexpr T_PDU_ERROR PDU_ERR_VOLTAGE_NOT_SUPPORTED = 0x80;
inline constexpr T_PDU_ERROR PDU_ERR_MUX_RSC_NOT_SUPPORTED = 0x81;
inline constexpr T_PDU_ERROR PDU_ERR_CABLE_UNKNOWN = 0x82;
inline constexpr T_PDU_ERROR PDU_ERR_NO_CABLE_DETECTED = 0x83;
inline constexpr T_PDU_ERROR PDU_ERR_CLL_CONNECTED = 0x84;
inline constexpr T_PDU_ERROR PDU_ERR_TEMPPARAM_NOT_ALLOWED = 0x90;
inline constexpr T_PDU_ERROR PDU_ERR_RSC_LOCKED = 0xA0;
inline constexpr T_PDU_ERROR PDU_ERR_RSC_LOCKED_BY_OTHER_CLL = 0xA1;
inline constexpr T_PDU_ERROR PDU_ERR_RSC_NOT_LOCKED = 0xA2;
inline constexpr T_PDU_ERROR PDU_ERR_MODULE_NOT_CONNECTED = 0xA3;
inline constexpr T_PDU_ERROR PDU_ERR_API_SW_OUT_OF_DATE = 0xA4;
inline constexpr T_PDU_ERROR PDU_ERR_MODULE_FW_OUT_OF_DATE = 0xA5;
inline constexpr T_PDU_ERROR PDU_ERR_PIN_NOT_CONNECTED = 0xA6;
inline constexpr T_PDU_ERROR PDU_ERR_IP_PROTOCOL_NOT_SUPPORTED = 0xB0;
inline constexpr T_PDU_ERROR PDU_ERR_DOIP_ROUTING_ACTIVATION_FAILED = 0xB1;
inline constexpr T_PDU_ERROR PDU_ERR_DOIP_ROUTING_ACTIVATION_AUTHENTICATION_FAILED = 0xB2;
inline constexpr T_PDU_ERROR PDU_ERR_DOIP_AMBIGUOUS_LOGICAL_ADDRESS = 0xB3;
inline constexpr T_PDU_ERROR PDU_ERR_DOIP_ROUTING_ACTIVATION_INVALID_SOURCE_ADDRESS = 0xB4;
inline constexpr T_PDU_ERROR PDU_ERR_DOIP_ROUTING_ACTIVATION_NO_DATA_SOCKET_AVAILABLE = 0xB5;
inline constexpr T_PDU_ERROR PDU_ERR_DOIP_ROUTING_ACTIVATION_SOURCE_ADDRESS_CHANGED = 0xB6;
inline constexpr T_PDU_ERROR PDU_ERR_DOIP_ROUTING_ACTIVATION_SOURCE_ADDRESS_IN_USE = 0xB7;
inline constexpr T_PDU_ERROR PDU_ERR_DOIP_ROUTING_ACTIVATION_CONFIRMATION_REJECTED = 0xB8;
inline constexpr T_PDU_ERROR PDU_ERR_DOIP_ROUTING_ACTIVATION_TYPE_UNSUPPORTED = 0xB9;
inline constexpr T_PDU_ERROR PDU_ERR_DOIP_ROUTING_ACTIVATION_RESPONSE_CODE_UNKNOWN = 0xBA;
inline constexpr T_PDU_ERROR PDU_ERR_DOIP_ROUTING_ACTIVATION_RESPONSE_TIMEOUT = 0xBB;
inline constexpr T_PDU_ERROR PDU_ERR_DOIP_RESPONSE_TIMEOUT = 0xBC;
inline constexpr T_PDU_ERROR PDU_ERR_TLS_REQUIRED = 0xBD;
inline constexpr T_PDU_ERROR PDU_ERR_TLS_CONF_INCOMPLETE = 0xBE;
inline constexpr T_PDU_ERROR PDU_ERR_TLS_VERSION_AGREEMENT_FAILED = 0xBF;
inline constexpr T_PDU_ERROR PDU_ERR_TLS_CIPHER_AGREEMENT_FAILED = 0xC0;
inline constexpr T_PDU_ERROR PDU_ERR_TLS_CERT_VERIFY_FAILED = 0xC1;
inline constexpr T_PDU_ERROR PDU_ERR_TLS_VERSION_NOT_SUPPORTED = 0xC2;
inline constexpr T_PDU_ERROR PDU_ERR_TLS_CIPHER_NOT_SUPPORTED = 0xC3;

// States of ComPrimitives, links and modules: one numbering for all three.
inline constexpr T_PDU_STATUS PDU_COPST_IDLE = 0x8010;
inline constexpr T_PDU_STATUS PDU_COPST_EXECUTING = 0x8011;
inline constexpr T_PDU_STATUS PDU_COPST_FINISHED = 0x8012;
inline constexpr T_PDU_STATUS PDU_COPST_CANCELLED = 0x8013;
inline constexpr T_PDU_STATUS PDU_COPST_WAITING = 0x8014;
inline constexpr T_PDU_STATUS PDU_CLLST_OFFLINE = 0x8050;
inline constexpr T_PDU_STATUS PDU_CLLST_ONLINE = 0x8051;
inline constexpr T_PDU_STATUS PDU_CLLST_COMM_STARTED = 0x8052;
inline constexpr T_PDU_STATUS PDU_MODST_READY = 0x8060;
inline constexpr T_PDU_STATUS PDU_MODST_NOT_READY = 0x8061;
inline constexpr T_PDU_STATUS PDU_MODST_NOT_AVAIL = 0x8062;
inline constexpr T_PDU_STATUS PDU_MODST_AVAIL = 0x8063;

inline constexpr T_PDU_COPT PDU_COPT_STARTCOMM = 0x8001;
inline constexpr T_PDU_COPT PDU_COPT_STOPCOMM = 0x8002;
inline constexpr T_PDU_COPT PDU_COPT_UPDATEPARAM = 0x8003;
inline constexpr T_PDU_COPT PDU_COPT_SENDRECV = 0x8004;
inline constexpr T_PDU_COPT PDU_COPT_DELAY = 0x8005;
inline constexpr T_PDU_COPT PDU_COPT_RESTORE_PARAM = 0x8006;

inline constexpr T_PDU_OBJT PDU_OBJT_PROTOCOL = 0x8021;
inline constexpr T_PDU_OBJT PDU_OBJT_BUSTYPE = 0x8022;
inline constexpr T_PDU_OBJT PDU_OBJT_IO_CTRL = 0x8023;
inline constexpr T_PDU_OBJT PDU_OBJT_COMPARAM = 0x8024;
inline constexpr T_PDU_OBJT PDU_OBJT_PINTYPE = 0x8025;
inline constexpr T_PDU_OBJT PDU_OBJT_RESOURCE = 0x8026;

inline constexpr T_PDU_IT PDU_IT_IO_UNUM32 = 0x1000;
inline constexpr T_PDU_IT PDU_IT_IO_PROG_VOLTAGE = 0x1001;
inline constexpr T_PDU_IT PDU_IT_IO_BYTEARRAY = 0x1002;
inline constexpr T_PDU_IT PDU_IT_IO_FILTER = 0x1003;
inline constexpr T_PDU_IT PDU_IT_IO_EVENT_QUEUE_PROPERTY = 0x1004;
inline constexpr T_PDU_IT PDU_IT_RSC_STATUS = 0x1100;
inline constexpr T_PDU_IT PDU_IT_PARAM = 0x1200;
inline constexpr T_PDU_IT PDU_IT_RESULT = 0x1300;
inline constexpr T_PDU_IT PDU_IT_STATUS = 0x1301;
inline constexpr T_PDU_IT PDU_IT_ERROR = 0x1302;
inline constexpr T_PDU_IT PDU_IT_INFO = 0x1303;
inline constexpr T_PDU_IT PDU_IT_RSC_ID = 0x1400;
inline constexpr T_PDU_IT PDU_IT_RSC_CONFLICT = 0x1500;
inline constexpr T_PDU_IT PDU_IT_MODULE_ID = 0x1600;
inline constexpr T_PDU_IT PDU_IT_UNIQUE_RESP_ID_TABLE = 0x1700;
inline constexpr T_PDU_IT PDU_IT_IO_VEHICLE_ID_REQUEST = 0x1800;
inline constexpr T_PDU_IT PDU_IT_IO_ETH_SWITCH_STATE = 0x1801;
inline constexpr T_PDU_IT PDU_IT_IO_ENTITY_ADDRESS = 0x1802;
inline constexpr T_PDU_IT PDU_IT_IO_ENTITY_STATUS = 0x1803;
inline constexpr T_PDU_IT PDU_IT_IO_VEHICLE_ID_REQUEST_EX = 0x10000;

inline constexpr T_PDU_PT PDU_PT_UNUM8 = 0x101;
inline constexpr T_PDU_PT PDU_PT_SNUM8 = 0x102;
inline constexpr T_PDU_PT PDU_PT_UNUM16 = 0x103;
inline constexpr T_PDU_PT PDU_PT_SNUM16 = 0x104;
inline constexpr T_PDU_PT PDU_PT_UNUM32 = 0x105;
inline constexpr T_PDU_PT PDU_PT_SNUM32 = 0x106;
inline constexpr T_PDU_PT PDU_PT_BYTEFIELD = 0x107;
inline constexpr T_PDU_PT PDU_PT_STRUCTFIELD = 0x108;
inline constexpr T_PDU_PT PDU_PT_LONGFIELD = 0x109;

inline constexpr T_PDU_PC PDU_PC_TIMING = 1;
inline constexpr T_PDU_PC PDU_PC_INIT = 2;
inline constexpr T_PDU_PC PDU_PC_COM = 3;
inline constexpr T_PDU_PC PDU_PC_ERRHDL = 4;
inline constexpr T_PDU_PC PDU_PC_BUSTYPE = 5;
inline constexpr T_PDU_PC PDU_PC_UNIQUE_ID = 6;
inline constexpr T_PDU_PC PDU_PC_TESTER_PRESENT = 7;

inline constexpr T_PDU_CPST PDU_CPST_SESSION_TIMING = 1;
inline constexpr T_PDU_CPST PDU_CPST_ACCESS_TIMING = 2;

inline constexpr T_PDU_EVT_DATA PDU_EVT_DATA_AVAILABLE = 0x801;
inline constexpr T_PDU_EVT_DATA PDU_EVT_DATA_LOST = 0x802;

inline constexpr T_PDU_INFO PDU_INFO_MODULE_LIST_CHG = 0x8070;
inline constexpr T_PDU_INFO PDU_INFO_RSC_LOCK_CHG = 0x8071;
inline constexpr T_PDU_INFO PDU_INFO_PHYS_COMPARAM_CHG = 0x8072;

// Errors of event items: a numbering of their own, apart from the results of the functions.
inline constexpr T_PDU_ERR_EVT PDU_ERR_EVT_NOERROR = 0x000;
inline constexpr T_PDU_ERR_EVT PDU_ERR_EVT_FRAME_STRUCT = 0x100;
inline constexpr T_PDU_ERR_EVT PDU_ERR_EVT_TX_ERROR = 0x101;
inline constexpr T_PDU_ERR_EVT PDU_ERR_EVT_TESTER_PRESENT_ERROR = 0x102;
inline constexpr T_PDU_ERR_EVT PDU_ERR_EVT_RX_TIMEOUT = 0x103;
inline constexpr T_PDU_ERR_EVT PDU_ERR_EVT_RX_ERROR = 0x104;
inline constexpr T_PDU_ERR_EVT PDU_ERR_EVT_PROT_ERR = 0x105;
inline constexpr T_PDU_ERR_EVT PDU_ERR_EVT_LOST_COMM_TO_VCI = 0x106;
inline constexpr T_PDU_ERR_EVT PDU_ERR_EVT_VCI_HARDWARE_FAULT = 0x107;
inline constexpr T_PDU_ERR_EVT PDU_ERR_EVT_INIT_ERROR = 0x108;
inline constexpr T_PDU_ERR_EVT PDU_ERR_EVT_RSC_LOCKED = 0x109;

inline constexpr T_PDU_FILTER PDU_FLT_PASS = 0x01;
inline constexpr T_PDU_FILTER PDU_FLT_BLOCK = 0x02;
inline constexpr T_PDU_FILTER PDU_FLT_PASS_UUDT = 0x11;
inline constexpr T_PDU_FILTER PDU_FLT_BLOCK_UUDT = 0x12;

// Records. Natural alignment; every list is a count and a pointer to its first element.

/// Flag bytes; bit n of the flags is bit n % 8 of byte n / 8.
struct PDU_FLAG_DATA
{
    UNUM32 NumFlagBytes;
    UNUM8* pFlagData;
};

/// Generic item of PDUIoCtl; ItemType says what pData points at.
struct PDU_DATA_ITEM
{
    T_PDU_IT ItemType;
    void* pData;
};

/// One ComParam; ComParamDataType says what pComParamData points at.
struct PDU_PARAM_ITEM
{
    T_PDU_IT ItemType;
    UNUM32 ComParamId;
    T_PDU_PT ComParamDataType;
    T_PDU_PC ComParamClass;
    void* pComParamData;
};

struct PDU_PARAM_BYTEFIELD_DATA
{
    UNUM32 ParamMaxLen;
    UNUM32 ParamActLen;
    UNUM8* pDataArray;
};

/// Lengths count elements of 32 bits.
struct PDU_PARAM_LONGFIELD_DATA
{
    UNUM32 ParamMaxLen;
    UNUM32 ParamActLen;
    UNUM32* pDataArray;
};

/// Array of the struct that ComParamStructType names.
struct PDU_PARAM_STRUCTFIELD_DATA
{
    T_PDU_CPST ComParamStructType;
    UNUM32 ParamMaxEntries;
    UNUM32 ParamActEntries;
    void* pStructArray;
};

struct PDU_PARAM_STRUCT_SESSION_TIMING
{
    UNUM16 session;
    UNUM8 P2Max_high;
    UNUM8 P2Max_low;
    UNUM8 P2Star_high;
    UNUM8 P2Star_low;
};

struct PDU_PARAM_STRUCT_ACCESS_TIMING
{
    UNUM8 P2Min;
    UNUM8 P2Max;
    UNUM8 P3Min;
    UNUM8 P3Max;
    UNUM8 P4Min;
    UNUM8 TimingSet;
};

/// What PDUGetEventItem hands out. pData: PDU_RESULT_DATA, one status code, PDU_ERROR_DATA or PDU_INFO_DATA.
struct PDU_EVENT_ITEM
{
    T_PDU_IT ItemType;
    UNUM32 hCop;
    void* pCoPTag;
    UNUM32 Timestamp;
    void* pData;
};

struct PDU_EXTRA_INFO
{
    UNUM32 NumHeaderBytes;
    UNUM32 NumFooterBytes;
    UNUM8* pHeaderBytes;
    UNUM8* pFooterBytes;
};

struct PDU_RESULT_DATA
{
    PDU_FLAG_DATA RxFlag;
    UNUM32 UniqueRespIdentifier;
    UNUM32 AcceptanceId;
    PDU_FLAG_DATA TimestampFlags;
    UNUM32 TxMsgDoneTimestamp;
    UNUM32 StartMsgTimestamp;
    PDU_EXTRA_INFO* pExtraInfo;
    UNUM32 NumDataBytes;
    UNUM8* pDataBytes;
};

struct PDU_ERROR_DATA
{
    T_PDU_ERR_EVT ErrorCodeId;
    UNUM32 ExtraErrorInfoId;
};

struct PDU_INFO_DATA
{
    T_PDU_INFO InfoCode;
    UNUM32 ExtraInfoData;
};

/// ResponseType: 0 positive, any other negative. The mask and the pattern have one common length.
struct PDU_EXP_RESP_DATA
{
    UNUM32 ResponseType;
    UNUM32 AcceptanceId;
    UNUM32 NumMaskPatternBytes;
    UNUM8* pMaskData;
    UNUM8* pPatternData;
    UNUM32 NumUniqueRespIds;
    UNUM32* pUniqueRespIds;
};

/// Cycles: a count, -1 for endless, -2 for multiple.
struct PDU_COP_CTRL_DATA
{
    UNUM32 Time;
    SNUM32 NumSendCycles;
    SNUM32 NumReceiveCycles;
    UNUM32 TempParamUpdate;
    PDU_FLAG_DATA TxFlag;
    UNUM32 NumPossibleExpectedResponses;
    PDU_EXP_RESP_DATA* pExpectedResponseArray;
};

struct PDU_ECU_UNIQUE_RESP_DATA
{
    UNUM32 UniqueRespIdentifier;
    UNUM32 NumParamItems;
    PDU_PARAM_ITEM* pParams;
};

struct PDU_UNIQUE_RESP_ID_TABLE_ITEM
{
    T_PDU_IT ItemType;
    UNUM32 NumEntries;
    PDU_ECU_UNIQUE_RESP_DATA* pUniqueData;
};

struct PDU_PIN_DATA
{
    UNUM32 DLCPinNumber;
    UNUM32 DLCPinTypeId;
};

struct PDU_RSC_DATA
{
    UNUM32 BusTypeId;
    UNUM32 ProtocolId;
    UNUM32 NumPinData;
    PDU_PIN_DATA* pDLCPinData;
};

/// ResourceStatus, from bit 0: in use, available, transmit queue locked, physical ComParams locked.
struct PDU_RSC_STATUS_DATA
{
    UNUM32 hMod;
    UNUM32 ResourceId;
    UNUM32 ResourceStatus;
};

struct PDU_RSC_STATUS_ITEM
{
    T_PDU_IT ItemType;
    UNUM32 NumEntries;
    PDU_RSC_STATUS_DATA* pResourceStatusData;
};

struct PDU_RSC_ID_ITEM_DATA
{
    UNUM32 hMod;
    UNUM32 NumIds;
    UNUM32* pResourceIdArray;
};

struct PDU_RSC_ID_ITEM
{
    T_PDU_IT ItemType;
    UNUM32 NumModules;
    PDU_RSC_ID_ITEM_DATA* pResourceIdDataArray;
};

struct PDU_RSC_CONFLICT_DATA
{
    UNUM32 hMod;
    UNUM32 ResourceId;
};

struct PDU_RSC_CONFLICT_ITEM
{
    T_PDU_IT ItemType;
    UNUM32 NumEntries;
    PDU_RSC_CONFLICT_DATA* pRscConflictData;
};

struct PDU_MODULE_DATA
{
    UNUM32 ModuleTypeId;
    UNUM32 hMod;
    CHAR8* pVendorModuleName;
    CHAR8* pVendorAdditionalInfo;
    T_PDU_STATUS ModuleStatus;
};

struct PDU_MODULE_ITEM
{
    T_PDU_IT ItemType;
    UNUM32 NumEntries;
    PDU_MODULE_DATA* pModuleData;
};

/// Versions: major, minor, revision in the bytes from the highest down; the lowest is not shown.
/// Dates: week in the lowest byte, then two fields of the date, then the year less 1970.
struct PDU_VERSION_DATA
{
    UNUM32 MVCI_Part1StandardVersion;
    UNUM32 MVCI_Part2StandardVersion;
    UNUM32 HwSerialNumber;
    CHAR8 HwName[64];
    UNUM32 HwVersion;
    UNUM32 HwDate;
    UNUM32 HwInterface;
    CHAR8 FwName[64];
    UNUM32 FwVersion;
    UNUM32 FwDate;
    CHAR8 VendorName[64];
    CHAR8 PDUApiSwName[64];
    UNUM32 PDUApiSwVersion;
    UNUM32 PDUApiSwDate;
};

struct PDU_IO_PROG_VOLTAGE_DATA
{
    UNUM32 ProgVoltage_mv;
    UNUM32 PinOnDLC;
};

struct PDU_IO_BYTEARRAY_DATA
{
    UNUM32 DataSize;
    UNUM8* pData;
};

struct PDU_IO_EVENT_QUEUE_PROPERTY_DATA
{
    UNUM32 QueueSize;
    T_PDU_QUEUE_MODE QueueMode;
};

struct PDU_IO_FILTER_DATA
{
    T_PDU_FILTER FilterType;
    UNUM32 FilterNumber;
    UNUM32 FilterCompareSize;
    UNUM8 FilterMaskMessage[12];
    UNUM8 FilterPatternMessage[12];
};

struct PDU_IO_FILTER_LIST
{
    UNUM32 NumFilterEntries;
    PDU_IO_FILTER_DATA* pFilterData;
};

/// IpVersion 4 or 6; 4 or 16 bytes at pAddress, in network order.
struct PDU_IP_ADDR_INFO
{
    UNUM32 IpVersion;
    UNUM8* pAddress;
};

struct PDU_IO_VEHICLE_ID_REQUEST_DATA
{
    UNUM32 PreselectionMode;
    CHAR8* PreselectionValue;
    UNUM32 CombinationMode;
    UNUM32 VehicleDiscoveryTime;
    UNUM32 NumDestinationAddresses;
    PDU_IP_ADDR_INFO* pDestinationAddresses;
};

struct PDU_IO_VEHICLE_ID_REQUEST_EX
{
    PDU_IO_VEHICLE_ID_REQUEST_DATA Request;
    UNUM8 Ver;
};

struct PDU_IO_ETH_SWITCH_STATE_DATA
{
    UNUM32 State;
    UNUM32 PinNumber;
};

struct PDU_IO_ENTITY_ADDRESS_DATA
{
    UNUM32 LogicalAddress;
    UNUM32 CtrlTimeout;
};

struct PDU_IO_ENTITY_STATUS_DATA
{
    UNUM32 EntityType;
    UNUM32 TcpClientsMax;
    UNUM32 TcpClients;
    UNUM32 MaxDataSize;
};

/// One value of a comms report. Type 0x1000: Name has 21 bytes, Data points to a 32-bit number.
/// Type 0x1002: Name is a label, Data points to a LogParameterBytes.
struct LogParameter
{
    UNUM32 Type;
    UNUM32 Reserved;
    const CHAR8* Name;
    const void* Data;
};

struct LogParameterBytes
{
    UNUM32 Length;
    const UNUM8* Bytes;
};

// Calling convention of the functions and of both callbacks. Definitions take it from the prototypes.
#if defined(_WIN32) && !defined(_WIN64)
#define PDU_CALL __stdcall
#else
#define PDU_CALL
#endif

/// The application's event callback, and the form in which the target library calls it.
using CALLBACKFNC = void(PDU_CALL*)(T_PDU_EVT_DATA eventType, UNUM32 hMod, UNUM32 hCLL, void* pCLLTag,
                                    void* pAPITag);

/// What a target library with PDU_MS_SetLogCallback reports its comms traffic to. Always returns 0.
using PDU_MS_LOG_CALLBACK = UNUM32(PDU_CALL*)(const CHAR8* text, UNUM8 direction, UNUM32 protocol,
                                              UNUM32 count, const LogParameter* parameters);

// A library that implements the API defines PDU_API_EXPORTS before it includes this header.
#if !defined(PDU_API_EXPORTS)
#define PDU_API
#elif defined(_WIN32)
#define PDU_API __declspec(dllexport)
#else
#define PDU_API [[gnu::visibility("default")]]
#endif

extern "C" {
/// Starts the API. OptionStr: options of the library, may be null; pAPITag comes back with events of the API.
PDU_API T_PDU_ERROR PDU_CALL PDUConstruct(CHAR8* OptionStr, void* pAPITag);
/// Ends the API and frees all that belongs to it.
PDU_API T_PDU_ERROR PDU_CALL PDUDestruct();
/// Runs a command of a module or a link, with an item in and, if it has a result, a new item out.
PDU_API T_PDU_ERROR PDU_CALL PDUIoCtl(UNUM32 hMod, UNUM32 hCLL, UNUM32 IoCtlCommandId,
                                      PDU_DATA_ITEM* pInputData, PDU_DATA_ITEM** ppOutputData);
/// Versions of the module and of the library.
PDU_API T_PDU_ERROR PDU_CALL PDUGetVersion(UNUM32 hMod, PDU_VERSION_DATA* pVersionData);
/// Status of a module, a link (hCLL) or a ComPrimitive (hCoP); handles that do not apply are
/// PDU_HANDLE_UNDEF.
PDU_API T_PDU_ERROR PDU_CALL PDUGetStatus(UNUM32 hMod, UNUM32 hCLL, UNUM32 hCoP, T_PDU_STATUS* pStatusCode,
                                          UNUM32* pTimestamp, UNUM32* pExtraInfo);
/// Last error of a module or a link, and the ComPrimitive that it belongs to.
PDU_API T_PDU_ERROR PDU_CALL PDUGetLastError(UNUM32 hMod, UNUM32 hCLL, T_PDU_ERR_EVT* pErrorCode,
                                             UNUM32* phCoP, UNUM32* pTimestamp, UNUM32* pExtraErrorInfo);
/// Fills in the status of the resources that the item names.
PDU_API T_PDU_ERROR PDU_CALL PDUGetResourceStatus(PDU_RSC_STATUS_ITEM* pResourceStatus);
/// Creates a link on a resource, given by its data or its id; pCLLTag comes back with its events.
PDU_API T_PDU_ERROR PDU_CALL PDUCreateComLogicalLink(UNUM32 hMod, PDU_RSC_DATA* pRscData, UNUM32 resourceId,
                                                     void* pCLLTag, UNUM32* phCLL,
                                                     PDU_FLAG_DATA* pCLLCreateFlag);
/// Destroys a link.
PDU_API T_PDU_ERROR PDU_CALL PDUDestroyComLogicalLink(UNUM32 hMod, UNUM32 hCLL);
/// Connects a link to the vehicle.
PDU_API T_PDU_ERROR PDU_CALL PDUConnect(UNUM32 hMod, UNUM32 hCLL);
/// Disconnects a link.
PDU_API T_PDU_ERROR PDU_CALL PDUDisconnect(UNUM32 hMod, UNUM32 hCLL);
/// Locks the resource of a link, by the bits of LockMask, against other links.
PDU_API T_PDU_ERROR PDU_CALL PDULockResource(UNUM32 hMod, UNUM32 hCLL, UNUM32 LockMask);
/// Undoes PDULockResource.
PDU_API T_PDU_ERROR PDU_CALL PDUUnlockResource(UNUM32 hMod, UNUM32 hCLL, UNUM32 LockMask);
/// Returns a ComParam of a link as a new item.
PDU_API T_PDU_ERROR PDU_CALL PDUGetComParam(UNUM32 hMod, UNUM32 hCLL, UNUM32 ParamID,
                                            PDU_PARAM_ITEM** pParamItem);
/// Sets a ComParam of a link.
PDU_API T_PDU_ERROR PDU_CALL PDUSetComParam(UNUM32 hMod, UNUM32 hCLL, PDU_PARAM_ITEM* pParamItem);
/// Starts a ComPrimitive, such as sending a request and waiting for its answers; pCoPTag comes back with its
/// events.
PDU_API T_PDU_ERROR PDU_CALL PDUStartComPrimitive(UNUM32 hMod, UNUM32 hCLL, T_PDU_COPT CoPType,
                                                  UNUM32 CoPDataSize, UNUM8* pCoPData,
                                                  PDU_COP_CTRL_DATA* pCoPCtrlData, void* pCoPTag,
                                                  UNUM32* phCoP);
/// Cancels a ComPrimitive.
PDU_API T_PDU_ERROR PDU_CALL PDUCancelComPrimitive(UNUM32 hMod, UNUM32 hCLL, UNUM32 hCoP);
/// Takes the oldest event of a link, a module or the API as a new item.
PDU_API T_PDU_ERROR PDU_CALL PDUGetEventItem(UNUM32 hMod, UNUM32 hCLL, PDU_EVENT_ITEM** ppEventItem);
/// Frees an item that a function returned.
PDU_API T_PDU_ERROR PDU_CALL PDUDestroyItem(void* pItem);
/// Sets the callback for the events of a link, a module or the API; null removes it.
PDU_API T_PDU_ERROR PDU_CALL PDURegisterEventCallback(UNUM32 hMod, UNUM32 hCLL,
                                                      CALLBACKFNC EventCallbackFunction);
/// Id of an object, such as a ComParam or a resource, by type and short name.
PDU_API T_PDU_ERROR PDU_CALL PDUGetObjectId(T_PDU_OBJT pduObjectType, CHAR8* pShortname,
                                            UNUM32* pPduObjectId);
/// Returns the modules that exist as a new item.
PDU_API T_PDU_ERROR PDU_CALL PDUGetModuleIds(PDU_MODULE_ITEM** pModuleItem);
/// Returns the resources that fit the given data as a new item.
PDU_API T_PDU_ERROR PDU_CALL PDUGetResourceIds(UNUM32 hMod, PDU_RSC_DATA* pResourceIdData,
                                               PDU_RSC_ID_ITEM** pResourceIdList);
/// Returns the resources of some modules that can't be used beside one resource, as a new item.
PDU_API T_PDU_ERROR PDU_CALL PDUGetConflictingResources(UNUM32 resourceId, PDU_MODULE_ITEM* pInputModuleList,
                                                        PDU_RSC_CONFLICT_ITEM** pOutputConflictList);
/// Returns the table of unique response identifiers of a link as a new item.
PDU_API T_PDU_ERROR PDU_CALL PDUGetUniqueRespIdTable(UNUM32 hMod, UNUM32 hCLL,
                                                     PDU_UNIQUE_RESP_ID_TABLE_ITEM** pUniqueRespIdTable);
/// Sets the table of unique response identifiers of a link.
PDU_API T_PDU_ERROR PDU_CALL PDUSetUniqueRespIdTable(UNUM32 hMod, UNUM32 hCLL,
                                                     PDU_UNIQUE_RESP_ID_TABLE_ITEM* pUniqueRespIdTable);
/// Connects a module.
PDU_API T_PDU_ERROR PDU_CALL PDUModuleConnect(UNUM32 hMod);
/// Disconnects a module.
PDU_API T_PDU_ERROR PDU_CALL PDUModuleDisconnect(UNUM32 hMod);
/// Time of a module, by the clock of its events.
PDU_API T_PDU_ERROR PDU_CALL PDUGetTimestamp(UNUM32 hMod, UNUM32* pTimestamp);
}

/// Optional extension of a target library: registers the comms callback, null removes it. Looked up by
/// name only; its result is ignored.
using PDU_MS_SetLogCallback_t = T_PDU_ERROR(PDU_CALL*)(PDU_MS_LOG_CALLBACK callback);
