// The configuration that a command works on: that of an entry, a file, or the one beside the command.
#pragma once

#include <string>
#include <vector>

namespace marvane::tool {

/// Path of the configuration beside the copy of Marvane that an entry leads to, or that was installed for it
/// below `to` (empty: the default folders) and is no longer used. Throws Trouble if there is neither.
std::string ConfigurationOfEntry(const std::vector<std::string>& roots, const std::string& name,
                                 const std::string& to = {});

} // namespace marvane::tool
