// The real D-PDU API implementation: loading it, and the table of its functions.
#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <string>

#include "pdu/pdu_api.h"
#include "platform/library.h"

namespace marvane {

/// The functions of the target library, one member for each slot, in the order of the slots. A function that
/// the library lacks stays null; only PDU_MS_SetLogCallback is ever tested for that.
struct CPduDll
{
    decltype(&::PDUModuleConnect) PDUModuleConnect = nullptr;
    decltype(&::PDUModuleDisconnect) PDUModuleDisconnect = nullptr;
    decltype(&::PDUGetTimestamp) PDUGetTimestamp = nullptr;
    decltype(&::PDUIoCtl) PDUIoCtl = nullptr;
    decltype(&::PDUGetVersion) PDUGetVersion = nullptr;
    decltype(&::PDUGetStatus) PDUGetStatus = nullptr;
    decltype(&::PDUGetLastError) PDUGetLastError = nullptr;
    decltype(&::PDUGetResourceStatus) PDUGetResourceStatus = nullptr;
    decltype(&::PDUCreateComLogicalLink) PDUCreateComLogicalLink = nullptr;
    decltype(&::PDUDestroyComLogicalLink) PDUDestroyComLogicalLink = nullptr;
    decltype(&::PDUConnect) PDUConnect = nullptr;
    decltype(&::PDUDisconnect) PDUDisconnect = nullptr;
    decltype(&::PDULockResource) PDULockResource = nullptr;
    decltype(&::PDUUnlockResource) PDUUnlockResource = nullptr;
    decltype(&::PDUGetComParam) PDUGetComParam = nullptr;
    decltype(&::PDUSetComParam) PDUSetComParam = nullptr;
    decltype(&::PDUStartComPrimitive) PDUStartComPrimitive = nullptr;
    decltype(&::PDUCancelComPrimitive) PDUCancelComPrimitive = nullptr;
    decltype(&::PDUGetEventItem) PDUGetEventItem = nullptr;
    decltype(&::PDUDestroyItem) PDUDestroyItem = nullptr;
    decltype(&::PDURegisterEventCallback) PDURegisterEventCallback = nullptr;
    decltype(&::PDUGetObjectId) PDUGetObjectId = nullptr;
    decltype(&::PDUGetModuleIds) PDUGetModuleIds = nullptr;
    decltype(&::PDUGetResourceIds) PDUGetResourceIds = nullptr;
    decltype(&::PDUGetConflictingResources) PDUGetConflictingResources = nullptr;
    decltype(&::PDUGetUniqueRespIdTable) PDUGetUniqueRespIdTable = nullptr;
    decltype(&::PDUSetUniqueRespIdTable) PDUSetUniqueRespIdTable = nullptr;
    PDU_MS_SetLogCallback_t PDU_MS_SetLogCallback = nullptr;
    decltype(&::PDUConstruct) PDUConstruct = nullptr;
    decltype(&::PDUDestruct) PDUDestruct = nullptr;

    /// Looks the functions of a loaded library up.
    explicit CPduDll(platform::Library library);
};

extern std::atomic<const CPduDll*> LoadedFunctions;

/// The functions in effect, or null while no target library is loaded. Safe on any thread; what it returns
/// may be used inside a platform::InFlight that began before.
inline const CPduDll* TargetLibrary()
{
    return LoadedFunctions.load(std::memory_order_acquire);
}

/// Loads the library at TargetLibraryPath and puts its functions in force. Throws std::runtime_error with the
/// path and the system's text if it can't be loaded.
void LoadTargetLibrary();

/// Withdraws the functions and unloads the target library. Calls and event callbacks of other threads that
/// have begun (platform::InFlight) delay the unloading until they have returned, at most `milliseconds`. The
/// calling thread never waits for itself: if it is inside another call, the library stays loaded.
void UnloadTargetLibrary(int milliseconds = 100);

} // namespace marvane
