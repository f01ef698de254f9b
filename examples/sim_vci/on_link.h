// What the exported functions about a link share.
#pragma once

#include "examples/sim_vci/vci.h"

namespace sim {

/// Runs an action on a link under the lock; the action returns the status.
template <class Action> T_PDU_ERROR OnLink(UNUM32 hMod, UNUM32 hCLL, Action action)
{
    const std::lock_guard hold(Interface.Mutex);
    Link* const link = Interface.FindLink(hMod, hCLL);
    return link ? action(*link) : PDU_ERR_INVALID_HANDLE;
}

} // namespace sim
