// Start and end of the logger.
#pragma once

namespace marvane {

/// Starts the logger: diagnostic log, configuration, settings, log file, target library. Called by every
/// PDUConstruct; what is running already stays. Returns 1 if it stopped before the target library, else 0.
int LOGGER_Initialise();

/// Unloads the target library and closes the diagnostic log; settings and log file stay. Returns 1 if the
/// logger was not running, else 0.
int LOGGER_Uninitialise();

} // namespace marvane
