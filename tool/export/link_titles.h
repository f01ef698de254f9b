// What a link is called in other programs.
#pragma once

#include <string>

#include "tool/read/links.h"

namespace marvane::tool {

/// "hMod 1 hCLL 1", with the session if it is not the first; what has no link is named by its module or
/// "API".
std::string LinkTitle(const read::Link& link);

/// "ISO_15765_3_on_ISO_15765_2, pins 6/14"
std::string LinkDescription(const read::Link& link);

} // namespace marvane::tool
