// ComPrimitives: what the application sends, and what it expects to hear back.
#include "logger/call/call_frame.h"
#include "logger/state/settings.h"

using namespace marvane;

namespace {

// Only LogEnabled 1 gives these lines: logging that is active for another reason shows the entry alone.
void DecodePrimitive(CallText& text, const PDU_COP_CTRL_DATA* control, const UNUM8* data, UNUM32 size)
{
    if (Setting(NumericKey::LogEnabled) != 1)
        return;
    const DecoderFrame arguments = ArgumentFrame(text);
    DecodeCopCtrlData(arguments, control);
    if (data)
        DumpBuffer(arguments, DirectionIn, 0, "pCoPData", data, size, Setting(NumericKey::LogMaxPduBuff));
}

} // namespace

T_PDU_ERROR PDUStartComPrimitive(UNUM32 hMod, UNUM32 hCLL, T_PDU_COPT CoPType, UNUM32 CoPDataSize,
                                 UNUM8* pCoPData, PDU_COP_CTRL_DATA* pCoPCtrlData, void* pCoPTag,
                                 UNUM32* phCoP)
{
    return LogCall({
        .name = "PDUStartComPrimitive",
        .arguments =
            [&](LogBuffer& text) {
                LogAppend(text,
                          "(hMod=%s, hCLL=%s, CoPType=%s (0x%04X), \n\t\t\t\tCoPDataSize=%u, pCoPData=%8p, "
                          "pCoPCtrlData=%8p, pCoPTag=%8p, phCoP=%8p)"_fmt,
                          HandleText(hMod), HandleText(hCLL), NameOf(CoPTypeNames, CoPType, "<UNKNOWN>"),
                          CoPType, CoPDataSize, pCoPData, pCoPCtrlData, pCoPTag, phCoP);
            },
        .before = [&](CallText& text) { DecodePrimitive(text, pCoPCtrlData, pCoPData, CoPDataSize); },
        .forward =
            [&](const CPduDll& target) {
                return target.PDUStartComPrimitive(hMod, hCLL, CoPType, CoPDataSize, pCoPData, pCoPCtrlData,
                                                   pCoPTag, phCoP);
            },
        .after =
            [&](CallText& text, T_PDU_ERROR) {
                // Shown after a failure too; read only to be shown.
                const DecoderFrame results = ResultFrame(text);
                if (phCoP && results.IsOpen())
                    DecodeLine(results, Incoming, "hCoP          \t= %s"_fmt, HandleText(*phCoP));
            },
    });
}

T_PDU_ERROR PDUCancelComPrimitive(UNUM32 hMod, UNUM32 hCLL, UNUM32 hCoP)
{
    return LogCall({
        .name = "PDUCancelComPrimitive",
        .arguments =
            [&](LogBuffer& text) {
                LogAppend(text, "(hMod=%s, hCLL=%s, hCoP=%s)"_fmt, HandleText(hMod), HandleText(hCLL),
                          HandleText(hCoP));
            },
        .forward = [&](const CPduDll& target) { return target.PDUCancelComPrimitive(hMod, hCLL, hCoP); },
    });
}
