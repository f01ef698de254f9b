// Modules and links: the calls that open and close the way to a vehicle.
#include "logger/call/call_frame.h"
#include "logger/decode/object_names.h"
#include "logger/log/rotation.h"
#include "logger/state/settings.h"

using namespace marvane;

T_PDU_ERROR PDUModuleConnect(UNUM32 hMod)
{
    return LogCall({
        .name = "PDUModuleConnect",
        .arguments = [&](LogBuffer& text) { LogAppend(text, "(hMod=%s)"_fmt, HandleText(hMod)); },
        .forward = [&](const CPduDll& target) { return target.PDUModuleConnect(hMod); },
    });
}

T_PDU_ERROR PDUModuleDisconnect(UNUM32 hMod)
{
    return LogCall({
        .name = "PDUModuleDisconnect",
        .arguments = [&](LogBuffer& text) { LogAppend(text, "(hMod=%s)"_fmt, HandleText(hMod)); },
        .forward = [&](const CPduDll& target) { return target.PDUModuleDisconnect(hMod); },
        .finish =
            [](CallText& text) {
                // So configured, each session with a module gets a file of its own, however small.
                if (Setting(NumericKey::LogEnabled) == 1 && Setting(NumericKey::LogNewFileCfg) == 1)
                    ChangeLogFile(text, "PDUModuleDisconnect");
                else
                    CheckRotation(text, "PDUModuleDisconnect");
            },
    });
}

T_PDU_ERROR PDUCreateComLogicalLink(UNUM32 hMod, PDU_RSC_DATA* pRscData, UNUM32 resourceId, void* pCLLTag,
                                    UNUM32* phCLL, PDU_FLAG_DATA* pCLLCreateFlag)
{
    return LogCall({
        .name = "PDUCreateComLogicalLink",
        .arguments =
            [&](LogBuffer& text) {
                LogAppend(
                    text,
                    "(hMod=%s, pRscData=%8p, resourceId=%s (%u), pCLLTag=%8p, phCLL=%8p, pCLLCreateFlag=%8p)"_fmt,
                    HandleText(hMod), pRscData,
                    ObjectName(ObjectNameMap::ResourceNames, resourceId, "<UNKNOWN>"), resourceId, pCLLTag,
                    phCLL, pCLLCreateFlag);
            },
        .before =
            [&](CallText& text) {
                const DecoderFrame arguments = ArgumentFrame(text);
                DecodeRscData(arguments, pRscData, "pRscData");
                DecodeFlagData(arguments, pCLLCreateFlag, "pCLLCreateFlag", DirectionIn, 0,
                               CllCreateFlagNames);
                if (!phCLL)
                    GatedLine(arguments, Outgoing, "WARNING - phCLL write-back\t= <NULL>"_fmt);
            },
        .forward =
            [&](const CPduDll& target) {
                return target.PDUCreateComLogicalLink(hMod, pRscData, resourceId, pCLLTag, phCLL,
                                                      pCLLCreateFlag);
            },
        .after =
            [&](CallText& text, T_PDU_ERROR status) {
                if (phCLL && status == PDU_STATUS_NOERROR)
                    GatedLine(ResultFrame(text), Incoming, "phCLL = %u"_fmt, *phCLL);
            },
    });
}

T_PDU_ERROR PDUDestroyComLogicalLink(UNUM32 hMod, UNUM32 hCLL)
{
    return LogCall({
        .name = "PDUDestroyComLogicalLink",
        .arguments =
            [&](LogBuffer& text) {
                LogAppend(text, "(hMod=%s, hCLL=%s)"_fmt, HandleText(hMod), HandleText(hCLL));
            },
        .forward = [&](const CPduDll& target) { return target.PDUDestroyComLogicalLink(hMod, hCLL); },
    });
}

T_PDU_ERROR PDUConnect(UNUM32 hMod, UNUM32 hCLL)
{
    return LogCall({
        .name = "PDUConnect",
        .arguments =
            [&](LogBuffer& text) {
                LogAppend(text, "(hMod=%s, hCLL=%s)"_fmt, HandleText(hMod), HandleText(hCLL));
            },
        .forward = [&](const CPduDll& target) { return target.PDUConnect(hMod, hCLL); },
    });
}

T_PDU_ERROR PDUDisconnect(UNUM32 hMod, UNUM32 hCLL)
{
    return LogCall({
        .name = "PDUDisconnect",
        .arguments =
            [&](LogBuffer& text) {
                LogAppend(text, "(hMod=%s, hCLL=%s)"_fmt, HandleText(hMod), HandleText(hCLL));
            },
        .forward = [&](const CPduDll& target) { return target.PDUDisconnect(hMod, hCLL); },
    });
}

T_PDU_ERROR PDULockResource(UNUM32 hMod, UNUM32 hCLL, UNUM32 LockMask)
{
    return LogCall({
        .name = "PDULockResource",
        .arguments =
            [&](LogBuffer& text) {
                LogAppend(text, "(hMod=%s, hCLL=%s, LockMask=%u)"_fmt, HandleText(hMod), HandleText(hCLL),
                          LockMask);
            },
        .forward = [&](const CPduDll& target) { return target.PDULockResource(hMod, hCLL, LockMask); },
    });
}

T_PDU_ERROR PDUUnlockResource(UNUM32 hMod, UNUM32 hCLL, UNUM32 LockMask)
{
    return LogCall({
        .name = "PDUUnlockResource",
        .arguments =
            [&](LogBuffer& text) {
                LogAppend(text, "(hMod=%s, hCLL=%s, LockMask=%u)"_fmt, HandleText(hMod), HandleText(hCLL),
                          LockMask);
            },
        .forward = [&](const CPduDll& target) { return target.PDUUnlockResource(hMod, hCLL, LockMask); },
    });
}
