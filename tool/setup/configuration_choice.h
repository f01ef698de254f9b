// The configuration that a command works on: that of an entry, a file, or the one beside the command.
#pragma once

#include <string>
#include <vector>

namespace marvane::tool {

/// Path of the configuration beside the copy of Marvane that an entry leads to. Throws Trouble if there is no
/// such entry, or if it does not lead to Marvane.
std::string ConfigurationOfEntry(const std::vector<std::string>& roots, const std::string& name);

} // namespace marvane::tool
