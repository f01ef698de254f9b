// Version, status, last error and time of a module, a link or a ComPrimitive.
#include "logger/call/call_frame.h"

using namespace marvane;

T_PDU_ERROR PDUGetVersion(UNUM32 hMod, PDU_VERSION_DATA* pVersionData)
{
    return LogCall({
        .name = "PDUGetVersion",
        .arguments = Arguments("(hMod=%s, pVersionData=%8p)"_fmt, HandleText(hMod), pVersionData),
        .forward = [=](const CPduDll& target) { return target.PDUGetVersion(hMod, pVersionData); },
        .after =
            [&](PhaseText& text, T_PDU_ERROR status) {
                if (pVersionData && status == PDU_STATUS_NOERROR)
                    DecodeVersionData(ResultContext(text), *pVersionData);
            },
    });
}

T_PDU_ERROR PDUGetStatus(UNUM32 hMod, UNUM32 hCLL, UNUM32 hCoP, T_PDU_STATUS* pStatusCode, UNUM32* pTimestamp,
                         UNUM32* pExtraInfo)
{
    return LogCall({
        .name = "PDUGetStatus",
        .arguments = Arguments(
            "(hMod=%s, hCLL=%s, hCoP=%s, pStatusCode=%8p, pTimestamp=%8p, pExtraInfo=%8p)"_fmt,
            HandleText(hMod), HandleText(hCLL), HandleText(hCoP), pStatusCode, pTimestamp, pExtraInfo),
        .forward =
            [=](const CPduDll& target) {
                return target.PDUGetStatus(hMod, hCLL, hCoP, pStatusCode, pTimestamp, pExtraInfo);
            },
        .after =
            [&](PhaseText& text, T_PDU_ERROR status) {
                const DecoderContext results = ResultContext(text);
                if (status != PDU_STATUS_NOERROR || !results.IsOpen())
                    return;
                // Not tested for null: success without a status code would be an error of the target library.
                GatedLine(results, FromTarget, "pStatusCode\t= %s (0x%04X)"_fmt,
                          NameOf(StatusCodeNames, *pStatusCode, "<NULL>"), *pStatusCode);
                DecodeWrittenBack(results, "pTimestamp", "pTimestamp", pTimestamp);
                DecodeWrittenBack(results, "pExtraInfo", "pExtraInfo", pExtraInfo);
            },
    });
}

T_PDU_ERROR PDUGetLastError(UNUM32 hMod, UNUM32 hCLL, T_PDU_ERR_EVT* pErrorCode, UNUM32* phCoP,
                            UNUM32* pTimestamp, UNUM32* pExtraErrorInfo)
{
    return LogCall({
        .name = "PDUGetLastError",
        .arguments = Arguments(
            "(hMod=%s, hCLL=%s, pErrorCode=%8p, phCoP=%8p, pTimestamp=%8p, pExtraErrorInfo=%8p)"_fmt,
            HandleText(hMod), HandleText(hCLL), pErrorCode, phCoP, pTimestamp, pExtraErrorInfo),
        .forward =
            [=](const CPduDll& target) {
                return target.PDUGetLastError(hMod, hCLL, pErrorCode, phCoP, pTimestamp, pExtraErrorInfo);
            },
        .after =
            [&](PhaseText& text, T_PDU_ERROR status) {
                const DecoderContext results = ResultContext(text);
                if (status != PDU_STATUS_NOERROR || !results.IsOpen())
                    return;
                // Named by the table of call results, though it is an error of an event: log readers match
                // this. Not tested for null, as in PDUGetStatus.
                GatedLine(results, FromTarget, "pErrorCode= %s (0x%04X)"_fmt,
                          NameOf(ErrorCodeNames, *pErrorCode, "<UNKNOWN>"), *pErrorCode);
                DecodeWrittenBack(results, "phCoP          ", "phCoP", phCoP);
                DecodeWrittenBack(results, "pTimestamp     ", "pTimestamp", pTimestamp);
                DecodeWrittenBack(results, "pExtraErrorInfo", "pExtraErrorInfo", pExtraErrorInfo);
            },
    });
}

T_PDU_ERROR PDUGetTimestamp(UNUM32 hMod, UNUM32* pTimestamp)
{
    return LogCall({
        .name = "PDUGetTimestamp",
        .arguments = Arguments("(hMod=%s, pTimestamp=%8p)"_fmt, HandleText(hMod), pTimestamp),
        .forward = [=](const CPduDll& target) { return target.PDUGetTimestamp(hMod, pTimestamp); },
        .after =
            [&](PhaseText& text, T_PDU_ERROR) {
                // Begins the phase a second time, so these lines carry a later stamp. Kept: logs always had
                // two.
                CloseCallOut(text, "PDUGetTimestamp");
                DecodeWrittenBack(ResultContext(text), "pTimestamp              ", "pTimestamp", pTimestamp);
            },
    });
}
