// Commands to the module and its links.
#pragma once

#include "examples/diag_session/session.h"

namespace diag {

/// A command with an input, or with a null one, and no output.
void Command(Session& session, const char* command, UNUM32 hCLL, T_PDU_IT type, void* data);

/// The output of a command without an input; the caller destroys it.
PDU_DATA_ITEM* Output(Session& session, const char* command, UNUM32 hCLL);

/// The number that a command without an input gives.
UNUM32 ReadNumber(Session& session, const char* command);

} // namespace diag
