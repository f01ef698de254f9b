// The target library, the real D-PDU API implementation: loading it, and the table of its functions.
#pragma once

#include <atomic>
#include <string>

#include "pdu/functions.h"
#include "platform/library.h"

namespace marvane {

/// The functions of the target library. A function that the library lacks is null; only PDU_MS_SetLogCallback
/// is ever tested for that; a call of another null one faults.
struct CPduDll : FunctionTable
{
    /// Looks up the functions of a loaded library.
    explicit CPduDll(platform::Library library);
};

extern std::atomic<const CPduDll*> LoadedFunctions;

/// The functions of the loaded target library, or null while there is none. Safe on any thread; what it
/// returns may be used inside a platform::InFlight that began before.
inline const CPduDll* TargetLibrary()
{
    return LoadedFunctions.load(std::memory_order_acquire);
}

/// Loads the library at TargetLibraryPath and publishes its functions. Throws std::runtime_error with the
/// path and the system's message if it can't be loaded.
void LoadTargetLibrary();

/// Withdraws the functions and unloads the target library. Calls and event callbacks of other threads that
/// have begun (platform::InFlight) delay the unloading until they have returned, at most `milliseconds`. The
/// calling thread never waits for itself: if it is inside another call, the library stays loaded.
void UnloadTargetLibrary(int milliseconds = 100);

} // namespace marvane
