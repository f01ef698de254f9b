// Where the target library is, and the version of a library file.
#pragma once

#include <string>

#include "logger/log/phase_text.h"
#include "logger/state/CConfigData.h"

namespace marvane {

/// Sets TargetLibraryPath by the configuration and adds the lines about it. False if the folder of this
/// library is needed and can't be found.
bool GetLibPath(PhaseText& text, const CConfigData& config);

/// Sets `versionText` to the product version of a file, under LogMutex. False if there is none (then only the
/// first eight characters become "<UNKNOWN", the rest of an older text stays), or while logging is off.
bool ReadVersionText(const std::string& file, std::string& versionText);

} // namespace marvane
