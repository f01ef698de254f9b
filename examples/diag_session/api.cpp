#include "examples/diag_session/api.h"

#include <cstdio>

namespace diag {

Api LoadApi(const std::string& path)
{
    std::string error;
    void* const library = OpenLibrary(path, error);
    if (!library)
        throw Failure("cannot load " + path + ": " + error);
    const auto find = [&](const char* name, auto& function) {
        void* const address = FunctionAddress(library, name);
        if (!address)
            throw Failure(path + " has no function " + name + ": is it a D-PDU API library?");
        function = reinterpret_cast<std::remove_reference_t<decltype(function)>>(address);
    };
    Api api = {};
    find("PDUConstruct", api.Construct);
    find("PDUDestruct", api.Destruct);
    find("PDUGetModuleIds", api.GetModuleIds);
    find("PDUModuleConnect", api.ModuleConnect);
    find("PDUModuleDisconnect", api.ModuleDisconnect);
    find("PDUGetVersion", api.GetVersion);
    find("PDUGetStatus", api.GetStatus);
    find("PDUGetLastError", api.GetLastError);
    find("PDUGetTimestamp", api.GetTimestamp);
    find("PDUGetObjectId", api.GetObjectId);
    find("PDUGetResourceIds", api.GetResourceIds);
    find("PDUGetResourceStatus", api.GetResourceStatus);
    find("PDUGetConflictingResources", api.GetConflictingResources);
    find("PDUCreateComLogicalLink", api.CreateComLogicalLink);
    find("PDUDestroyComLogicalLink", api.DestroyComLogicalLink);
    find("PDUConnect", api.Connect);
    find("PDUDisconnect", api.Disconnect);
    find("PDULockResource", api.LockResource);
    find("PDUUnlockResource", api.UnlockResource);
    find("PDUGetComParam", api.GetComParam);
    find("PDUSetComParam", api.SetComParam);
    find("PDUGetUniqueRespIdTable", api.GetUniqueRespIdTable);
    find("PDUSetUniqueRespIdTable", api.SetUniqueRespIdTable);
    find("PDUStartComPrimitive", api.StartComPrimitive);
    find("PDUCancelComPrimitive", api.CancelComPrimitive);
    find("PDUGetEventItem", api.GetEventItem);
    find("PDUDestroyItem", api.DestroyItem);
    find("PDURegisterEventCallback", api.RegisterEventCallback);
    find("PDUIoCtl", api.IoCtl);
    return api;
}

std::string StatusName(T_PDU_ERROR status)
{
    switch (status) {
    case PDU_STATUS_NOERROR:
        return "PDU_STATUS_NOERROR";
    case PDU_ERR_FCT_FAILED:
        return "PDU_ERR_FCT_FAILED";
    case PDU_ERR_PDUAPI_NOT_CONSTRUCTED:
        return "PDU_ERR_PDUAPI_NOT_CONSTRUCTED";
    case PDU_ERR_SHARING_VIOLATION:
        return "PDU_ERR_SHARING_VIOLATION";
    case PDU_ERR_INVALID_PARAMETERS:
        return "PDU_ERR_INVALID_PARAMETERS";
    case PDU_ERR_INVALID_HANDLE:
        return "PDU_ERR_INVALID_HANDLE";
    case PDU_ERR_ID_NOT_SUPPORTED:
        return "PDU_ERR_ID_NOT_SUPPORTED";
    case PDU_ERR_COMPARAM_NOT_SUPPORTED:
        return "PDU_ERR_COMPARAM_NOT_SUPPORTED";
    case PDU_ERR_EVENT_QUEUE_EMPTY:
        return "PDU_ERR_EVENT_QUEUE_EMPTY";
    case PDU_ERR_CLL_CONNECTED:
        return "PDU_ERR_CLL_CONNECTED";
    case PDU_ERR_CLL_NOT_CONNECTED:
        return "PDU_ERR_CLL_NOT_CONNECTED";
    case PDU_ERR_CLL_NOT_STARTED:
        return "PDU_ERR_CLL_NOT_STARTED";
    case PDU_ERR_RSC_LOCKED_BY_OTHER_CLL:
        return "PDU_ERR_RSC_LOCKED_BY_OTHER_CLL";
    case PDU_ERR_MODULE_NOT_CONNECTED:
        return "PDU_ERR_MODULE_NOT_CONNECTED";
    default:
        char number[16];
        std::snprintf(number, sizeof number, "0x%04X", static_cast<unsigned>(status));
        return number;
    }
}

} // namespace diag
