// A D-PDU API library, loaded by path.
#pragma once

#include <stdexcept>
#include <string>

#include "pdu/pdu_api.h"

namespace diag {

/// What went wrong, in words for the user.
struct Failure : std::runtime_error
{
    using std::runtime_error::runtime_error;
};

/// The functions of a loaded library that this application uses. All are there.
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

/// Loads a library and looks its functions up. Throws Failure with the reason if it can't be loaded or lacks
/// one.
Api LoadApi(const std::string& path);

/// Name of a status that an application meets often, else its number.
std::string StatusName(T_PDU_ERROR status);

// One source a system.

/// Loads a library; null and the system's text on failure.
void* OpenLibrary(const std::string& path, std::string& error);
/// Address of a function, or null.
void* FunctionAddress(void* library, const char* name);

} // namespace diag
