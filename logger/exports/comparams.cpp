// ComParams and the table of unique response identifiers.
#include "logger/call/call_frame.h"
#include "logger/decode/object_names.h"

using namespace marvane;

T_PDU_ERROR PDUGetComParam(UNUM32 hMod, UNUM32 hCLL, UNUM32 ParamID, PDU_PARAM_ITEM** pParamItem)
{
    return LogCall({
        .name = "PDUGetComParam",
        .arguments =
            [&](PhaseText& text) {
                text.Add("(hMod=%s, hCLL=%s, ParamID=%s (%u), pParamItem=%8p)"_fmt, HandleText(hMod),
                         HandleText(hCLL),
                         ObjectName(ObjectNameMap::ComParamNames, ParamID, "[NOT YET READ]"), ParamID,
                         pParamItem);
            },
        .before =
            [&](PhaseText& text) {
                if (!pParamItem)
                    GatedLine(ArgumentContext(text), ToTarget,
                              "WARNING - pParamItem write-back\t= <NULL>"_fmt);
            },
        .forward =
            [=](const CPduDll& target) { return target.PDUGetComParam(hMod, hCLL, ParamID, pParamItem); },
        .after =
            [&](PhaseText& text, T_PDU_ERROR status) {
                if (status == PDU_STATUS_NOERROR && pParamItem)
                    DecodeComParam(ResultContext(text), FromTarget, *pParamItem);
            },
    });
}

T_PDU_ERROR PDUSetComParam(UNUM32 hMod, UNUM32 hCLL, PDU_PARAM_ITEM* pParamItem)
{
    return LogCall({
        .name = "PDUSetComParam",
        .arguments = Arguments("(hMod=%s, hCLL=%s, pParamItem=%8p)"_fmt, HandleText(hMod), HandleText(hCLL),
                               pParamItem),
        .before =
            [&](PhaseText& text) {
                if (pParamItem)
                    DecodeComParam(ArgumentContext(text), ToTarget, pParamItem);
                else
                    GatedLine(ArgumentContext(text), ToTarget, "WARNING - pParamItem\t= <NULL>"_fmt);
            },
        .forward = [=](const CPduDll& target) { return target.PDUSetComParam(hMod, hCLL, pParamItem); },
    });
}

T_PDU_ERROR PDUGetUniqueRespIdTable(UNUM32 hMod, UNUM32 hCLL,
                                    PDU_UNIQUE_RESP_ID_TABLE_ITEM** pUniqueRespIdTable)
{
    return LogCall({
        .name = "PDUGetUniqueRespIdTable",
        .arguments = Arguments("(hMod=%s, hCLL=%s, pUniqueRespIdTable=%8p)"_fmt, HandleText(hMod),
                               HandleText(hCLL), pUniqueRespIdTable),
        .forward =
            [=](const CPduDll& target) {
                return target.PDUGetUniqueRespIdTable(hMod, hCLL, pUniqueRespIdTable);
            },
        .after =
            [&](PhaseText& text, T_PDU_ERROR status) {
                if (status == PDU_STATUS_NOERROR && pUniqueRespIdTable)
                    DecodeUniqueRespIdTable(ResultContext(text), FromTarget, *pUniqueRespIdTable);
            },
    });
}

T_PDU_ERROR PDUSetUniqueRespIdTable(UNUM32 hMod, UNUM32 hCLL,
                                    PDU_UNIQUE_RESP_ID_TABLE_ITEM* pUniqueRespIdTable)
{
    return LogCall({
        .name = "PDUSetUniqueRespIdTable",
        .arguments = Arguments("(hMod=%s, hCLL=%s, pUniqueRespIdTable=%8p)"_fmt, HandleText(hMod),
                               HandleText(hCLL), pUniqueRespIdTable),
        .before =
            [&](PhaseText& text) {
                DecodeUniqueRespIdTable(ArgumentContext(text), ToTarget, pUniqueRespIdTable);
            },
        .forward =
            [=](const CPduDll& target) {
                return target.PDUSetUniqueRespIdTable(hMod, hCLL, pUniqueRespIdTable);
            },
    });
}
