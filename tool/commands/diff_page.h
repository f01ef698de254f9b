// The page that marvane diff shows.
#pragma once

#include <string>

#include "tool/commands/run_difference.h"
#include "tool/console/console.h"

namespace marvane::tool {

void WriteDiffPage(const Run& first, const Run& second, const RunDifference& difference,
                   const std::string& firstName, const std::string& secondName, Console& console);

} // namespace marvane::tool
