// Comms reports: what a target library with PDU_MS_SetLogCallback tells of its traffic.
#pragma once

#include "pdu/pdu_api.h"

namespace marvane {

/// Writes one report of the target library to the comms log as a block of lines. `direction` 0 is received,
/// any other sent. Always returns 0. Called on threads of the target library.
UNUM32 PDU_CALL CommsLogCallback(const CHAR8* text, UNUM8 direction, UNUM32 protocol, UNUM32 count,
                                 const LogParameter* parameters);

} // namespace marvane
