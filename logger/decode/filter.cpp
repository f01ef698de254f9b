#include <algorithm>

#include "logger/decode/decode.h"

namespace marvane {

void DecodeFilterList(const DecoderFrame& frame, int direction, const PDU_IO_FILTER_LIST* list)
{
    if (!frame.IsOpen())
        return;
    const std::size_t indent = IndentIndex(direction, 1);
    if (!list)
        return DecodeLine(frame, indent, "pFltLst\t= <NULL>"_fmt);
    DecodeLine(frame, indent, "->NumFilterEntries \t= %u"_fmt, list->NumFilterEntries);
    if (list->NumFilterEntries == 0)
        return DecodeLine(frame, indent, "->pFilterData \t@ %8p"_fmt, list->pFilterData);
    if (!list->pFilterData)
        return DecodeLine(frame, indent, "Entries but pFltLst->pFilterData\t= <NULL>"_fmt);
    ForEachEntry(
        frame, list->pFilterData, list->NumFilterEntries, [&](UNUM32 i, const PDU_IO_FILTER_DATA* filter) {
            const UNUM32 size = filter->FilterCompareSize;
            // The record holds no more, whatever the size says; the listing then ends with the mark of a cut
            // one.
            const UNUM32 limit = std::min(size, static_cast<UNUM32>(sizeof filter->FilterMaskMessage));
            DecodeLine(frame, IndentIndex(direction, 2),
                       "FilterEntry[%02u] Type=%s (%d), Number=%u, FilterSize=%u"_fmt, i,
                       NameOf(FilterTypeNames, filter->FilterType, "<UNKNOWN>"), filter->FilterType,
                       filter->FilterNumber, size);
            DumpBuffer(frame, direction, 3, "pMaskMsg   ", filter->FilterMaskMessage, size, limit);
            DumpBuffer(frame, direction, 3, "pPatternMsg", filter->FilterPatternMessage, size, limit);
        });
}

} // namespace marvane
