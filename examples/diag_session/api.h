// A D-PDU API library, loaded by path.
#pragma once

#include <stdexcept>
#include <string>

#include "pdu/pdu_api.h"

namespace diag {

/// An error with a message for the user.
struct Failure : std::runtime_error
{
    using std::runtime_error::runtime_error;
};

/// The functions of a loaded library. None is null.
struct Api
{
    decltype(&::PDUConstruct) Construct;
    decltype(&::PDUDestruct) Destruct;
    decltype(&::PDUGetModuleIds) GetModuleIds;
    decltype(&::PDUModuleConnect) ModuleConnect;
    decltype(&::PDUModuleDisconnect) ModuleDisconnect;
    decltype(&::PDUGetVersion) GetVersion;
    decltype(&::PDUGetStatus) GetStatus;
    decltype(&::PDUGetLastError) GetLastError;
    decltype(&::PDUGetTimestamp) GetTimestamp;
    decltype(&::PDUGetObjectId) GetObjectId;
    decltype(&::PDUGetResourceIds) GetResourceIds;
    decltype(&::PDUGetResourceStatus) GetResourceStatus;
    decltype(&::PDUGetConflictingResources) GetConflictingResources;
    decltype(&::PDUCreateComLogicalLink) CreateComLogicalLink;
    decltype(&::PDUDestroyComLogicalLink) DestroyComLogicalLink;
    decltype(&::PDUConnect) Connect;
    decltype(&::PDUDisconnect) Disconnect;
    decltype(&::PDULockResource) LockResource;
    decltype(&::PDUUnlockResource) UnlockResource;
    decltype(&::PDUGetComParam) GetComParam;
    decltype(&::PDUSetComParam) SetComParam;
    decltype(&::PDUGetUniqueRespIdTable) GetUniqueRespIdTable;
    decltype(&::PDUSetUniqueRespIdTable) SetUniqueRespIdTable;
    decltype(&::PDUStartComPrimitive) StartComPrimitive;
    decltype(&::PDUCancelComPrimitive) CancelComPrimitive;
    decltype(&::PDUGetEventItem) GetEventItem;
    decltype(&::PDUDestroyItem) DestroyItem;
    decltype(&::PDURegisterEventCallback) RegisterEventCallback;
    decltype(&::PDUIoCtl) IoCtl;
};

/// Loads a library and finds its functions. Throws Failure if it can't be loaded or lacks one. The library is
/// never unloaded.
Api LoadApi(const std::string& path);

/// Name of a common status, else its number in hexadecimal.
std::string StatusName(T_PDU_ERROR status);

// One source file per system.

/// Loads a library. On failure returns null and sets `error` to the system's message.
void* OpenLibrary(const std::string& path, std::string& error);
/// Address of a function, or null.
void* FunctionAddress(void* library, const char* name);

} // namespace diag
