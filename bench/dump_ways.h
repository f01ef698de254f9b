// Bare ways to make the lines of a dump: the columns of the log and nothing else.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace marvane::bench {

inline constexpr std::size_t StampLength = 26;
inline constexpr std::size_t DumpLineLength = StampLength + 102;

/// Writes whole lines of 16 bytes behind each other. `out` has room for DumpLineLength a line.
using DumpLines = std::size_t(char* out, std::string_view stamp, const std::uint8_t* bytes,
                              std::size_t lines);

DumpLines DumpByTable; ///< two digits a look-up
DumpLines DumpBySimd;  ///< 16 bytes at once

/// A line without its bytes: stamp, indent, label, template.
void PutDumpTemplate(char* line, std::string_view stamp);

} // namespace marvane::bench
