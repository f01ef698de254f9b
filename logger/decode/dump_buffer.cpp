// The listing of a buffer.
#include <algorithm>

#include "line/dump_line.h"
#include "logger/decode/decode.h"

namespace marvane {

namespace {

constexpr UNUM32 BytesPerLine = dump_columns::BytesPerLine;

} // namespace

void DumpBuffer(const DecoderContext& context, Arrow arrow, const char* label, const UNUM8* data, UNUM32 size,
                UNUM32 limit)
{
    if (!LoggingActive() || context.CallsLevel == 0 || context.DecodeLevel == 0)
        return;
    if (size == 0)
        DecodeLine(context, arrow, "%14s: Size\t= <ZERO>"_fmt, label);
    if (!data)
        DecodeLine(context, arrow, "%14s: Address \t= <NULL>"_fmt, label);
    if (size == 0 || !data || context.CallsLevel < 2 || context.DecodeLevel < 2)
        return;

    DumpLine line(context.Text.Time().StampText(), arrow, label);
    const UNUM32 listed = std::min(size, limit);
    for (UNUM32 offset = 0; offset < listed && context.Text.HasRoom(); offset += BytesPerLine) {
        const UNUM32 count = std::min(BytesPerLine, listed - offset);
        const bool cut = offset + count == listed && limit < size;
        const bool whole = count == BytesPerLine && !cut;
        if (char* const place = whole ? context.Text.Reserve(line.Length()) : nullptr) {
            line.PutWhole(place, offset, data + offset);
            continue;
        }
        context.Text.AddStamp();
        context.Text.Add("%s"_fmt, line.Last(offset, data + offset, count, cut));
    }
}

} // namespace marvane
