// The system's own appending of lines to a file, with nothing of the library in between.
#pragma once

#include <filesystem>
#include <string_view>

namespace marvane::testing {

/// Appends a line `count` times, each by one write. The file may be open in other processes.
void AppendPlainly(const std::filesystem::path& path, std::string_view line, unsigned count);

} // namespace marvane::testing
