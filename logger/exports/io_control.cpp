// Commands to modules and links, with generic items on both sides.
#include "logger/call/call_frame.h"
#include "logger/decode/object_names.h"

using namespace marvane;

T_PDU_ERROR PDUIoCtl(UNUM32 hMod, UNUM32 hCLL, UNUM32 IoCtlCommandId, PDU_DATA_ITEM* pInputData,
                     PDU_DATA_ITEM** ppOutputData)
{
    return LogCall({
        .name = "PDUIoCtl",
        .arguments =
            [&](LogBuffer& text) {
                LogAppend(text,
                          "(hMod=%s, hCLL=%s, IoCtlCommandId=%u (%s), pInputData=%8p, ppOutputData=%8p)"_fmt,
                          HandleText(hMod), HandleText(hCLL), IoCtlCommandId,
                          ObjectName(ObjectNameMap::IoCtlNames, IoCtlCommandId, "[NOT YET READ]"), pInputData,
                          ppOutputData);
            },
        .before =
            [&](CallText& text) {
                const DecoderFrame arguments = ArgumentFrame(text);
                if (pInputData)
                    DecodeItem(arguments, "pInputData", pInputData, DirectionIn);
                else
                    GatedLine(arguments, Outgoing, "pInputData\t= <NULL>"_fmt);
                // No gate by level here, nor for the pointer that comes back: both show at every level.
                if (ppOutputData)
                    DecodeLine(arguments, Outgoing, "*ppOutputData\t= %8p"_fmt, *ppOutputData);
            },
        .forward =
            [&](const CPduDll& target) {
                return target.PDUIoCtl(hMod, hCLL, IoCtlCommandId, pInputData, ppOutputData);
            },
        .after =
            [&](CallText& text, T_PDU_ERROR status) {
                if (status != PDU_STATUS_NOERROR || !ppOutputData)
                    return;
                const DecoderFrame results = ResultFrame(text);
                if (!*ppOutputData)
                    return GatedLine(results, Incoming, "*ppOutputData\t= <NULL>"_fmt);
                DecodeLine(results, Incoming, "pOutputData\t= %8p"_fmt, *ppOutputData);
                DecodeItem(results, "pOutputData", *ppOutputData, DirectionOut);
            },
    });
}
