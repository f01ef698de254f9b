// The program as a whole: from the words of the command line to the exit status.
#pragma once

#include <string>
#include <vector>

namespace marvane::tool {

inline constexpr int ExitTrouble = 2;

/// Runs the command that the words name (without the program's own name). Never throws; messages go to
/// standard error.
int RunProgram(const std::vector<std::string>& words);

} // namespace marvane::tool
