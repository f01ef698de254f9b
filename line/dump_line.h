// Composes the lines of a listing of bytes.
//
// A listing is the most frequent text of a log that shows payloads. So its line is composed once, stamp
// included, and for each run of sixteen bytes only offset, cells and text column are written again: cells by
// a table, the text column eight bytes at a time. That took the benchmark's row dump/1024 from 122,526 to
// 12,065 instructions, 187 a line.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "line/arrows.h"
#include "line/dump_columns.h"
#include "line/stamp.h"
#include "text/digits.h"
#include "text/text_copy.h"

namespace marvane {

namespace dump_line_detail {

/// Each byte as its two digits and two blanks, so that one 4-byte store writes a cell; the next cell begins
/// at the second blank.
constexpr std::array<std::array<char, 4>, 256> AllCells()
{
    constexpr char digits[] = "0123456789ABCDEF";
    std::array<std::array<char, 4>, 256> cells = {};
    for (std::size_t byte = 0; byte < cells.size(); ++byte)
        cells[byte] = {digits[byte >> 4], digits[byte & 15], ' ', ' '};
    return cells;
}

inline constexpr auto CellOf = AllCells();

} // namespace dump_line_detail

/// One line of a listing with its stamp, overwritten for each run of bytes. Inline, for the one loop that
/// uses it.
class DumpLine
{
public:
    /// `stamp` is a whole stamp, or empty.
    DumpLine(std::string_view stamp, Arrow arrow, std::string_view label) : stampLength_(stamp.size())
    {
        using namespace dump_columns;
        line_.fill(' ');
        PutText(line_.data(), stamp);
        char* const columns = line_.data() + stampLength_;
        PutText(columns, arrow.Text());
        PutText(columns + Label, label.substr(0, LabelEnd - Label));
        columns[OffsetBar] = '|';
        columns[CellsOpen] = '<';
        columns[Bar] = '|';
        columns[LineBreak] = '\n';
    }

    /// Of a line that is not cut, with its stamp and line break.
    std::size_t Length() const { return stampLength_ + dump_columns::LineBreak + 1; }

    /// Writes the Length() characters of the line of sixteen bytes that begin `offset` bytes after the first.
    void PutWhole(char* out, std::uint32_t offset, const std::uint8_t* bytes) const
    {
        std::memcpy(out, line_.data(), Length());
        PutRun(out + stampLength_, offset, bytes);
    }

    /// The line of the last `count` bytes, 1 to 16, without its stamp. `cut` if the buffer has more. Valid
    /// until the next call; no other line can be made after it.
    std::string_view Last(std::uint32_t offset, const std::uint8_t* bytes, std::size_t count, bool cut)
    {
        using namespace dump_columns;
        std::array<std::uint8_t, BytesPerLine> run = {};
        std::copy_n(bytes, count, run.begin());
        char* const columns = line_.data() + stampLength_;
        PutRun(columns, offset, run.data());
        char* const cellsEnd = columns + Cells + count * CellWidth;
        std::fill(cellsEnd, columns + Cells + BytesPerLine * CellWidth, ' ');
        cellsEnd[-1] = '>';
        char* end = columns + Text + count;
        std::fill(end, columns + Bar, ' ');
        if (!cut)
            return {columns, LineBreak + 1};
        end = std::copy(CutMark.begin(), CutMark.end(), end + 1);
        return {columns, static_cast<std::size_t>(end - columns)};
    }

private:
    static void PutRun(char* columns, std::uint32_t offset, const std::uint8_t* bytes)
    {
        using namespace dump_columns;
        PutHex(columns + Offset, offset, UpperCase);
        char* cell = columns + Cells;
        for (std::size_t i = 0; i < BytesPerLine; ++i, cell += CellWidth)
            std::memcpy(cell, dump_line_detail::CellOf[bytes[i]].data(), CellWidth + 1);
        cell[-1] = '>';
        for (std::size_t i = 0; i < BytesPerLine; i += sizeof(std::uint64_t)) {
            std::uint64_t text;
            std::memcpy(&text, bytes + i, sizeof text);
            text = PrintableBytes(text);
            std::memcpy(columns + Text + i, &text, sizeof text);
        }
    }

    std::size_t stampLength_;
    std::array<char, StampLength + dump_columns::LineBreak + dump_columns::CutMark.size() + 1> line_;
};

} // namespace marvane
