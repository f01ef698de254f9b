// Where a folder is stored.
#pragma once

#include <string>

namespace marvane::platform {

/// Whether an existing folder is on another machine: on a mapped drive or a network share, or on Linux on a
/// file system that is mounted over the network. False where the system does not say. The path is UTF-8 on
/// Windows.
bool IsOnNetwork(const std::string& folder);

} // namespace marvane::platform
