// The table of unique response identifiers.
#include "logger/decode/decode.h"

namespace marvane {

void DecodeUniqueRespIdTable(const DecoderContext& context, Arrow arrow,
                             const PDU_UNIQUE_RESP_ID_TABLE_ITEM* table)
{
    if (!context.IsOpen())
        return;
    if (!table)
        return DecodeLine(context, arrow, "pUniqueRespIdTable\t= <NULL>"_fmt);
    if (table->ItemType != PDU_IT_UNIQUE_RESP_ID_TABLE)
        DecodeLine(context, arrow, "WARNING: Wrong item type %u, should be %u!"_fmt, table->ItemType,
                   PDU_IT_UNIQUE_RESP_ID_TABLE);
    if (!table->pUniqueData && table->NumEntries != 0)
        return DecodeLine(context, arrow, "WARNING: Entries indicated but no buffer (%u)!"_fmt,
                          table->NumEntries);
    if (table->NumEntries == 0)
        return DecodeLine(context, arrow, "Num URIDs:\t%u"_fmt, table->NumEntries);
    ForEachEntry(
        context, table->pUniqueData, table->NumEntries, [&](UNUM32 i, const PDU_ECU_UNIQUE_RESP_DATA* entry) {
            DecodeLine(context, arrow, "[%4u of %4u] - URID = %s, Num params = %u"_fmt, i + 1,
                       table->NumEntries, UridText(entry->UniqueRespIdentifier), entry->NumParamItems);
            ForEachEntry(
                context, entry->pParams, entry->NumParamItems,
                [&](UNUM32, const PDU_PARAM_ITEM* item) { DecodeComParam(context, arrow.Deeper(), item); });
        });
}

} // namespace marvane
