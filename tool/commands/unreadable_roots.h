// Root description files that can't be read.
#pragma once

#include <vector>

#include "tool/console/console.h"
#include "tool/setup/root_sources.h"

namespace marvane::tool {

/// Complains about each file that can't be read: the command ends with status 2, whatever it shows of the
/// others.
void ComplainOfUnreadable(const std::vector<ReadRoot>& roots, Console& console);

} // namespace marvane::tool
