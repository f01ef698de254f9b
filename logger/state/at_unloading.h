// What is freed when the library is unloaded.
#pragma once

#include "logger/diagnostics/CMutexWindows.h"
#include "logger/state/settings.h"

namespace marvane {

/// Runs an action, under LogMutex, when the library ends after PDUDestruct: an application that loads and
/// unloads it again and again must not lose memory each time. If the logger is still up then, the process is
/// exiting and its threads may still use what the action would free: it does not run.
template <class Action> class AtUnloading
{
public:
    // LogMutex first: static objects are destroyed in reverse order.
    explicit AtUnloading(Action action) : action_(action) { MakeLogMutex(); }
    ~AtUnloading()
    {
        LogMutexHold hold;
        if (!IsLoaded())
            action_();
    }
    AtUnloading(const AtUnloading&) = delete;
    AtUnloading& operator=(const AtUnloading&) = delete;

private:
    Action action_;
};

} // namespace marvane
