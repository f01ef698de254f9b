// Routes events from the target library to the application's callbacks.
#pragma once

#include "pdu/pdu_api.h"

namespace marvane {

/// Stores the callback (null: none) of a link, a module (hCLL undefined) or the whole API (both undefined),
/// until it is replaced; that of the whole API at most until the next start of the logger. Safe on any
/// thread.
void RememberEventCallback(UNUM32 hMod, UNUM32 hCLL, CALLBACKFNC callback);

/// The callback that the target library gets instead of the application's. Finds the callback of the link,
/// else of the module, else of the API, logs the event and calls it. Called on threads of the target library.
void PDU_CALL PDUCallbackTrap(T_PDU_EVT_DATA eventType, UNUM32 hMod, UNUM32 hCLL, void* pCLLTag,
                              void* pAPITag);

} // namespace marvane
