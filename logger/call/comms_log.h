// The comms reports of a target library that offers them.
#pragma once

#include "pdu/pdu_api.h"

namespace marvane {

/// Writes one report of the target library to the comms log as a block of lines. Always returns 0. Runs on
/// threads of the target library.
UNUM32 CommsLogCallback(const CHAR8* text, UNUM8 direction, UNUM32 protocol, UNUM32 count,
                        const LogParameter* parameters);

} // namespace marvane
