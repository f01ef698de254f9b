#include "bench/target.h"

#include <array>

namespace {

CALLBACKFNC EventCallback = nullptr;
PDU_MS_LOG_CALLBACK LogCallback = nullptr;

// A result with a positive response.
std::array<UNUM8, 4> RxFlags = {0, 0, 0, 0x80};
std::array<UNUM8, 64> Payload = {0x62, 0xF1, 0x90, 'W', 'B', 'E', 'N', 'C', 'H'};
PDU_RESULT_DATA Result = {};
PDU_EVENT_ITEM Item = {};

} // namespace

CALLBACKFNC PDUBenchEventCallback()
{
    return EventCallback;
}

PDU_MS_LOG_CALLBACK PDUBenchLogCallback()
{
    return LogCallback;
}

T_PDU_ERROR PDUConstruct(CHAR8*, void*)
{
    Result.RxFlag = {static_cast<UNUM32>(RxFlags.size()), RxFlags.data()};
    Result.UniqueRespIdentifier = 1;
    Result.AcceptanceId = 1;
    Result.NumDataBytes = static_cast<UNUM32>(Payload.size());
    Result.pDataBytes = Payload.data();
    Item.ItemType = PDU_IT_RESULT;
    Item.hCop = 3;
    Item.Timestamp = 123456;
    Item.pData = &Result;
    return PDU_STATUS_NOERROR;
}

T_PDU_ERROR PDUDestruct()
{
    return PDU_STATUS_NOERROR;
}

T_PDU_ERROR PDUIoCtl(UNUM32, UNUM32, UNUM32, PDU_DATA_ITEM*, PDU_DATA_ITEM**)
{
    return PDU_STATUS_NOERROR;
}

T_PDU_ERROR PDUGetVersion(UNUM32, PDU_VERSION_DATA*)
{
    return PDU_STATUS_NOERROR;
}

T_PDU_ERROR PDUGetStatus(UNUM32, UNUM32, UNUM32, T_PDU_STATUS*, UNUM32*, UNUM32*)
{
    return PDU_STATUS_NOERROR;
}

T_PDU_ERROR PDUGetLastError(UNUM32, UNUM32, T_PDU_ERR_EVT*, UNUM32*, UNUM32*, UNUM32*)
{
    return PDU_STATUS_NOERROR;
}

T_PDU_ERROR PDUGetResourceStatus(PDU_RSC_STATUS_ITEM*)
{
    return PDU_STATUS_NOERROR;
}

T_PDU_ERROR PDUCreateComLogicalLink(UNUM32, PDU_RSC_DATA*, UNUM32, void*, UNUM32*, PDU_FLAG_DATA*)
{
    return PDU_STATUS_NOERROR;
}

T_PDU_ERROR PDUDestroyComLogicalLink(UNUM32, UNUM32)
{
    return PDU_STATUS_NOERROR;
}

T_PDU_ERROR PDUConnect(UNUM32, UNUM32)
{
    return PDU_STATUS_NOERROR;
}

T_PDU_ERROR PDUDisconnect(UNUM32, UNUM32)
{
    return PDU_STATUS_NOERROR;
}

T_PDU_ERROR PDULockResource(UNUM32, UNUM32, UNUM32)
{
    return PDU_STATUS_NOERROR;
}

T_PDU_ERROR PDUUnlockResource(UNUM32, UNUM32, UNUM32)
{
    return PDU_STATUS_NOERROR;
}

T_PDU_ERROR PDUGetComParam(UNUM32, UNUM32, UNUM32, PDU_PARAM_ITEM**)
{
    return PDU_STATUS_NOERROR;
}

T_PDU_ERROR PDUSetComParam(UNUM32, UNUM32, PDU_PARAM_ITEM*)
{
    return PDU_STATUS_NOERROR;
}

T_PDU_ERROR PDUStartComPrimitive(UNUM32, UNUM32, T_PDU_COPT, UNUM32, UNUM8*, PDU_COP_CTRL_DATA*, void*,
                                 UNUM32* hCoP)
{
    *hCoP = 3;
    return PDU_STATUS_NOERROR;
}

T_PDU_ERROR PDUCancelComPrimitive(UNUM32, UNUM32, UNUM32)
{
    return PDU_STATUS_NOERROR;
}

T_PDU_ERROR PDUGetEventItem(UNUM32, UNUM32, PDU_EVENT_ITEM** item)
{
    *item = &Item;
    return PDU_STATUS_NOERROR;
}

T_PDU_ERROR PDUDestroyItem(void*)
{
    return PDU_STATUS_NOERROR;
}

T_PDU_ERROR PDURegisterEventCallback(UNUM32, UNUM32, CALLBACKFNC callback)
{
    EventCallback = callback;
    return PDU_STATUS_NOERROR;
}

T_PDU_ERROR PDUGetObjectId(T_PDU_OBJT, CHAR8*, UNUM32*)
{
    return PDU_STATUS_NOERROR;
}

T_PDU_ERROR PDUGetModuleIds(PDU_MODULE_ITEM**)
{
    return PDU_STATUS_NOERROR;
}

T_PDU_ERROR PDUGetResourceIds(UNUM32, PDU_RSC_DATA*, PDU_RSC_ID_ITEM**)
{
    return PDU_STATUS_NOERROR;
}

T_PDU_ERROR PDUGetConflictingResources(UNUM32, PDU_MODULE_ITEM*, PDU_RSC_CONFLICT_ITEM**)
{
    return PDU_STATUS_NOERROR;
}

T_PDU_ERROR PDUGetUniqueRespIdTable(UNUM32, UNUM32, PDU_UNIQUE_RESP_ID_TABLE_ITEM**)
{
    return PDU_STATUS_NOERROR;
}

T_PDU_ERROR PDUSetUniqueRespIdTable(UNUM32, UNUM32, PDU_UNIQUE_RESP_ID_TABLE_ITEM*)
{
    return PDU_STATUS_NOERROR;
}

T_PDU_ERROR PDUModuleConnect(UNUM32)
{
    return PDU_STATUS_NOERROR;
}

T_PDU_ERROR PDUModuleDisconnect(UNUM32)
{
    return PDU_STATUS_NOERROR;
}

T_PDU_ERROR PDUGetTimestamp(UNUM32, UNUM32*)
{
    return PDU_STATUS_NOERROR;
}

T_PDU_ERROR PDU_MS_SetLogCallback(PDU_MS_LOG_CALLBACK callback)
{
    LogCallback = callback;
    return PDU_STATUS_NOERROR;
}
