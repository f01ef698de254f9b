#include "tests/golden/error_steps.h"

namespace marvane::testing {

std::vector<T_PDU_ERROR> CallAllWithNulls(const CPduDll& api, UNUM32* code)
{
    return {
        api.PDUGetModuleIds(nullptr),
        api.PDUModuleConnect(0),
        api.PDURegisterEventCallback(0, 0, nullptr),
        api.PDUGetVersion(0, nullptr),
        api.PDUGetStatus(0, 0, 0, code, nullptr, nullptr),
        api.PDUGetLastError(0, 0, code, nullptr, nullptr, nullptr),
        api.PDUGetTimestamp(0, nullptr),
        api.PDUGetObjectId(PDU_OBJT_COMPARAM, nullptr, nullptr),
        api.PDUGetResourceIds(0, nullptr, nullptr),
        api.PDUGetResourceStatus(nullptr),
        api.PDUGetConflictingResources(0, nullptr, nullptr),
        api.PDUCreateComLogicalLink(0, nullptr, 0, nullptr, nullptr, nullptr),
        api.PDUConnect(0, 0),
        api.PDULockResource(0, 0, 0),
        api.PDUUnlockResource(0, 0, 0),
        api.PDUGetComParam(0, 0, 0, nullptr),
        api.PDUSetComParam(0, 0, nullptr),
        api.PDUGetUniqueRespIdTable(0, 0, nullptr),
        api.PDUSetUniqueRespIdTable(0, 0, nullptr),
        api.PDUStartComPrimitive(0, 0, PDU_COPT_DELAY, 0, nullptr, nullptr, nullptr, nullptr),
        api.PDUCancelComPrimitive(0, 0, 0),
        api.PDUGetEventItem(0, 0, nullptr),
        api.PDUIoCtl(0, 0, 0, nullptr, nullptr),
        api.PDUDestroyItem(nullptr),
        api.PDUDisconnect(0, 0),
        api.PDUDestroyComLogicalLink(0, 0),
        api.PDUModuleDisconnect(0),
    };
}

void GetNothing(Stage& stage)
{
    auto& modules = stage.log.Keep<PDU_MODULE_ITEM*>("no modules", nullptr);
    stage.api.PDUGetModuleIds(&modules);
    auto& resources = stage.log.Keep<PDU_RSC_ID_ITEM*>("no resources", nullptr);
    stage.api.PDUGetResourceIds(1, nullptr, &resources);
    auto& conflicts = stage.log.Keep<PDU_RSC_CONFLICT_ITEM*>("no conflicts", nullptr);
    stage.api.PDUGetConflictingResources(1, nullptr, &conflicts);
    auto& parameter = stage.log.Keep<PDU_PARAM_ITEM*>("no parameter", nullptr);
    stage.api.PDUGetComParam(1, 2, 3, &parameter);
    auto& table = stage.log.Keep<PDU_UNIQUE_RESP_ID_TABLE_ITEM*>("no table", nullptr);
    stage.api.PDUGetUniqueRespIdTable(1, 2, &table);
    auto& event = stage.log.Keep<PDU_EVENT_ITEM*>("no event", nullptr);
    stage.api.PDUGetEventItem(1, 2, &event);
    auto& output = stage.log.Keep<PDU_DATA_ITEM*>("no output", nullptr);
    stage.api.PDUIoCtl(1, 2, 3, nullptr, &output);
}

void FailWithValues(Stage& stage)
{
    auto& number = stage.log.Keep<UNUM32>("old number", 4321);
    stage.script.Fail("PDUGetTimestamp", PDU_ERR_MODULE_NOT_CONNECTED);
    stage.api.PDUGetTimestamp(1, &number);
    stage.script.Fail("PDUGetStatus", PDU_ERR_INVALID_HANDLE);
    stage.api.PDUGetStatus(1, 2, 3, &number, &number, &number);
    stage.script.Fail("PDUGetLastError", PDU_ERR_INVALID_HANDLE);
    stage.api.PDUGetLastError(1, 2, &number, &number, &number, &number);
    stage.script.Fail("PDUGetObjectId", PDU_ERR_ID_NOT_SUPPORTED);
    stage.api.PDUGetObjectId(PDU_OBJT_IO_CTRL, stage.log.KeepText("PDU_IOCTL_NONE"), &number);
    stage.script.Fail("PDUCreateComLogicalLink", PDU_ERR_RESOURCE_BUSY);
    stage.api.PDUCreateComLogicalLink(1, nullptr, PDU_ID_UNDEF, nullptr, &number, nullptr);
    stage.script.Fail("PDUStartComPrimitive", PDU_ERR_CLL_NOT_STARTED);
    stage.api.PDUStartComPrimitive(1, 2, PDU_COPT_SENDRECV, 0, nullptr, nullptr, nullptr, &number);
    auto& item = stage.log.Keep<PDU_DATA_ITEM>("old item", {PDU_IT_IO_UNUM32, &number});
    auto& output = stage.log.Keep("old output", &item);
    stage.script.Fail("PDUIoCtl", PDU_ERR_FCT_FAILED);
    stage.api.PDUIoCtl(1, 2, 4321, nullptr, &output);
    // The failed look-up has added no name; a status without a name shows its number.
    stage.script.Fail("PDULockResource", 0x12345);
    stage.api.PDULockResource(PDU_HANDLE_UNDEF, 0, 0xFFFFFFFF);
}

} // namespace marvane::testing
