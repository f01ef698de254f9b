// The comms reports of the simulated interface.
#pragma once

#include "examples/sim_vci/vci.h"

namespace sim {

/// Reports one message on the bus: the address, and the bytes. The caller holds no lock.
void ReportComms(PDU_MS_LOG_CALLBACK callback, const Report& report);

/// Reports that the interface is up, with a parameter of a kind that loggers need not know.
void ReportStart(PDU_MS_LOG_CALLBACK callback);

} // namespace sim
