// The header of a log file: which version wrote it, and under which settings.
#pragma once

#include <string>

#include "logger/log/phase_text.h"

namespace marvane {

/// Appends the header's lines to the buffer; writes nothing. Before the logger is up the header ends behind
/// the settings.
void LogHeader(PhaseText& text);

/// Appends the line that shows the folder of the log files.
void LogLogFileDir(PhaseText& text, const std::string& directory);

} // namespace marvane
