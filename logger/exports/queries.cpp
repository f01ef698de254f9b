// Version, status and time: what the target library says of itself, a module, a link or a ComPrimitive.
#include "logger/call/call_frame.h"

using namespace marvane;

namespace {

void VersionLine(const DecoderFrame& frame, const char* label, UNUM32 version)
{
    DecodeLine(frame, Incoming, "%-25s\t= %03u.%03u.%03u"_fmt, label, version >> 24, version >> 16 & 0xFF,
               version >> 8 & 0xFF);
}

void DateLine(const DecoderFrame& frame, const char* label, UNUM32 date)
{
    DecodeLine(frame, Incoming, "%-25s\t= %02u/%02u/%04u (week %u)"_fmt, label, date >> 8 & 0xFF,
               date >> 16 & 0xFF, (date >> 24) + 1970, date & 0xFF);
}

void NumberLine(const DecoderFrame& frame, const char* label, UNUM32 number)
{
    DecodeLine(frame, Incoming, "%-25s\t= %u"_fmt, label, number);
}

// A text may fill its whole array, without a terminator.
template <std::size_t Size>
void TextLine(const DecoderFrame& frame, const char* label, const CHAR8 (&text)[Size])
{
    DecodeLine(frame, Incoming, "%-25s\t= \"%s\""_fmt, label, BoundedText(text, Size));
}

void DecodeVersionData(const DecoderFrame& frame, const PDU_VERSION_DATA& data)
{
    // Behind a shut gate the record is not even read: it may be no readable memory.
    if (!frame.IsOpen())
        return;
    VersionLine(frame, "MVCI_Part1StandardVersion", data.MVCI_Part1StandardVersion);
    VersionLine(frame, "MVCI_Part2StandardVersion", data.MVCI_Part2StandardVersion);
    NumberLine(frame, "HwSerialNumber", data.HwSerialNumber);
    TextLine(frame, "HwName", data.HwName);
    VersionLine(frame, "HwVersion", data.HwVersion);
    DateLine(frame, "HwDate", data.HwDate);
    NumberLine(frame, "HwInterface", data.HwInterface);
    TextLine(frame, "FwName", data.FwName);
    VersionLine(frame, "FwVersion", data.FwVersion);
    DateLine(frame, "FwDate", data.FwDate);
    TextLine(frame, "VendorName", data.VendorName);
    TextLine(frame, "PDUApiSwName", data.PDUApiSwName);
    VersionLine(frame, "PDUApiSwVersion", data.PDUApiSwVersion);
    DateLine(frame, "PDUApiSwDate", data.PDUApiSwDate);
}

/// A number that came back through a pointer, or that there was no pointer. Label with its padding.
void WrittenBackLine(const DecoderFrame& frame, const char* label, const char* name, const UNUM32* value)
{
    if (!frame.IsOpen())
        return;
    if (value)
        DecodeLine(frame, Incoming, "%s\t= %u"_fmt, label, *value);
    else
        DecodeLine(frame, Incoming, "%s was NULL"_fmt, name);
}

} // namespace

T_PDU_ERROR PDUGetVersion(UNUM32 hMod, PDU_VERSION_DATA* pVersionData)
{
    return LogCall({
        .name = "PDUGetVersion",
        .arguments =
            [&](LogBuffer& text) {
                LogAppend(text, "(hMod=%s, pVersionData=%8p)"_fmt, HandleText(hMod), pVersionData);
            },
        .forward = [&](const CPduDll& target) { return target.PDUGetVersion(hMod, pVersionData); },
        .after =
            [&](CallText& text, T_PDU_ERROR status) {
                if (pVersionData && status == PDU_STATUS_NOERROR)
                    DecodeVersionData(ResultFrame(text), *pVersionData);
            },
    });
}

T_PDU_ERROR PDUGetStatus(UNUM32 hMod, UNUM32 hCLL, UNUM32 hCoP, T_PDU_STATUS* pStatusCode, UNUM32* pTimestamp,
                         UNUM32* pExtraInfo)
{
    return LogCall({
        .name = "PDUGetStatus",
        .arguments =
            [&](LogBuffer& text) {
                LogAppend(text,
                          "(hMod=%s, hCLL=%s, hCoP=%s, pStatusCode=%8p, pTimestamp=%8p, pExtraInfo=%8p)"_fmt,
                          HandleText(hMod), HandleText(hCLL), HandleText(hCoP), pStatusCode, pTimestamp,
                          pExtraInfo);
            },
        .forward =
            [&](const CPduDll& target) {
                return target.PDUGetStatus(hMod, hCLL, hCoP, pStatusCode, pTimestamp, pExtraInfo);
            },
        .after =
            [&](CallText& text, T_PDU_ERROR status) {
                const DecoderFrame results = ResultFrame(text);
                if (status != PDU_STATUS_NOERROR || !results.IsOpen())
                    return;
                // No test for null: success without a status code is a fault of the target library.
                GatedLine(results, Incoming, "pStatusCode\t= %s (0x%04X)"_fmt,
                          NameOf(StatusCodeNames, *pStatusCode, "<NULL>"), *pStatusCode);
                WrittenBackLine(results, "pTimestamp", "pTimestamp", pTimestamp);
                WrittenBackLine(results, "pExtraInfo", "pExtraInfo", pExtraInfo);
            },
    });
}

T_PDU_ERROR PDUGetLastError(UNUM32 hMod, UNUM32 hCLL, T_PDU_ERR_EVT* pErrorCode, UNUM32* phCoP,
                            UNUM32* pTimestamp, UNUM32* pExtraErrorInfo)
{
    return LogCall({
        .name = "PDUGetLastError",
        .arguments =
            [&](LogBuffer& text) {
                LogAppend(
                    text,
                    "(hMod=%s, hCLL=%s, pErrorCode=%8p, phCoP=%8p, pTimestamp=%8p, pExtraErrorInfo=%8p)"_fmt,
                    HandleText(hMod), HandleText(hCLL), pErrorCode, phCoP, pTimestamp, pExtraErrorInfo);
            },
        .forward =
            [&](const CPduDll& target) {
                return target.PDUGetLastError(hMod, hCLL, pErrorCode, phCoP, pTimestamp, pExtraErrorInfo);
            },
        .after =
            [&](CallText& text, T_PDU_ERROR status) {
                const DecoderFrame results = ResultFrame(text);
                if (status != PDU_STATUS_NOERROR || !results.IsOpen())
                    return;
                // Named from the table of call results; and no test for null, as in PDUGetStatus.
                GatedLine(results, Incoming, "pErrorCode= %s (0x%04X)"_fmt,
                          NameOf(ErrorCodeNames, *pErrorCode, "<UNKNOWN>"), *pErrorCode);
                WrittenBackLine(results, "phCoP          ", "phCoP", phCoP);
                WrittenBackLine(results, "pTimestamp     ", "pTimestamp", pTimestamp);
                WrittenBackLine(results, "pExtraErrorInfo", "pExtraErrorInfo", pExtraErrorInfo);
            },
    });
}

T_PDU_ERROR PDUGetTimestamp(UNUM32 hMod, UNUM32* pTimestamp)
{
    return LogCall({
        .name = "PDUGetTimestamp",
        .arguments =
            [&](LogBuffer& text) {
                LogAppend(text, "(hMod=%s, pTimestamp=%8p)"_fmt, HandleText(hMod), pTimestamp);
            },
        .forward = [&](const CPduDll& target) { return target.PDUGetTimestamp(hMod, pTimestamp); },
        .after =
            [&](CallText& text, T_PDU_ERROR) {
                // A second closing of the call-out: its lines carry the time of this second reading.
                CloseCallOut(text, "PDUGetTimestamp");
                WrittenBackLine(ResultFrame(text), "pTimestamp              ", "pTimestamp", pTimestamp);
            },
    });
}
