// The logger libraries that are delivered with the command, and where they are.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tool/setup/binary_file.h"

namespace marvane::tool {

/// The folders that deliver a logger library of a machine type, in the order in which they are tried.
std::vector<std::string> DeliveredFolders(const std::string& from, Machine machine);

/// Bytes of the logger library of a machine type, from where it is delivered: `from`, else beside the
/// command.
std::optional<std::string> DeliveredLibrary(const std::string& from, Machine machine);

} // namespace marvane::tool
