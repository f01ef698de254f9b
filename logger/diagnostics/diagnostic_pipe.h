// The file that the diagnostic log goes to while the logger is up.
#pragma once

namespace marvane {

/// Opens the file anew, truncated, and sends the diagnostic log there. If it can't be opened, the log is
/// not redirected.
void OpenDiagnosticPipe();

/// Sends the diagnostic log back to its init log and closes the file.
void CloseDiagnosticPipe();

} // namespace marvane
