// The comms reports of the simulated interface.
#pragma once

#include "examples/sim_vci/vci.h"

namespace sim {

/// Reports one message on the bus: its address and bytes. The caller must not hold a lock.
void ReportComms(PDU_MS_LOG_CALLBACK callback, const Report& report);

/// Reports that the interface has started, with a parameter of a kind that a logger may not support. The
/// caller must not hold a lock.
void ReportStart(PDU_MS_LOG_CALLBACK callback);

} // namespace sim
