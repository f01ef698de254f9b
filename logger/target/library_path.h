// Where the target library lies, and the versions of this library and of that one. The texts are guarded by
// LogMutex; only the start of the logger writes them.
#pragma once

#include <string>

#include "logger/log/log_buffer.h"
#include "logger/state/CConfigData.h"

namespace marvane {

/// Full path of the target library, at most 260 characters; kept from one start to the next.
extern std::string& TargetLibraryPath;

/// "R%02d.%03d.%04d.%04d" of the product version, or what stands for a version that was not read.
extern std::string& LoggerVersionText;
extern std::string& TargetVersionText;

/// Works TargetLibraryPath out from the configuration and logs it. False if the folder of this library is
/// needed and not known.
bool GetLibPath(LogBuffer& text, const FrameTime& time, const CConfigData& config);

/// Reads the product version of a file into a version text. False if there is none, or while nothing is
/// logged; a text that is already there then keeps its tail behind the fallback's eight characters.
bool ReadVersionText(const std::string& file, std::string& versionText);

} // namespace marvane
