#include <algorithm>
#include <array>
#include <cstring>

#include "decode/decode.h"

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

/// One line of a listing, overwritten run by run.
class DumpLine
{
public:
    DumpLine(std::string_view indent, std::string_view label)
    {
        template_.fill(' ');
        std::copy_n(indent.begin(), std::min(indent.size(), LabelColumn), template_.begin());
        std::copy_n(label.begin(), std::min(label.size(), LabelSize), template_.begin() + LabelColumn);
        template_[OffsetColumn - 1] = '|';
        template_[CellColumn - 1] = '<';
        template_[BarColumn] = '|';
        template_[BarColumn + 1] = '\n';
    }

    /// The finished line of `count` bytes that begin `offset` bytes behind the first. Valid until the next
    /// call.
    std::string_view Format(UNUM32 offset, const UNUM8* bytes, UNUM32 count, bool cut)
    {
        line_ = template_;
        PutOffset(offset);
        char* cell = line_.data() + CellColumn;
        char* text = line_.data() + TextColumn;
        for (UNUM32 i = 0; i < count; ++i, cell += 3) {
            cell[0] = Digits[bytes[i] >> 4];
            cell[1] = Digits[bytes[i] & 15];
            *text++ = bytes[i] >= 0x20 && bytes[i] <= 0x7E ? static_cast<char>(bytes[i]) : '.';
        }
        cell[-1] = '>';
        if (!cut)
            return {line_.data(), LineLength};
        // One column behind the text, over whatever stands there, be it the line break.
        char* const end = std::copy(CutMark.begin(), CutMark.end(), text + 1);
        return {line_.data(), static_cast<std::size_t>(end - line_.data())};
    }

private:
    void PutOffset(UNUM32 offset)
    {
        for (std::size_t i = 8; i-- > 0; offset >>= 4)
            line_[OffsetColumn + i] = Digits[offset & 15];
    }

    using Columns = std::array<char, LineLength + CutMark.size()>;
    Columns template_;
    Columns line_;
};

} // namespace

void DumpBuffer(const DecoderFrame& frame, int direction, int level, const char* label, const UNUM8* data,
                UNUM32 size, UNUM32 limit)
{
    if (!LoggingActive() || frame.CallsLevel == 0 || frame.DecodeLevel == 0)
        return;
    const std::size_t indent = IndentIndex(direction, level);
    if (size == 0)
        DecodeLine(frame, indent, "%14s: Size\t= <ZERO>", label);
    if (!data)
        DecodeLine(frame, indent, "%14s: Address \t= <NULL>", label);
    if (size == 0 || !data || frame.CallsLevel < 2 || frame.DecodeLevel < 2)
        return;

    DumpLine line(IndentTable[indent], label);
    const UNUM32 listed = std::min(size, limit);
    for (UNUM32 offset = 0; offset < listed && frame.Text.HasRoom(); offset += BytesPerLine) {
        const UNUM32 count = std::min(BytesPerLine, listed - offset);
        const bool cut = offset + count == listed && limit < size;
        LogStamp(frame.Text, frame.Time);
        LogAppend(frame.Text, "%s", line.Format(offset, data + offset, count, cut));
    }
}

} // namespace marvane
