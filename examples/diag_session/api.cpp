#include "examples/diag_session/api.h"

#include <algorithm>
#include <cstdio>

namespace diag {

Api LoadApi(const std::string& path)
{
    std::string error;
    void* const library = OpenLibrary(path, error);
    if (!library)
        throw Failure("cannot load " + path + ": " + error);
    const auto fail = [&](const char* name) {
        throw Failure(path + " has no function " + name + ": is it a D-PDU API library?");
    };
    // The function that every application calls first is the one to name for a file that is no such library.
    if (!FunctionAddress(library, "PDUConstruct"))
        fail("PDUConstruct");
    Api api;
    marvane::FillFunctionTable(api, [&](const char* name) {
        void* const address = FunctionAddress(library, name);
        const auto& names = marvane::FunctionNames;
        if (!address && std::find(names.begin(), names.end(), name) != names.end())
            fail(name);
        return address;
    });
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
