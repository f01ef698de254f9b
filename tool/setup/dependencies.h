// The libraries that a library needs, found one by one.
#pragma once

#include <string>
#include <vector>

#include "tool/setup/library_look.h"

namespace marvane::tool {

/// The names of needed libraries that are nowhere the system searches: beside the library, in its search
/// paths, in the system's folders, on the path. Names of the system that stand for no file are left out.
std::vector<std::string> MissingDependencies(const LibraryLook& look);

} // namespace marvane::tool
