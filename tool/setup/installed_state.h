// What has become of installed copies: whether the root description file still leads to them.
#pragma once

#include <string>
#include <vector>

#include "tool/setup/installed_copy.h"

namespace marvane::tool {

/// The copies below the folder of the copies (empty: the default ones) that were installed into these root
/// description files (none: into any).
std::vector<InstalledCopy> InstalledInto(const std::vector<std::string>& roots, const std::string& to);

/// Why the root description file no longer leads to a copy, in words; empty if it does.
std::string TroubleOf(const InstalledCopy& copy);

/// Path of the logger library, and of its configuration, of a copy.
std::string LibraryOfCopy(const InstalledCopy& copy);
std::string ConfigurationOfCopy(const InstalledCopy& copy);

} // namespace marvane::tool
