// Events: fetching them, giving items back, and registering who is told of them.
#include "logger/call/call_frame.h"
#include "logger/call/event_callback.h"

using namespace marvane;

namespace {

void DecodeFetchedEvent(CallText& text, const PDU_EVENT_ITEM* item)
{
    const DecoderFrame results = ResultFrame(text);
    if (!results.IsOpen())
        return;
    if (!item)
        return DecodeLine(results, Incoming, "*ppEventItem\t= <NULL>"_fmt);
    DecodeLine(results, Incoming,
               "*ppEventItem (%8p) type= %s (0x%04X), hCoP=%s, Timestamp = %u, pCoPTag = %8p"_fmt, item,
               NameOf(ItemTypeNames, item->ItemType, "<NULL>"), item->ItemType, HandleText(item->hCop),
               item->Timestamp, item->pCoPTag);
    DecodeEventItem(results, item->ItemType, item->pData);
}

} // namespace

T_PDU_ERROR PDUGetEventItem(UNUM32 hMod, UNUM32 hCLL, PDU_EVENT_ITEM** ppEventItem)
{
    return LogCall({
        .name = "PDUGetEventItem",
        .arguments =
            [&](LogBuffer& text) {
                LogAppend(text, "(hMod=%s, hCLL=%s, ppEventItem=%8p)"_fmt, HandleText(hMod), HandleText(hCLL),
                          ppEventItem);
            },
        .forward = [&](const CPduDll& target) { return target.PDUGetEventItem(hMod, hCLL, ppEventItem); },
        .after =
            [&](CallText& text, T_PDU_ERROR status) {
                if (status == PDU_STATUS_NOERROR && ppEventItem)
                    DecodeFetchedEvent(text, *ppEventItem);
            },
    });
}

T_PDU_ERROR PDUDestroyItem(void* pItem)
{
    return LogCall({
        .name = "PDUDestroyItem",
        .arguments = [&](LogBuffer& text) { LogAppend(text, "(pItem=%8p)"_fmt, pItem); },
        .forward = [&](const CPduDll& target) { return target.PDUDestroyItem(pItem); },
    });
}

T_PDU_ERROR PDURegisterEventCallback(UNUM32 hMod, UNUM32 hCLL, CALLBACKFNC EventCallbackFunction)
{
    return LogCall({
        .name = "PDURegisterEventCallback",
        .arguments =
            [&](LogBuffer& text) {
                LogAppend(text, "(hMod=%s, hCLL=%s, EventCallbackFunction=%8p)"_fmt, HandleText(hMod),
                          HandleText(hCLL), EventCallbackFunction);
            },
        .before = [&](CallText&) { RememberEventCallback(hMod, hCLL, EventCallbackFunction); },
        .forward =
            [&](const CPduDll& target) {
                return target.PDURegisterEventCallback(hMod, hCLL,
                                                       EventCallbackFunction ? PDUCallbackTrap : nullptr);
            },
    });
}
