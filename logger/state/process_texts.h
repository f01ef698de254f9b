// Strings of the whole process that outlast one start of the logger. Guarded by LogMutex; only the start of
// the logger writes them. They are usable to the end of the process and freed if the library is unloaded.
#pragma once

#include <string>

namespace marvane {

/// Folder of the log files, at most 260 characters; stored for reopening.
extern std::string& LogDirectory;

/// Full path of the target library, at most 260 characters.
extern std::string& TargetLibraryPath;

/// "R%02d.%03d.%04d.%04d" of the product version, or the fallback for a version that was not read.
extern std::string& LoggerVersionText;
extern std::string& TargetVersionText;

} // namespace marvane
