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
            [&](PhaseText& text) {
                text.Add("(hMod=%s, hCLL=%s, IoCtlCommandId=%u (%s), pInputData=%8p, ppOutputData=%8p)"_fmt,
                         HandleText(hMod), HandleText(hCLL), IoCtlCommandId,
                         ObjectName(ObjectNameMap::IoCtlNames, IoCtlCommandId, "[NOT YET READ]"), pInputData,
                         ppOutputData);
            },
        .before =
            [&](PhaseText& text) {
                const DecoderContext arguments = ArgumentContext(text);
                if (pInputData)
                    DecodeItem(arguments, ToTarget, "pInputData", pInputData);
                else
                    GatedLine(arguments, ToTarget, "pInputData\t= <NULL>"_fmt);
                // This line and that of the pointer that comes back have no gate by level. Kept: log readers
                // match them at every level.
                if (ppOutputData)
                    DecodeLine(arguments, ToTarget, "*ppOutputData\t= %8p"_fmt, *ppOutputData);
            },
        .forward =
            [=](const CPduDll& target) {
                return target.PDUIoCtl(hMod, hCLL, IoCtlCommandId, pInputData, ppOutputData);
            },
        .after =
            [&](PhaseText& text, T_PDU_ERROR status) {
                if (status != PDU_STATUS_NOERROR || !ppOutputData)
                    return;
                const DecoderContext results = ResultContext(text);
                if (!*ppOutputData)
                    return GatedLine(results, FromTarget, "*ppOutputData\t= <NULL>"_fmt);
                DecodeLine(results, FromTarget, "pOutputData\t= %8p"_fmt, *ppOutputData);
                DecodeItem(results, FromTarget, "pOutputData", *ppOutputData);
            },
    });
}
