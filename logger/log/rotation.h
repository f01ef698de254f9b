// Rotation: the change to a new log file when the old one is larger than its limit.
#pragma once

#include <string_view>

#include "logger/log/log_files.h"
#include "logger/log/phase_text.h"
#include "logger/state/settings.h"

namespace marvane {

/// Changes the log file: writes a last line to the old one, and a first line and a header to the new one.
/// Holds LogMutex, so that no other thread writes in between. Overwrites `text`.
void ChangeLogFile(PhaseText& text, std::string_view name);

/// Opens the new file of a change in which that failed. If it fails again, the next check tries it again.
/// Overwrites `text`.
void FinishChange(PhaseText& text, std::string_view name);

/// Changes the log file if both limits are set and it is larger than LogFileMaxSize. `name` is the function
/// after whose call this happens. Overwrites `text` then. Where the last change found no file to open, tries
/// that again.
inline void CheckRotation(PhaseText& text, std::string_view name)
{
    if (ReopeningFailed.load(std::memory_order_relaxed))
        return FinishChange(text, name);
    const UNUM32 limit = Setting(NumericKey::LogFileMaxSize);
    if (limit != 0 && Setting(NumericKey::LogFileMaxNum) != 0 && GetLogFileSize() > limit)
        ChangeLogFile(text, name);
}

} // namespace marvane
