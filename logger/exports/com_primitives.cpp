// ComPrimitives: what the application sends, and which answers it expects.
#include "logger/call/call_frame.h"

using namespace marvane;

T_PDU_ERROR PDUStartComPrimitive(UNUM32 hMod, UNUM32 hCLL, T_PDU_COPT CoPType, UNUM32 CoPDataSize,
                                 UNUM8* pCoPData, PDU_COP_CTRL_DATA* pCoPCtrlData, void* pCoPTag,
                                 UNUM32* phCoP)
{
    return LogCall({
        .name = "PDUStartComPrimitive",
        .arguments =
            [&](PhaseText& text) {
                text.Add("(hMod=%s, hCLL=%s, CoPType=%s (0x%04X), \n\t\t\t\tCoPDataSize=%u, pCoPData=%8p, "
                         "pCoPCtrlData=%8p, pCoPTag=%8p, phCoP=%8p)"_fmt,
                         HandleText(hMod), HandleText(hCLL), NameOf(CoPTypeNames, CoPType, "<UNKNOWN>"),
                         CoPType, CoPDataSize, pCoPData, pCoPCtrlData, pCoPTag, phCoP);
            },
        .before =
            [&](PhaseText& text) {
                DecodeComPrimitive(ArgumentContext(text), pCoPCtrlData, pCoPData, CoPDataSize);
            },
        .forward =
            [=](const CPduDll& target) {
                return target.PDUStartComPrimitive(hMod, hCLL, CoPType, CoPDataSize, pCoPData, pCoPCtrlData,
                                                   pCoPTag, phCoP);
            },
        .after =
            [&](PhaseText& text, T_PDU_ERROR) {
                // Shown after a failure too. The variable is read only if it is shown.
                const DecoderContext results = ResultContext(text);
                if (phCoP && results.IsOpen())
                    DecodeLine(results, FromTarget, "hCoP          \t= %s"_fmt, HandleText(*phCoP));
            },
    });
}

T_PDU_ERROR PDUCancelComPrimitive(UNUM32 hMod, UNUM32 hCLL, UNUM32 hCoP)
{
    return LogCall({
        .name = "PDUCancelComPrimitive",
        .arguments = Arguments("(hMod=%s, hCLL=%s, hCoP=%s)"_fmt, HandleText(hMod), HandleText(hCLL),
                               HandleText(hCoP)),
        .forward = [=](const CPduDll& target) { return target.PDUCancelComPrimitive(hMod, hCLL, hCoP); },
    });
}
