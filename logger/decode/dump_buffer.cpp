#include <algorithm>

#include "line/dump_line.h"
#include "logger/decode/decode.h"

namespace marvane {

namespace {

constexpr UNUM32 BytesPerLine = dump_columns::BytesPerLine;

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

    DumpLine line(frame.Time.StampText(),
                  Arrow(static_cast<Direction>(direction), static_cast<unsigned>(level)), label);
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
