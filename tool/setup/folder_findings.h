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

/// What the system says about an existing folder.
struct FolderFacts
{
    std::optional<std::uintmax_t> FreeBytes; ///< that this user can still write; none if it does not say
    bool IsOnNetwork = false;
};

FolderFacts FactsOfFolder(const std::string& folder);

/// Checks a log folder without making it. `line` is that of LogFileDir. `factsOf` is asked about the folder,
/// or the nearest one above it that exists.
FolderCheck CheckLogFolder(const std::string& folder, std::size_t line,
                           const std::function<FolderFacts(const std::string&)>& factsOf = FactsOfFolder);

} // namespace marvane::tool
