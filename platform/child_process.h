// Other programs, started and waited for.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace marvane::platform {

struct ChildResult
{
    bool Started = false;
    bool Ended = false; ///< by itself; false if it crashed
    int Status = 0;     ///< exit status, or the signal or exception that ended it
    std::string Output; ///< what it wrote to standard output
};

/// Environment variables that a program gets in place of those of this process; without a value one is unset.
using EnvironmentChanges = std::vector<std::pair<std::string, std::optional<std::string>>>;

/// Runs a program, its path first in `words` (UTF-8 on Windows), without standard input, and waits for its
/// end.
ChildResult RunChild(const std::vector<std::string>& words, const EnvironmentChanges& changes = {});

/// Full path of the program of this process.
std::string ProgramPath();

} // namespace marvane::platform
