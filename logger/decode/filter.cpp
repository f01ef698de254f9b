// Message filters.
#include <algorithm>

#include "logger/decode/decode.h"

namespace marvane {

void DecodeFilterList(const DecoderContext& context, Arrow arrow, const PDU_IO_FILTER_LIST* list)
{
    if (!context.IsOpen())
        return;
    if (!list)
        return DecodeLine(context, arrow, "pFltLst\t= <NULL>"_fmt);
    DecodeLine(context, arrow, "->NumFilterEntries \t= %u"_fmt, list->NumFilterEntries);
    if (list->NumFilterEntries == 0)
        return DecodeLine(context, arrow, "->pFilterData \t@ %8p"_fmt, list->pFilterData);
    if (!list->pFilterData)
        return DecodeLine(context, arrow, "Entries but pFltLst->pFilterData\t= <NULL>"_fmt);
    ForEachEntry(
        context, list->pFilterData, list->NumFilterEntries, [&](UNUM32 i, const PDU_IO_FILTER_DATA* filter) {
            const UNUM32 size = filter->FilterCompareSize;
            // The record has 12 bytes, whatever the size says; a larger one is listed as a cut buffer.
            const UNUM32 limit = std::min(size, static_cast<UNUM32>(sizeof filter->FilterMaskMessage));
            DecodeLine(context, arrow.Deeper(),
                       "FilterEntry[%02u] Type=%s (%d), Number=%u, FilterSize=%u"_fmt, i,
                       NameOf(FilterTypeNames, filter->FilterType, "<UNKNOWN>"), filter->FilterType,
                       filter->FilterNumber, size);
            DumpBuffer(context, arrow.Deeper(2), "pMaskMsg   ", filter->FilterMaskMessage, size, limit);
            DumpBuffer(context, arrow.Deeper(2), "pPatternMsg", filter->FilterPatternMessage, size, limit);
        });
}

} // namespace marvane
