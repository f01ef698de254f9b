// Built in variants by definitions: FAKE_LACKS_LOG_CALLBACK, FAKE_LACKS_LOCK, FAKE_CALLS_ITSELF,
// FAKE_NEEDS_OTHER.
#include "tests/target/fake_target.h"

#include <type_traits>

extern "C" {
PDU_API FakeTargetControl* PDUFakeTargetControl();
PDU_API T_PDU_ERROR PDU_CALL PDU_MS_SetLogCallback(PDU_MS_LOG_CALLBACK callback);
PDU_API UNUM32 PDUFakeDependency();
}

namespace {

FakeTargetControl Control = {nullptr, nullptr};

template <class Argument> std::uint64_t Raw(Argument argument)
{
    if constexpr (std::is_pointer_v<Argument>)
        return reinterpret_cast<std::uintptr_t>(argument);
    else
        return argument;
}

template <class... Arguments> T_PDU_ERROR Answer(const char* function, Arguments... arguments)
{
    const FakeCall call = {function, sizeof...(Arguments), {Raw(arguments)...}};
    return Control.OnCall ? Control.OnCall(Control.Context, &call) : PDU_STATUS_NOERROR;
}

} // namespace

FakeTargetControl* PDUFakeTargetControl()
{
    return &Control;
}

T_PDU_ERROR PDUConstruct(CHAR8* OptionStr, void* pAPITag)
{
    return Answer("PDUConstruct", OptionStr, pAPITag);
}

T_PDU_ERROR PDUDestruct()
{
    return Answer("PDUDestruct");
}

T_PDU_ERROR PDUIoCtl(UNUM32 hMod, UNUM32 hCLL, UNUM32 command, PDU_DATA_ITEM* input, PDU_DATA_ITEM** output)
{
    return Answer("PDUIoCtl", hMod, hCLL, command, input, output);
}

T_PDU_ERROR PDUGetVersion(UNUM32 hMod, PDU_VERSION_DATA* version)
{
    return Answer("PDUGetVersion", hMod, version);
}

T_PDU_ERROR PDUGetStatus(UNUM32 hMod, UNUM32 hCLL, UNUM32 hCoP, T_PDU_STATUS* status, UNUM32* time,
                         UNUM32* extra)
{
    return Answer("PDUGetStatus", hMod, hCLL, hCoP, status, time, extra);
}

T_PDU_ERROR PDUGetLastError(UNUM32 hMod, UNUM32 hCLL, T_PDU_ERR_EVT* code, UNUM32* hCoP, UNUM32* time,
                            UNUM32* extra)
{
    return Answer("PDUGetLastError", hMod, hCLL, code, hCoP, time, extra);
}

T_PDU_ERROR PDUGetResourceStatus(PDU_RSC_STATUS_ITEM* item)
{
    return Answer("PDUGetResourceStatus", item);
}

T_PDU_ERROR PDUCreateComLogicalLink(UNUM32 hMod, PDU_RSC_DATA* data, UNUM32 resource, void* tag, UNUM32* hCLL,
                                    PDU_FLAG_DATA* flags)
{
    return Answer("PDUCreateComLogicalLink", hMod, data, resource, tag, hCLL, flags);
}

T_PDU_ERROR PDUDestroyComLogicalLink(UNUM32 hMod, UNUM32 hCLL)
{
    return Answer("PDUDestroyComLogicalLink", hMod, hCLL);
}

T_PDU_ERROR PDUConnect(UNUM32 hMod, UNUM32 hCLL)
{
    return Answer("PDUConnect", hMod, hCLL);
}

T_PDU_ERROR PDUDisconnect(UNUM32 hMod, UNUM32 hCLL)
{
    return Answer("PDUDisconnect", hMod, hCLL);
}

#ifndef FAKE_LACKS_LOCK
T_PDU_ERROR PDULockResource(UNUM32 hMod, UNUM32 hCLL, UNUM32 mask)
{
#ifdef FAKE_CALLS_ITSELF
    // As a library's own code does: by name, whether or not another library has a function of that name.
    UNUM32 time = 0;
    PDUGetTimestamp(hMod, &time);
#endif
    return Answer("PDULockResource", hMod, hCLL, mask);
}
#endif

T_PDU_ERROR PDUUnlockResource(UNUM32 hMod, UNUM32 hCLL, UNUM32 mask)
{
    return Answer("PDUUnlockResource", hMod, hCLL, mask);
}

T_PDU_ERROR PDUGetComParam(UNUM32 hMod, UNUM32 hCLL, UNUM32 id, PDU_PARAM_ITEM** item)
{
    return Answer("PDUGetComParam", hMod, hCLL, id, item);
}

T_PDU_ERROR PDUSetComParam(UNUM32 hMod, UNUM32 hCLL, PDU_PARAM_ITEM* item)
{
    return Answer("PDUSetComParam", hMod, hCLL, item);
}

T_PDU_ERROR PDUStartComPrimitive(UNUM32 hMod, UNUM32 hCLL, T_PDU_COPT type, UNUM32 size, UNUM8* data,
                                 PDU_COP_CTRL_DATA* control, void* tag, UNUM32* hCoP)
{
    return Answer("PDUStartComPrimitive", hMod, hCLL, type, size, data, control, tag, hCoP);
}

T_PDU_ERROR PDUCancelComPrimitive(UNUM32 hMod, UNUM32 hCLL, UNUM32 hCoP)
{
    return Answer("PDUCancelComPrimitive", hMod, hCLL, hCoP);
}

T_PDU_ERROR PDUGetEventItem(UNUM32 hMod, UNUM32 hCLL, PDU_EVENT_ITEM** item)
{
    return Answer("PDUGetEventItem", hMod, hCLL, item);
}

T_PDU_ERROR PDUDestroyItem(void* item)
{
    return Answer("PDUDestroyItem", item);
}

T_PDU_ERROR PDURegisterEventCallback(UNUM32 hMod, UNUM32 hCLL, CALLBACKFNC callback)
{
    return Answer("PDURegisterEventCallback", hMod, hCLL, callback);
}

T_PDU_ERROR PDUGetObjectId(T_PDU_OBJT type, CHAR8* name, UNUM32* id)
{
    return Answer("PDUGetObjectId", type, name, id);
}

T_PDU_ERROR PDUGetModuleIds(PDU_MODULE_ITEM** item)
{
    return Answer("PDUGetModuleIds", item);
}

T_PDU_ERROR PDUGetResourceIds(UNUM32 hMod, PDU_RSC_DATA* data, PDU_RSC_ID_ITEM** list)
{
    return Answer("PDUGetResourceIds", hMod, data, list);
}

T_PDU_ERROR PDUGetConflictingResources(UNUM32 resource, PDU_MODULE_ITEM* modules,
                                       PDU_RSC_CONFLICT_ITEM** conflicts)
{
    return Answer("PDUGetConflictingResources", resource, modules, conflicts);
}

T_PDU_ERROR PDUGetUniqueRespIdTable(UNUM32 hMod, UNUM32 hCLL, PDU_UNIQUE_RESP_ID_TABLE_ITEM** table)
{
    return Answer("PDUGetUniqueRespIdTable", hMod, hCLL, table);
}

T_PDU_ERROR PDUSetUniqueRespIdTable(UNUM32 hMod, UNUM32 hCLL, PDU_UNIQUE_RESP_ID_TABLE_ITEM* table)
{
    return Answer("PDUSetUniqueRespIdTable", hMod, hCLL, table);
}

T_PDU_ERROR PDUModuleConnect(UNUM32 hMod)
{
    return Answer("PDUModuleConnect", hMod);
}

T_PDU_ERROR PDUModuleDisconnect(UNUM32 hMod)
{
    return Answer("PDUModuleDisconnect", hMod);
}

T_PDU_ERROR PDUGetTimestamp(UNUM32 hMod, UNUM32* time)
{
#ifdef FAKE_NEEDS_OTHER
    *time = PDUFakeDependency();
#endif
    return Answer("PDUGetTimestamp", hMod, time);
}

#ifndef FAKE_LACKS_LOG_CALLBACK
T_PDU_ERROR PDU_MS_SetLogCallback(PDU_MS_LOG_CALLBACK callback)
{
    return Answer("PDU_MS_SetLogCallback", callback);
}
#endif
