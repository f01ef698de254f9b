// Modules and ComLogicalLinks: opening, closing and locking the connection to a vehicle.
#include "logger/call/call_frame.h"
#include "logger/decode/object_names.h"
#include "logger/log/rotation.h"
#include "logger/state/settings.h"

using namespace marvane;

T_PDU_ERROR PDUModuleConnect(UNUM32 hMod)
{
    return LogCall({
        .name = "PDUModuleConnect",
        .arguments = Arguments("(hMod=%s)"_fmt, HandleText(hMod)),
        .forward = [=](const CPduDll& target) { return target.PDUModuleConnect(hMod); },
    });
}

T_PDU_ERROR PDUModuleDisconnect(UNUM32 hMod)
{
    return LogCall({
        .name = "PDUModuleDisconnect",
        .arguments = Arguments("(hMod=%s)"_fmt, HandleText(hMod)),
        .forward = [=](const CPduDll& target) { return target.PDUModuleDisconnect(hMod); },
        .finish =
            [](PhaseText& text) {
                // With both at 1, each session with a module gets a file of its own, however small.
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
            [&](PhaseText& text) {
                text.Add(
                    "(hMod=%s, pRscData=%8p, resourceId=%s (%u), pCLLTag=%8p, phCLL=%8p, pCLLCreateFlag=%8p)"_fmt,
                    HandleText(hMod), pRscData,
                    ObjectName(ObjectNameMap::ResourceNames, resourceId, "<UNKNOWN>"), resourceId, pCLLTag,
                    phCLL, pCLLCreateFlag);
            },
        .before =
            [&](PhaseText& text) {
                const DecoderContext arguments = ArgumentContext(text);
                DecodeRscData(arguments, "pRscData", pRscData);
                DecodeFlagData(arguments, ToTarget, "pCLLCreateFlag", pCLLCreateFlag, CllCreateFlagNames);
                if (!phCLL)
                    GatedLine(arguments, ToTarget, "WARNING - phCLL write-back\t= <NULL>"_fmt);
            },
        .forward =
            [=](const CPduDll& target) {
                return target.PDUCreateComLogicalLink(hMod, pRscData, resourceId, pCLLTag, phCLL,
                                                      pCLLCreateFlag);
            },
        .after =
            [&](PhaseText& text, T_PDU_ERROR status) {
                if (phCLL && status == PDU_STATUS_NOERROR)
                    GatedLine(ResultContext(text), FromTarget, "phCLL = %u"_fmt, *phCLL);
            },
    });
}

T_PDU_ERROR PDUDestroyComLogicalLink(UNUM32 hMod, UNUM32 hCLL)
{
    return LogCall({
        .name = "PDUDestroyComLogicalLink",
        .arguments = Arguments("(hMod=%s, hCLL=%s)"_fmt, HandleText(hMod), HandleText(hCLL)),
        .forward = [=](const CPduDll& target) { return target.PDUDestroyComLogicalLink(hMod, hCLL); },
    });
}

T_PDU_ERROR PDUConnect(UNUM32 hMod, UNUM32 hCLL)
{
    return LogCall({
        .name = "PDUConnect",
        .arguments = Arguments("(hMod=%s, hCLL=%s)"_fmt, HandleText(hMod), HandleText(hCLL)),
        .forward = [=](const CPduDll& target) { return target.PDUConnect(hMod, hCLL); },
    });
}

T_PDU_ERROR PDUDisconnect(UNUM32 hMod, UNUM32 hCLL)
{
    return LogCall({
        .name = "PDUDisconnect",
        .arguments = Arguments("(hMod=%s, hCLL=%s)"_fmt, HandleText(hMod), HandleText(hCLL)),
        .forward = [=](const CPduDll& target) { return target.PDUDisconnect(hMod, hCLL); },
    });
}

T_PDU_ERROR PDULockResource(UNUM32 hMod, UNUM32 hCLL, UNUM32 LockMask)
{
    return LogCall({
        .name = "PDULockResource",
        .arguments =
            Arguments("(hMod=%s, hCLL=%s, LockMask=%u)"_fmt, HandleText(hMod), HandleText(hCLL), LockMask),
        .forward = [=](const CPduDll& target) { return target.PDULockResource(hMod, hCLL, LockMask); },
    });
}

T_PDU_ERROR PDUUnlockResource(UNUM32 hMod, UNUM32 hCLL, UNUM32 LockMask)
{
    return LogCall({
        .name = "PDUUnlockResource",
        .arguments =
            Arguments("(hMod=%s, hCLL=%s, LockMask=%u)"_fmt, HandleText(hMod), HandleText(hCLL), LockMask),
        .forward = [=](const CPduDll& target) { return target.PDUUnlockResource(hMod, hCLL, LockMask); },
    });
}
