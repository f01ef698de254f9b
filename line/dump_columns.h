// The lines that list the bytes of a buffer, sixteen bytes each:
//
//     pDataBytes     |00000010 <30 30 34 32>                                      0042            |
//
// after the stamp and the arrow. A listing that was cut has "( ...)|" on its last line.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace marvane {

/// Columns of such a line, from its arrow on.
namespace dump_columns {

inline constexpr std::size_t Label = 8;
inline constexpr std::size_t LabelEnd = 22; ///< a longer label is cut
inline constexpr std::size_t OffsetBar = 23;
inline constexpr std::size_t Offset = 24;
inline constexpr std::size_t CellsOpen = 33; ///< "<"
inline constexpr std::size_t Cells = 34;     ///< the last cell ends with ">" in place of a blank
inline constexpr std::size_t CellWidth = 3;
inline constexpr std::size_t Text = 84;
inline constexpr std::size_t Bar = 100;
inline constexpr std::size_t LineBreak = 101;

inline constexpr std::size_t BytesPerLine = 16;
/// Stands one column after the last character of the text column, over what else is there: with sixteen bytes
/// that is the line break. Brings its own line break.
inline constexpr std::string_view CutMark = "( ...)|\n";

} // namespace dump_columns

/// Eight bytes, those that are not printable ASCII replaced by full stops, without a loop.
constexpr std::uint64_t PrintableBytes(std::uint64_t bytes)
{
    constexpr std::uint64_t ones = 0x0101010101010101;
    constexpr std::uint64_t tops = ones * 0x80;
    const std::uint64_t low = bytes & ~tops;
    const std::uint64_t prints = (low + ones * 0x60) & ~(low + ones) & ~bytes & tops; // 0x20 to 0x7E
    const std::uint64_t mask = (prints >> 7) * 0xFF;
    return (bytes & mask) | (ones * '.' & ~mask);
}

/// One line of a listing, read back.
struct DumpRow
{
    std::string_view Label; ///< without its padding; part of the text that was parsed
    std::uint32_t Offset = 0;
    std::array<std::uint8_t, dump_columns::BytesPerLine> Bytes = {};
    std::size_t Count = 0; ///< of Bytes, 1 to 16
    bool IsCut = false;    ///< the listing ends here, and the buffer had more

    bool operator==(const DumpRow&) const = default;
};

/// Reads a line back from its text after the arrow, without line break. None unless each column is as it was
/// written: a text that only looks like a dump does not count.
std::optional<DumpRow> ParseDumpRow(std::string_view text);

} // namespace marvane
