// Works out where the target library is, and reads the version of a library.
#pragma once

#include <string>

#include "logger/log/phase_text.h"
#include "logger/state/CConfigData.h"

namespace marvane {

/// Works TargetLibraryPath out from the configuration and logs it. False if the folder of this library is
/// needed and not known.
bool GetLibPath(PhaseText& text, const CConfigData& config);

/// Reads the product version of a file into a version text. False if there is none, or while nothing is
/// logged; a text that is already there then keeps its tail behind the fallback's eight characters.
bool ReadVersionText(const std::string& file, std::string& versionText);

} // namespace marvane
