// Where logs are looked for if the command line names none.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tool/setup/installed_copy.h"

namespace marvane::tool {

/// The log folder of the configuration that the logger library would read here: the file that PDU_CFG_FILE
/// names, else the one beside the command. With `entry`, or if there is no such configuration, that of an
/// installed entry: without `entry` the one with the newest log. `roots` replace the root description files
/// of the machine. UTF-8. Throws Trouble that says what was looked for.
std::string DefaultLogFolder(const std::optional<std::string>& entry,
                             const std::vector<std::string>& roots = {});

/// The log folder of the installed copy whose newest log is the newest of all; none if there is no log.
std::optional<std::string> NewestLogFolder(const std::vector<InstalledCopy>& copies);

/// The value of LogFileDir in a configuration file, expanded; none if it has no such value or can't be read.
std::optional<std::string> LogFolderOf(const std::string& configuration);

} // namespace marvane::tool
