// The change of the log file when it has outgrown its limit.
#pragma once

#include <string_view>

#include "logger/log/log_files.h"
#include "logger/log/phase_text.h"
#include "logger/state/settings.h"

namespace marvane {

/// Changes the log file: a last line in the old one, a first line and a header in the new one. No other
/// thread writes meanwhile.
void ChangeLogFile(PhaseText& text, std::string_view name);

/// Changes the log file if both limits are set and it is larger than LogFileMaxSize. `name` is the function
/// after whose call this happens. Uses up the phase's text.
inline void CheckRotation(PhaseText& text, std::string_view name)
{
    const UNUM32 limit = Setting(NumericKey::LogFileMaxSize);
    if (limit != 0 && Setting(NumericKey::LogFileMaxNum) != 0 && GetLogFileSize() > limit)
        ChangeLogFile(text, name);
}

} // namespace marvane
