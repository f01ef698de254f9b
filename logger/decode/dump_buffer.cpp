#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>

#include "logger/decode/decode.h"

namespace marvane {

namespace {

constexpr UNUM32 BytesPerLine = 16;
constexpr std::size_t LabelSize = 14;

// Columns of a line.
constexpr std::size_t LabelColumn = 8;
constexpr std::size_t OffsetColumn = 24;
constexpr std::size_t CellColumn = 34;
constexpr std::size_t TextColumn = 84;
constexpr std::size_t BarColumn = 100;
constexpr std::size_t LineLength = 102;
constexpr std::string_view CutMark = "( ...)|\n";

constexpr char Digits[] = "0123456789ABCDEF";

/// Each byte as its two digits and two blanks: the next cell begins at the second.
constexpr std::array<std::array<char, 4>, 256> AllCells()
{
    std::array<std::array<char, 4>, 256> cells = {};
    for (std::size_t byte = 0; byte < cells.size(); ++byte)
        cells[byte] = {Digits[byte >> 4], Digits[byte & 15], ' ', ' '};
    return cells;
}

constexpr auto Cells = AllCells();

/// Eight bytes, those that do not print replaced by full stops.
std::uint64_t PrintableBytes(std::uint64_t bytes)
{
    constexpr std::uint64_t ones = 0x0101010101010101;
    constexpr std::uint64_t tops = ones * 0x80;
    const std::uint64_t low = bytes & ~tops;
    const std::uint64_t prints = (low + ones * 0x60) & ~(low + ones) & ~bytes & tops; // 0x20 to 0x7E
    const std::uint64_t mask = (prints >> 7) * 0xFF;
    return (bytes & mask) | (ones * '.' & ~mask);
}

/// One line of a listing behind its stamp, overwritten run by run.
class DumpLine
{
public:
    DumpLine(std::string_view stamp, std::string_view indent, std::string_view label)
        : stampLength_(stamp.size())
    {
        line_.fill(' ');
        std::copy(stamp.begin(), stamp.end(), line_.begin());
        char* const columns = line_.data() + stampLength_;
        std::copy_n(indent.begin(), std::min(indent.size(), LabelColumn), columns);
        std::copy_n(label.begin(), std::min(label.size(), LabelSize), columns + LabelColumn);
        columns[OffsetColumn - 1] = '|';
        columns[CellColumn - 1] = '<';
        columns[BarColumn] = '|';
        columns[BarColumn + 1] = '\n';
    }

    std::size_t Length() const { return stampLength_ + LineLength; }

    /// Puts the stamp and the line of a whole run of bytes.
    void PutWhole(char* out, UNUM32 offset, const UNUM8* bytes) const
    {
        std::memcpy(out, line_.data(), Length());
        PutRun(out + stampLength_, offset, bytes);
    }

    /// The finished line, without its stamp, of `count` bytes that begin `offset` bytes behind the first.
    /// Valid until the next call.
    std::string_view Last(UNUM32 offset, const UNUM8* bytes, UNUM32 count, bool cut)
    {
        std::array<UNUM8, BytesPerLine> run = {};
        std::copy_n(bytes, count, run.begin());
        char* const columns = line_.data() + stampLength_;
        PutRun(columns, offset, run.data());
        char* const cellsEnd = columns + CellColumn + std::size_t{count} * 3;
        std::fill(cellsEnd, columns + CellColumn + std::size_t{BytesPerLine} * 3, ' ');
        cellsEnd[-1] = '>';
        char* end = columns + TextColumn + count;
        std::fill(end, columns + BarColumn, ' ');
        if (!cut)
            return {columns, LineLength};
        // One column behind the text, over whatever stands there, be it the line break.
        end = std::copy(CutMark.begin(), CutMark.end(), end + 1);
        return {columns, static_cast<std::size_t>(end - columns)};
    }

private:
    static void PutRun(char* columns, UNUM32 offset, const UNUM8* bytes)
    {
        PutHex(columns + OffsetColumn, offset, UpperCase);
        char* cell = columns + CellColumn;
        for (UNUM32 i = 0; i < BytesPerLine; ++i, cell += 3)
            std::memcpy(cell, Cells[bytes[i]].data(), Cells[0].size());
        cell[-1] = '>';
        for (std::size_t i = 0; i < BytesPerLine; i += sizeof(std::uint64_t)) {
            std::uint64_t text;
            std::memcpy(&text, bytes + i, sizeof text);
            text = PrintableBytes(text);
            std::memcpy(columns + TextColumn + i, &text, sizeof text);
        }
    }

    static constexpr std::size_t MostStamp = 32;

    std::size_t stampLength_;
    std::array<char, MostStamp + LineLength + CutMark.size()> line_;
};

} // namespace

void DumpBuffer(const DecoderFrame& frame, int direction, int level, const char* label, const UNUM8* data,
                UNUM32 size, UNUM32 limit)
{
    if (!LoggingActive() || frame.CallsLevel == 0 || frame.DecodeLevel == 0)
        return;
    const std::size_t indent = IndentIndex(direction, level);
    if (size == 0)
        DecodeLine(frame, indent, "%14s: Size\t= <ZERO>"_fmt, label);
    if (!data)
        DecodeLine(frame, indent, "%14s: Address \t= <NULL>"_fmt, label);
    if (size == 0 || !data || frame.CallsLevel < 2 || frame.DecodeLevel < 2)
        return;

    DumpLine line(frame.Time.Stamp(), IndentTable[indent], label);
    const UNUM32 listed = std::min(size, limit);
    for (UNUM32 offset = 0; offset < listed && frame.Text.HasRoom(); offset += BytesPerLine) {
        const UNUM32 count = std::min(BytesPerLine, listed - offset);
        const bool cut = offset + count == listed && limit < size;
        // Whole lines with their stamp are one text, as long as neither part comes near the reserve.
        const bool whole = count == BytesPerLine && !cut && LoggingActive() && frame.Time.IsSet();
        char* const place = whole ? frame.Text.Take(line.Length()) : nullptr;
        if (place) {
            line.PutWhole(place, offset, data + offset);
            continue;
        }
        LogStamp(frame.Text, frame.Time);
        LogAppend(frame.Text, "%s"_fmt, line.Last(offset, data + offset, count, cut));
    }
}

} // namespace marvane
