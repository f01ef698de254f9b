// Shared by the exported functions of a link.
#pragma once

#include "examples/sim_vci/vci.h"

namespace sim {

/// Runs an action on a link while holding the interface's mutex. Returns the action's status, or
/// PDU_ERR_INVALID_HANDLE if there is no such link.
template <class Action> T_PDU_ERROR OnLink(UNUM32 hMod, UNUM32 hCLL, Action action)
{
    const std::lock_guard hold(Interface.Mutex);
    Link* const link = Interface.FindLink(hMod, hCLL);
    return link ? action(*link) : PDU_ERR_INVALID_HANDLE;
}

} // namespace sim
