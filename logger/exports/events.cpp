// Events: fetching them, freeing items, and registering callbacks.
#include "logger/call/call_frame.h"
#include "logger/call/event_callback.h"

using namespace marvane;

T_PDU_ERROR PDUGetEventItem(UNUM32 hMod, UNUM32 hCLL, PDU_EVENT_ITEM** ppEventItem)
{
    return LogCall({
        .name = "PDUGetEventItem",
        .arguments = Arguments("(hMod=%s, hCLL=%s, ppEventItem=%8p)"_fmt, HandleText(hMod), HandleText(hCLL),
                               ppEventItem),
        .forward = [=](const CPduDll& target) { return target.PDUGetEventItem(hMod, hCLL, ppEventItem); },
        .after =
            [&](PhaseText& text, T_PDU_ERROR status) {
                if (status == PDU_STATUS_NOERROR && ppEventItem)
                    DecodeFetchedEvent(ResultContext(text), *ppEventItem);
            },
    });
}

T_PDU_ERROR PDUDestroyItem(void* pItem)
{
    return LogCall({
        .name = "PDUDestroyItem",
        .arguments = Arguments("(pItem=%8p)"_fmt, pItem),
        .forward = [=](const CPduDll& target) { return target.PDUDestroyItem(pItem); },
    });
}

T_PDU_ERROR PDURegisterEventCallback(UNUM32 hMod, UNUM32 hCLL, CALLBACKFNC EventCallbackFunction)
{
    return LogCall({
        .name = "PDURegisterEventCallback",
        .arguments = Arguments("(hMod=%s, hCLL=%s, EventCallbackFunction=%8p)"_fmt, HandleText(hMod),
                               HandleText(hCLL), EventCallbackFunction),
        .before = [&](PhaseText&) { RememberEventCallback(hMod, hCLL, EventCallbackFunction); },
        .forward =
            [=](const CPduDll& target) {
                return target.PDURegisterEventCallback(hMod, hCLL,
                                                       EventCallbackFunction ? PDUCallbackTrap : nullptr);
            },
    });
}
