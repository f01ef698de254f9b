// Trimming of old log files.
#pragma once

#include <string>

#include "line/file_names.h"

namespace marvane {

/// Deletes the surplus files of a family from LogDirectory: LogFileMaxNum plus one remain, those whose names
/// sort last as text. With LogFileMaxNum 0 `soleFile` becomes the name of the one that remains, to be
/// appended to; else, or if there is none, it becomes empty. Errors are ignored.
void TrimLogFiles(LogFamily family, std::string& soleFile);

} // namespace marvane
