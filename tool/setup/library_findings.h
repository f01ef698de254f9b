// CheckFindings about the target library: is it there, is it the right kind, does it load.
#pragma once

#include <string>

#include "tool/setup/finding.h"
#include "tool/setup/library_look.h"

namespace marvane::tool {

struct LibraryCheck
{
    CheckFindings All;
    bool IsUsable = false;       ///< it can be loaded
    bool LacksFunctions = false; ///< a call of one of them ends the application
};

/// Checks a target library for a logger library of a machine type.
LibraryCheck CheckTarget(const std::string& path, Machine wanted);

/// Loads a library in a process of its own and returns the system's reason if that fails; empty if it loads.
/// None if there is no program of that machine type to do it.
std::optional<std::string> TryLoading(const std::string& path, Machine machine);

/// What the helper process does: loads the library and writes the reason of a failure. Exit status 0 if it
/// loads.
inline constexpr const char* LoadHelperName = "load-library";

} // namespace marvane::tool
