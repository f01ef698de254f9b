// Standard input for commands that read their log more than once.
#pragma once

#include <vector>

#include "tool/console/console.h"
#include "tool/read/log_files.h"

namespace marvane::tool {

/// Copies standard input, if it is among the files, unpacked to a temporary file that is read in its place
/// from then on and belongs to the LogFile. Throws Trouble if that can't be written.
void SpoolInput(std::vector<read::LogFile>& files, Console& console);

} // namespace marvane::tool
