// What a command prints, compared with a file of the folder output/.
#pragma once

#include <string>

namespace marvane::testing {

/// Runs marvane with arguments in which "%LOGS%" is the folder of the logs (and stands for nothing that holds
/// a blank), and compares what it prints with output/NAME.txt; returns the exit status. With
/// MARVANE_WRITE_GOLDEN set to the folder of these files, it writes the file instead: read every changed
/// line.
int CompareOutput(const std::string& name, const std::string& arguments);

/// Compares a text with output/NAME.txt, or writes that file, as above.
void CompareText(const std::string& name, const std::string& text);

} // namespace marvane::testing
