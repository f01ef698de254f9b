// Objects, modules and resources: what exists, and what it is called.
#include "logger/call/call_frame.h"
#include "logger/decode/object_names.h"
#include "logger/state/settings.h"

using namespace marvane;

namespace {

// The contents of these two results are shown under the level of arguments, though they come back.
DecoderFrame ContentsFrame(CallText& text)
{
    return ArgumentFrame(text);
}

// Only LogEnabled 1 shows these lists: logging that is active for another reason does not. Below LogFnCalls 2
// no line of them passes its gate.
bool DecodesLists()
{
    return Setting(NumericKey::LogEnabled) == 1 && Setting(NumericKey::LogFnCalls) >= 2;
}

void DecodeResourceStatus(const DecoderFrame& frame, std::string_view prefix, const PDU_RSC_STATUS_ITEM& item)
{
    // A shut gate must not even walk the list, which may be long.
    if (!frame.IsOpen())
        return;
    ForEachEntry(frame, item.pResourceStatusData, item.NumEntries,
                 [&](UNUM32 i, const PDU_RSC_STATUS_DATA* entry) {
                     if (!entry)
                         return DecodeLine(frame, prefix, "[%u] Entry         \t= <NULL>"_fmt, i);
                     DecodeLine(frame, prefix, "[%u] hMod          \t= %s"_fmt, i, HandleText(entry->hMod));
                     DecodeLine(frame, prefix, "[%u] ResourceId    \t= %s (%u)"_fmt, i,
                                ObjectName(ObjectNameMap::ResourceNames, entry->ResourceId, "<UNKNOWN>"),
                                entry->ResourceId);
                     DecodeLine(frame, prefix, "[%u] ResourceStatus\t= 0x%x"_fmt, i, entry->ResourceStatus);
                 });
}

void DecodeResourceIds(CallText& text, PDU_RSC_ID_ITEM** list)
{
    const DecoderFrame results = ResultFrame(text);
    const DecoderFrame contents = ContentsFrame(text);
    if (!results.IsOpen() && !contents.IsOpen())
        return;
    GatedLine(results, Incoming, "pResourceIdList\t= %8p"_fmt, list);
    const PDU_RSC_ID_ITEM* const item = *list;
    if (!item)
        return;
    GatedLine(results, IncomingNested, "ItemType      \t= %s (0x%04X)"_fmt,
              NameOf(ItemTypeNames, item->ItemType, "<NULL>"), item->ItemType);
    GatedLine(results, IncomingNested, "NumModules    \t= %u"_fmt, item->NumModules);
    const auto show = [&](UNUM32 i, const PDU_RSC_ID_ITEM_DATA* entry) {
        GatedLine(results, IncomingNested, "pRsrcIdLst->pResourceIdDataArray[%02u]"_fmt, i);
        DecodeRscIdList(contents, entry, "pResourceIdData", DirectionOut);
    };
    ForEachEntry(results, item->pResourceIdDataArray, item->NumModules, show);
}

void DecodeConflicts(CallText& text, PDU_RSC_CONFLICT_ITEM** list)
{
    const DecoderFrame results = ResultFrame(text);
    const DecoderFrame contents = ContentsFrame(text);
    if (!results.IsOpen() && !contents.IsOpen())
        return;
    GatedLine(results, Incoming, "pOutputConflictList\t=%8p"_fmt, list);
    const PDU_RSC_CONFLICT_ITEM* const item = *list;
    GatedLine(results, IncomingNested, "pConflictList  \t= %8p"_fmt, item);
    if (!item)
        return;
    GatedLine(results, IndentTable[6], "ItemType  \t= %s (0x%04X)"_fmt,
              NameOf(ItemTypeNames, item->ItemType, "<NULL>"), item->ItemType);
    GatedLine(results, IndentTable[6], "NumEntries\t= %u"_fmt, item->NumEntries);
    const auto show = [&](UNUM32 i, const PDU_RSC_CONFLICT_DATA* entry) {
        GatedLine(results, IndentTable[7], "pRsrcIdLst->pCnflctLst[%02u] @ %8p"_fmt, i, entry);
        DecodeRscConflictList(contents, entry);
    };
    ForEachEntry(results, item->pRscConflictData, item->NumEntries, show);
}

} // namespace

T_PDU_ERROR PDUGetObjectId(T_PDU_OBJT pduObjectType, CHAR8* pShortname, UNUM32* pPduObjectId)
{
    return LogCall({
        .name = "PDUGetObjectId",
        .arguments =
            [&](LogBuffer& text) {
                LogAppend(text, "(pduObjectType=%s (0x%04X), pShortname=\"%s\", pPduObjectId=%8p)"_fmt,
                          NameOf(ObjectTypeNames, pduObjectType, "<NULL>"), pduObjectType,
                          TextOrNull(pShortname), pPduObjectId);
            },
        .forward =
            [&](const CPduDll& target) {
                return target.PDUGetObjectId(pduObjectType, pShortname, pPduObjectId);
            },
        .after =
            [&](CallText& text, T_PDU_ERROR status) {
                if (!pPduObjectId)
                    return;
                const DecoderFrame results = ResultFrame(text);
                if (results.IsOpen())
                    DecodeLine(results, Incoming, "pPduObjectId  \t= %u"_fmt, *pPduObjectId);
                // Learned whatever is being logged: the names are wanted later.
                if (status == PDU_STATUS_NOERROR && pShortname)
                    RecordObjectName(pduObjectType, *pPduObjectId, pShortname);
            },
    });
}

T_PDU_ERROR PDUGetModuleIds(PDU_MODULE_ITEM** pModuleItem)
{
    return LogCall({
        .name = "PDUGetModuleIds",
        .arguments = [&](LogBuffer& text) { LogAppend(text, "(pModuleItem=%8p)"_fmt, pModuleItem); },
        .forward = [&](const CPduDll& target) { return target.PDUGetModuleIds(pModuleItem); },
        .after =
            [&](CallText& text, T_PDU_ERROR status) {
                if (!pModuleItem)
                    GatedLine(ArgumentFrame(text), Outgoing, "pModuleItem\t= <NULL>"_fmt);
                else if (!*pModuleItem)
                    GatedLine(ResultFrame(text), Incoming, "*pModuleItem\t= <NULL>"_fmt);
                else if (status == PDU_STATUS_NOERROR)
                    DecodeModuleIdList(ResultFrame(text), *pModuleItem);
            },
    });
}

T_PDU_ERROR PDUGetResourceIds(UNUM32 hMod, PDU_RSC_DATA* pResourceIdData, PDU_RSC_ID_ITEM** pResourceIdList)
{
    return LogCall({
        .name = "PDUGetResourceIds",
        .arguments =
            [&](LogBuffer& text) {
                LogAppend(text, "(hMod=%s, pResourceIdData=%8p, pResourceIdList=%8p)"_fmt, HandleText(hMod),
                          pResourceIdData, pResourceIdList);
            },
        .before =
            [&](CallText& text) { DecodeRscData(ArgumentFrame(text), pResourceIdData, "pResourceIdData"); },
        .forward =
            [&](const CPduDll& target) {
                return target.PDUGetResourceIds(hMod, pResourceIdData, pResourceIdList);
            },
        .after =
            [&](CallText& text, T_PDU_ERROR status) {
                if (DecodesLists() && pResourceIdList && status == PDU_STATUS_NOERROR)
                    DecodeResourceIds(text, pResourceIdList);
            },
    });
}

T_PDU_ERROR PDUGetResourceStatus(PDU_RSC_STATUS_ITEM* pResourceStatus)
{
    return LogCall({
        .name = "PDUGetResourceStatus",
        .arguments = [&](LogBuffer& text) { LogAppend(text, "(pResourceStatus=%8p)"_fmt, pResourceStatus); },
        .before =
            [&](CallText& text) {
                if (!pResourceStatus)
                    return;
                const DecoderFrame arguments = ArgumentFrame(text);
                GatedLine(arguments, Outgoing, "pResourceStatus->ItemType=%u, NumEntries=%u"_fmt,
                          pResourceStatus->ItemType, pResourceStatus->NumEntries);
                DecodeResourceStatus(arguments, OutgoingNested, *pResourceStatus);
            },
        .forward = [&](const CPduDll& target) { return target.PDUGetResourceStatus(pResourceStatus); },
        .after =
            [&](CallText& text, T_PDU_ERROR status) {
                if (!pResourceStatus || status != PDU_STATUS_NOERROR)
                    return;
                const DecoderFrame results = ResultFrame(text);
                GatedLine(results, Incoming, "pResourceStatus->NumEntries  = %u"_fmt,
                          pResourceStatus->NumEntries);
                DecodeResourceStatus(results, IncomingNested, *pResourceStatus);
            },
    });
}

T_PDU_ERROR PDUGetConflictingResources(UNUM32 resourceId, PDU_MODULE_ITEM* pInputModuleList,
                                       PDU_RSC_CONFLICT_ITEM** pOutputConflictList)
{
    return LogCall({
        .name = "PDUGetConflictingResources",
        .arguments =
            [&](LogBuffer& text) {
                LogAppend(text, "(resourceId=%u, pInputModuleList=%8p, pOutputConflictList=%8p)"_fmt,
                          resourceId, pInputModuleList, pOutputConflictList);
            },
        .before =
            [&](CallText& text) {
                if (!DecodesLists() || !pInputModuleList)
                    return;
                const DecoderFrame arguments = ArgumentFrame(text);
                if (!arguments.IsOpen())
                    return;
                DecodeLine(arguments, Outgoing, "pInputModuleList->ItemType=%u, NumEntries=%u"_fmt,
                           pInputModuleList->ItemType, pInputModuleList->NumEntries);
                ForEachEntry(arguments, pInputModuleList->pModuleData, pInputModuleList->NumEntries,
                             [&](UNUM32, const PDU_MODULE_DATA* entry) {
                                 DecodeModuleData(arguments, entry, DirectionIn);
                             });
            },
        .forward =
            [&](const CPduDll& target) {
                return target.PDUGetConflictingResources(resourceId, pInputModuleList, pOutputConflictList);
            },
        .after =
            [&](CallText& text, T_PDU_ERROR status) {
                if (DecodesLists() && pOutputConflictList && status == PDU_STATUS_NOERROR)
                    DecodeConflicts(text, pOutputConflictList);
            },
    });
}
