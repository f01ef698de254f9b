// Start and end of the logger.
#pragma once

namespace marvane {

/// Brings the logger up: diagnostic log, configuration, settings, log file, target library. Runs at every
/// PDUConstruct; what is up already stays. Returns 1 if it stopped ahead of the target library, else 0.
int LOGGER_Initialise();

/// Takes the target library and the diagnostic log down; settings and log file stay. Returns 1 if the logger
/// was not up, else 0.
int LOGGER_Uninitialise();

} // namespace marvane
