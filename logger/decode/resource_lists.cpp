// Resources, conflicts and modules: whole lists, as calls take and return them.
#include "logger/decode/decode.h"
#include "logger/decode/object_names.h"
#include "logger/state/settings.h"

namespace marvane {

namespace {

constexpr Arrow Nested = FromTarget.Deeper();

// The entries of these two results are shown at the level of arguments. Kept: log readers and their settings
// depend on it.
DecoderContext EntryContext(PhaseText& text)
{
    return ArgumentContext(text);
}

} // namespace

bool ShowsResourceLists()
{
    // Below LogFnCalls 2 every line is dropped by its gate.
    return Setting(NumericKey::LogEnabled) == 1 && Setting(NumericKey::LogFnCalls) >= 2;
}

void DecodeInputModules(const DecoderContext& context, const PDU_MODULE_ITEM& modules)
{
    if (!context.IsOpen())
        return;
    DecodeLine(context, ToTarget, "pInputModuleList->ItemType=%u, NumEntries=%u"_fmt, modules.ItemType,
               modules.NumEntries);
    ForEachEntry(context, modules.pModuleData, modules.NumEntries, [&](UNUM32, const PDU_MODULE_DATA* entry) {
        DecodeModuleData(context, ToTarget.Deeper(), entry);
    });
}

void DecodeResourceIdResult(PhaseText& text, PDU_RSC_ID_ITEM** list)
{
    const DecoderContext results = ResultContext(text);
    const DecoderContext entries = EntryContext(text);
    if (!results.IsOpen() && !entries.IsOpen())
        return;
    GatedLine(results, FromTarget, "pResourceIdList\t= %8p"_fmt, list);
    const PDU_RSC_ID_ITEM* const item = *list;
    if (!item)
        return;
    GatedLine(results, Nested, "ItemType      \t= %s (0x%04X)"_fmt,
              NameOf(ItemTypeNames, item->ItemType, "<NULL>"), item->ItemType);
    GatedLine(results, Nested, "NumModules    \t= %u"_fmt, item->NumModules);
    const auto show = [&](UNUM32 i, const PDU_RSC_ID_ITEM_DATA* entry) {
        GatedLine(results, Nested, "pRsrcIdLst->pResourceIdDataArray[%02u]"_fmt, i);
        DecodeRscIdList(entries, Nested.Deeper(), "pResourceIdData", entry);
    };
    ForEachEntry(results, item->pResourceIdDataArray, item->NumModules, show);
}

void DecodeConflictResult(PhaseText& text, PDU_RSC_CONFLICT_ITEM** list)
{
    const DecoderContext results = ResultContext(text);
    const DecoderContext entries = EntryContext(text);
    if (!results.IsOpen() && !entries.IsOpen())
        return;
    GatedLine(results, FromTarget, "pOutputConflictList\t=%8p"_fmt, list);
    const PDU_RSC_CONFLICT_ITEM* const item = *list;
    GatedLine(results, Nested, "pConflictList  \t= %8p"_fmt, item);
    if (!item)
        return;
    GatedLine(results, Nested.Deeper(), "ItemType  \t= %s (0x%04X)"_fmt,
              NameOf(ItemTypeNames, item->ItemType, "<NULL>"), item->ItemType);
    GatedLine(results, Nested.Deeper(), "NumEntries\t= %u"_fmt, item->NumEntries);
    const auto show = [&](UNUM32 i, const PDU_RSC_CONFLICT_DATA* entry) {
        GatedLine(results, Nested.Deeper(2), "pRsrcIdLst->pCnflctLst[%02u] @ %8p"_fmt, i, entry);
        DecodeRscConflictList(entries, entry);
    };
    ForEachEntry(results, item->pRscConflictData, item->NumEntries, show);
}

void DecodeResourceStatusEntries(const DecoderContext& context, Arrow arrow, const PDU_RSC_STATUS_ITEM& item)
{
    // With a closed gate the list is not visited at all: it may be long.
    if (!context.IsOpen())
        return;
    const auto show = [&](UNUM32 i, const PDU_RSC_STATUS_DATA* entry) {
        if (!entry)
            return DecodeLine(context, arrow, "[%u] Entry         \t= <NULL>"_fmt, i);
        DecodeLine(context, arrow, "[%u] hMod          \t= %s"_fmt, i, HandleText(entry->hMod));
        DecodeLine(context, arrow, "[%u] ResourceId    \t= %s (%u)"_fmt, i,
                   ObjectName(ObjectNameMap::ResourceNames, entry->ResourceId, "<UNKNOWN>"),
                   entry->ResourceId);
        DecodeLine(context, arrow, "[%u] ResourceStatus\t= 0x%x"_fmt, i, entry->ResourceStatus);
    };
    ForEachEntry(context, item.pResourceStatusData, item.NumEntries, show);
}

} // namespace marvane
