// CheckFindings about the log folder.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "tool/setup/finding.h"

namespace marvane::tool {

struct FolderCheck
{
    CheckFindings All;
    bool IsUsable = false; ///< it exists or can be made, and files can be created in it
};

/// Bytes that this user can still write in a folder that exists; none if the system does not say.
std::optional<std::uintmax_t> FreeBytes(const std::string& folder);

/// Checks a log folder without making it. `line` is that of LogFileDir.
FolderCheck
CheckLogFolder(const std::string& folder, std::size_t line,
               const std::function<std::optional<std::uintmax_t>(const std::string&)>& freeBytes = FreeBytes);

} // namespace marvane::tool
