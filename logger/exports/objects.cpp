// Objects, modules and resources: what exists, and under which names.
#include "logger/call/call_frame.h"
#include "logger/decode/object_names.h"

using namespace marvane;

T_PDU_ERROR PDUGetObjectId(T_PDU_OBJT pduObjectType, CHAR8* pShortname, UNUM32* pPduObjectId)
{
    return LogCall({
        .name = "PDUGetObjectId",
        .arguments =
            [&](PhaseText& text) {
                text.Add("(pduObjectType=%s (0x%04X), pShortname=\"%s\", pPduObjectId=%8p)"_fmt,
                         NameOf(ObjectTypeNames, pduObjectType, "<NULL>"), pduObjectType,
                         TextOrNull(pShortname), pPduObjectId);
            },
        .forward =
            [=](const CPduDll& target) {
                return target.PDUGetObjectId(pduObjectType, pShortname, pPduObjectId);
            },
        .after =
            [&](PhaseText& text, T_PDU_ERROR status) {
                if (!pPduObjectId)
                    return;
                const DecoderContext results = ResultContext(text);
                if (results.IsOpen())
                    DecodeLine(results, FromTarget, "pPduObjectId  \t= %u"_fmt, *pPduObjectId);
                // Stored with logging off too: later lines need the names.
                if (status == PDU_STATUS_NOERROR && pShortname)
                    RecordObjectName(pduObjectType, *pPduObjectId, pShortname);
            },
    });
}

T_PDU_ERROR PDUGetModuleIds(PDU_MODULE_ITEM** pModuleItem)
{
    return LogCall({
        .name = "PDUGetModuleIds",
        .arguments = Arguments("(pModuleItem=%8p)"_fmt, pModuleItem),
        .forward = [=](const CPduDll& target) { return target.PDUGetModuleIds(pModuleItem); },
        .after =
            [&](PhaseText& text, T_PDU_ERROR status) {
                if (!pModuleItem)
                    GatedLine(ArgumentContext(text), ToTarget, "pModuleItem\t= <NULL>"_fmt);
                else if (!*pModuleItem)
                    GatedLine(ResultContext(text), FromTarget, "*pModuleItem\t= <NULL>"_fmt);
                else if (status == PDU_STATUS_NOERROR)
                    DecodeModuleIdList(ResultContext(text), *pModuleItem);
            },
    });
}

T_PDU_ERROR PDUGetResourceIds(UNUM32 hMod, PDU_RSC_DATA* pResourceIdData, PDU_RSC_ID_ITEM** pResourceIdList)
{
    return LogCall({
        .name = "PDUGetResourceIds",
        .arguments = Arguments("(hMod=%s, pResourceIdData=%8p, pResourceIdList=%8p)"_fmt, HandleText(hMod),
                               pResourceIdData, pResourceIdList),
        .before =
            [&](PhaseText& text) {
                DecodeRscData(ArgumentContext(text), "pResourceIdData", pResourceIdData);
            },
        .forward =
            [=](const CPduDll& target) {
                return target.PDUGetResourceIds(hMod, pResourceIdData, pResourceIdList);
            },
        .after =
            [&](PhaseText& text, T_PDU_ERROR status) {
                if (ShowsResourceLists() && pResourceIdList && status == PDU_STATUS_NOERROR)
                    DecodeResourceIdResult(text, pResourceIdList);
            },
    });
}

T_PDU_ERROR PDUGetResourceStatus(PDU_RSC_STATUS_ITEM* pResourceStatus)
{
    return LogCall({
        .name = "PDUGetResourceStatus",
        .arguments = Arguments("(pResourceStatus=%8p)"_fmt, pResourceStatus),
        .before =
            [&](PhaseText& text) {
                if (!pResourceStatus)
                    return;
                const DecoderContext arguments = ArgumentContext(text);
                GatedLine(arguments, ToTarget, "pResourceStatus->ItemType=%u, NumEntries=%u"_fmt,
                          pResourceStatus->ItemType, pResourceStatus->NumEntries);
                DecodeResourceStatusEntries(arguments, ToTarget.Deeper(), *pResourceStatus);
            },
        .forward = [=](const CPduDll& target) { return target.PDUGetResourceStatus(pResourceStatus); },
        .after =
            [&](PhaseText& text, T_PDU_ERROR status) {
                if (!pResourceStatus || status != PDU_STATUS_NOERROR)
                    return;
                const DecoderContext results = ResultContext(text);
                GatedLine(results, FromTarget, "pResourceStatus->NumEntries  = %u"_fmt,
                          pResourceStatus->NumEntries);
                DecodeResourceStatusEntries(results, FromTarget.Deeper(), *pResourceStatus);
            },
    });
}

T_PDU_ERROR PDUGetConflictingResources(UNUM32 resourceId, PDU_MODULE_ITEM* pInputModuleList,
                                       PDU_RSC_CONFLICT_ITEM** pOutputConflictList)
{
    return LogCall({
        .name = "PDUGetConflictingResources",
        .arguments = Arguments("(resourceId=%u, pInputModuleList=%8p, pOutputConflictList=%8p)"_fmt,
                               resourceId, pInputModuleList, pOutputConflictList),
        .before =
            [&](PhaseText& text) {
                if (ShowsResourceLists() && pInputModuleList)
                    DecodeInputModules(ArgumentContext(text), *pInputModuleList);
            },
        .forward =
            [=](const CPduDll& target) {
                return target.PDUGetConflictingResources(resourceId, pInputModuleList, pOutputConflictList);
            },
        .after =
            [&](PhaseText& text, T_PDU_ERROR status) {
                if (ShowsResourceLists() && pOutputConflictList && status == PDU_STATUS_NOERROR)
                    DecodeConflictResult(text, pOutputConflictList);
            },
    });
}
