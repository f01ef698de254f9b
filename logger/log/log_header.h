// The header of a log file: which version wrote it, and under which settings.
#pragma once

#include <string>

#include "logger/log/phase_text.h"

namespace marvane {

/// Adds the lines of the header: versions and settings. Until the logger has started it ends after the
/// settings. Takes LogMutex for the strings.
void LogHeader(PhaseText& text);

/// Adds the line that shows the folder of the log files.
void LogLogFileDir(PhaseText& text, const std::string& directory);

} // namespace marvane
