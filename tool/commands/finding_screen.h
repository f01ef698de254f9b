// Findings on the screen.
#pragma once

#include <string>

#include "tool/console/console.h"
#include "tool/setup/finding.h"

namespace marvane::tool {

/// The lines of a finding, the mark of an error or a warning in its colour.
std::string ColouredFinding(const Console& console, const CheckFinding& finding);

} // namespace marvane::tool
