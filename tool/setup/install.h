// Putting the logger library in front of the libraries of a root description file, and taking it away again.
#pragma once

#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "tool/setup/configuration_text.h"
#include "tool/setup/installed_copy.h"

namespace marvane::tool {

/// A reason not to begin, or a failure after which everything was taken back.
class InstallRefused : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

struct InstallOptions
{
    std::vector<std::string> Roots;
    std::string Name; ///< of the entry; empty: all
    std::string To;   ///< folder of the copies; empty: the default
    std::string From; ///< folder of the libraries to copy; empty: where they are delivered
    std::optional<std::string> LogFolder;
    NewConfiguration Configuration;
    bool DryRun = false;
    bool Loads = true; ///< tries the new chain; off where a test has a chain that can't load
};

/// Installs and returns the report of what was done (or, dry, would be). Throws InstallRefused; nothing is
/// changed then.
std::string Install(const InstallOptions& options);

struct UninstallOptions
{
    std::vector<std::string> Roots; ///< only what was installed into these; empty: all
    std::string Name;               ///< of the entry; empty: all
    std::string To;
    bool Logs = false; ///< deletes the logs too
    bool DryRun = false;
};

/// Removes and returns the report. Throws InstallRefused.
std::string Uninstall(const UninstallOptions& options);

/// The folders that `To` or its absence stands for.
std::vector<std::string> CopyFolders(const std::string& to);

} // namespace marvane::tool
