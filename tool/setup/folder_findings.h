// CheckFindings about the log folder.
#pragma once

#include <string>

#include "tool/setup/finding.h"

namespace marvane::tool {

struct FolderCheck
{
    CheckFindings All;
    bool IsUsable = false; ///< it exists or can be made, and files can be created in it
};

/// Checks a log folder without making it. `line` is that of LogFileDir.
FolderCheck CheckLogFolder(const std::string& folder, std::size_t line);

} // namespace marvane::tool
