// What `marvane check` says about the entries of root description files.
#pragma once

#include <string>
#include <vector>

#include "tool/setup/check.h"

namespace marvane::tool {

/// Checks the entries of that name, or without one those that lead to Marvane or led to it. `rootFiles`:
/// those that are given; `to`: the folder of copies, empty for the usual one.
std::vector<CheckReport> CheckEntries(const std::vector<std::string>& rootFiles, const std::string& name,
                                      const std::string& to);

/// Warns of each entry that has its log folder in common with another: they mix their logs and delete each
/// other's.
void AddSharedFolders(std::vector<CheckReport>& reports, const std::vector<CheckReport>& others);

} // namespace marvane::tool
