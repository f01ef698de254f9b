// Commands (IoCtls) to the module and its links.
#pragma once

#include "examples/diag_session/session.h"

namespace diag {

/// Sends a command that has no output; a null `data` sends no input item. Throws Failure if it fails.
void Command(Session& session, const char* command, UNUM32 hCLL, T_PDU_IT type, void* data);

/// Sends a command without input and returns its output, which the caller destroys. Throws Failure if it
/// fails.
PDU_DATA_ITEM* Output(Session& session, const char* command, UNUM32 hCLL);

/// Sends a command without input whose output is a number. Throws Failure if it fails.
UNUM32 ReadNumber(Session& session, const char* command);

} // namespace diag
