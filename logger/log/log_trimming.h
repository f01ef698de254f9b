// Trimming of old log files.
#pragma once

#include <string>

#include "line/file_names.h"

namespace marvane {

/// Erases the surplus files of a family from LogDirectory: LogFileMaxNum plus one stay, those whose names
/// sort highest as text. With LogFileMaxNum 0 `soleFile` gets the name of the one that stays, to be appended
/// to; else, or if there is none, it is left empty.
void TrimLogFiles(LogFamily family, std::string& soleFile);

} // namespace marvane
