#include "logger/target/target_library.h"

#include <memory>
#include <stdexcept>
#include <vector>

#include "logger/base/lasting.h"
#include "logger/diagnostics/CMutexWindows.h"
#include "logger/state/at_unloading.h"
#include "logger/state/process_texts.h"
#include "platform/in_flight.h"

namespace marvane {

std::atomic<const CPduDll*> LoadedFunctions = nullptr;

namespace {

std::atomic<platform::Library> TargetLibraryHandle = nullptr;

/// Tables that a thread inside a call may still read, kept until this library is unloaded. Guarded by
/// LogMutex.
constinit Lasting<std::vector<std::unique_ptr<const CPduDll>>> WithdrawnTables;
const bool WithdrawnTablesMade = (WithdrawnTables.Make(), true);
const AtUnloading FreeWithdrawnTables([] { WithdrawnTables.Empty(); });

void KeepTable(std::unique_ptr<const CPduDll> table)
{
    LogMutexHold hold;
    WithdrawnTables.Get().push_back(std::move(table));
}

} // namespace

CPduDll::CPduDll(platform::Library library)
{
    FillFunctionTable(*this, [library](const char* name) { return platform::FindFunction(library, name); });
}

void LoadTargetLibrary()
{
    const std::string path = CopyGuarded(TargetLibraryPath);
    const platform::LoadedLibrary library = platform::LoadTargetLibrary(path);
    if (!library.Handle)
        throw std::runtime_error("Unable to load " + path + "\n\t\t\t\t\tDescription:- " + library.Error);
    auto functions = std::make_unique<CPduDll>(library.Handle);
    const CPduDll* none = nullptr;
    if (!LoadedFunctions.compare_exchange_strong(none, functions.get(), std::memory_order_acq_rel)) {
        // Another thread was faster: its table stays.
        platform::UnloadLibrary(library.Handle);
        return;
    }
    static_cast<void>(functions.release()); // LoadedFunctions owns it now.
    TargetLibraryHandle = library.Handle;
}

void UnloadTargetLibrary(int milliseconds)
{
    // Withdrawn first: from here on no call begins that could meet a library that is gone.
    std::unique_ptr<const CPduDll> functions(LoadedFunctions.exchange(nullptr));
    const platform::Library library = TargetLibraryHandle.exchange(nullptr);
    if (!functions)
        return;
    const bool othersLeft = platform::WaitForOthersToLeave(milliseconds);
    // In a callback from inside a call, this thread itself returns into the library later.
    constexpr std::uint32_t ownCall = 1;
    const bool selfInside = platform::OwnDepth() > ownCall;
    if (!selfInside)
        platform::UnloadLibrary(library);
    if (!othersLeft || selfInside)
        KeepTable(std::move(functions));
}

} // namespace marvane
