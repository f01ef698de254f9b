// The configuration that a command works on: that of an entry, a file, or the one beside the command.
#pragma once

#include <string>
#include <vector>

namespace marvane::tool {

/// Paths of the configurations beside the copies of Marvane that the entries of a name lead to: the root
/// description files of both widths may have one each. Without such an entry the one that was installed for
/// it below `to` (empty: the default folders) and is no longer used. Throws Trouble if there is neither.
std::vector<std::string> ConfigurationsOfEntry(const std::vector<std::string>& roots, const std::string& name,
                                               const std::string& to = {});

} // namespace marvane::tool
