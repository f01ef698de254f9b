// Where a folder is stored.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace marvane::platform {

/// Whether an existing folder is on another machine: on a mapped drive or a network share, or on Linux on a
/// file system that is mounted over the network. False where the system does not say. The path is UTF-8 on
/// Windows.
bool IsOnNetwork(const std::string& folder);

/// Bytes that this user may still write to an existing folder; none where the system does not say.
std::optional<std::uintmax_t> FreeBytes(const std::string& folder);

} // namespace marvane::platform
