// Plain implementations of the dump for comparison: the columns of the log and nothing else.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace marvane::bench {

inline constexpr std::size_t StampLength = 26;
inline constexpr std::size_t DumpLineLength = StampLength + 102;

/// Writes consecutive lines of 16 bytes each and returns their length. `out` has room for DumpLineLength
/// characters per line.
using DumpLines = std::size_t(char* out, std::string_view stamp, const std::uint8_t* bytes,
                              std::size_t lines);

DumpLines DumpByTable; ///< two digits per table look-up
DumpLines DumpBySimd;  ///< 16 bytes at a time, with SSSE3

/// Writes a line without its bytes: stamp, arrow, label, delimiters.
void PutDumpTemplate(char* line, std::string_view stamp);

} // namespace marvane::bench
