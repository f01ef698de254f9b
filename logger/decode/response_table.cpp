#include "logger/decode/decode.h"

namespace marvane {

void DecodeUniqueRespIdTable(const DecoderFrame& frame, const PDU_UNIQUE_RESP_ID_TABLE_ITEM* table,
                             int direction, int level)
{
    if (!frame.IsOpen())
        return;
    const std::size_t indent = IndentIndex(direction, level);
    if (!table)
        return DecodeLine(frame, indent, "pUniqueRespIdTable\t= <NULL>"_fmt);
    if (table->ItemType != PDU_IT_UNIQUE_RESP_ID_TABLE)
        DecodeLine(frame, indent, "WARNING: Wrong item type %u, should be %u!"_fmt, table->ItemType,
                   PDU_IT_UNIQUE_RESP_ID_TABLE);
    if (!table->pUniqueData && table->NumEntries != 0)
        return DecodeLine(frame, indent, "WARNING: Entries indicated but no buffer (%u)!"_fmt,
                          table->NumEntries);
    if (table->NumEntries == 0)
        return DecodeLine(frame, indent, "Num URIDs:\t%u"_fmt, table->NumEntries);
    ForEachEntry(
        frame, table->pUniqueData, table->NumEntries, [&](UNUM32 i, const PDU_ECU_UNIQUE_RESP_DATA* entry) {
            DecodeLine(frame, indent, "[%4u of %4u] - URID = %s, Num params = %u"_fmt, i + 1,
                       table->NumEntries, UridText(entry->UniqueRespIdentifier), entry->NumParamItems);
            ForEachEntry(frame, entry->pParams, entry->NumParamItems,
                         [&](UNUM32, const PDU_PARAM_ITEM* item) {
                             DecodeComParam(frame, item, direction, level + 1);
                         });
        });
}

} // namespace marvane
