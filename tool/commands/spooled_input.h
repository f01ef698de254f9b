// Standard input for commands that read their log more than once.
#pragma once

#include <optional>
#include <vector>

#include "tool/commands/console.h"
#include "tool/read/log_files.h"
#include "tool/setup/private_folder.h"

namespace marvane::tool {

/// Copies standard input, if it is among the files, to a temporary file that stands in its place from then
/// on, unpacked. The file is readable by its owner alone and goes with this object.
class SpooledInput
{
public:
    /// Throws Trouble if the temporary file can't be written.
    SpooledInput(std::vector<read::LogFile>& files, Console& console);

private:
    std::optional<PrivateFolder> folder_;
};

} // namespace marvane::tool
