// The way of an event from the target library to the application.
#pragma once

#include "pdu/pdu_api.h"

namespace marvane {

/// Remembers a callback (null: none) for the whole API, a module or a link, as the handles say. Lasts until
/// it is overwritten; that for the whole API at most until the next start of the logger.
void RememberEventCallback(UNUM32 hMod, UNUM32 hCLL, CALLBACKFNC callback);

/// The function that the target library gets in place of the application's. Finds the link's, the module's
/// or the API's callback, logs the event and passes it on. Runs on threads of the target library.
void PDUCallbackTrap(T_PDU_EVT_DATA eventType, UNUM32 hMod, UNUM32 hCLL, void* pCLLTag, void* pAPITag);

} // namespace marvane
