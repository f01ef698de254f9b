#include "logger/call/event_callback.h"

#include <atomic>
#include <cstdint>

#include "logger/base/grow_only_map.h"
#include "logger/call/call_frame.h"
#include "logger/log/log_files.h"
#include "logger/state/at_unloading.h"
#include "logger/state/settings.h"
#include "platform/error_state.h"
#include "platform/in_flight.h"

namespace marvane {

namespace {

constexpr const char* Name = "PDUCallbackTrap";

using Callback = std::atomic<CALLBACKFNC>;

// Kept from session to session: a handle that is used again finds its callback.
constinit GrowOnlyMap<UNUM32, Callback> ModuleCallbackMap;
constinit GrowOnlyMap<std::uint64_t, Callback> LinkCallbackMaps;

const AtUnloading FreeCallbacks([] {
    ModuleCallbackMap.Clear();
    LinkCallbackMaps.Clear();
});

std::uint64_t LinkKey(UNUM32 hMod, UNUM32 hCLL)
{
    return std::uint64_t{hMod} << 32 | hCLL;
}

template <class Map, class Key> CALLBACKFNC FindCallback(const Map& map, Key key)
{
    const auto* const callback = map.Find(key);
    return callback ? callback->load(std::memory_order_acquire) : nullptr;
}

CALLBACKFNC ResolveEventCallback(UNUM32 hMod, UNUM32 hCLL)
{
    CALLBACKFNC callback = nullptr;
    if (hCLL != PDU_HANDLE_UNDEF)
        callback = FindCallback(LinkCallbackMaps, LinkKey(hMod, hCLL));
    if (!callback && hMod != PDU_HANDLE_UNDEF)
        callback = FindCallback(ModuleCallbackMap, hMod);
    if (!callback)
        callback = reinterpret_cast<CALLBACKFNC>(
            static_cast<std::uintptr_t>(DefaultEventCallback.load(std::memory_order_acquire)));
    return callback;
}

} // namespace

void RememberEventCallback(UNUM32 hMod, UNUM32 hCLL, CALLBACKFNC callback)
{
    if (hCLL != PDU_HANDLE_UNDEF)
        LinkCallbackMaps.FindOrInsert(LinkKey(hMod, hCLL)).value.store(callback, std::memory_order_release);
    else if (hMod != PDU_HANDLE_UNDEF)
        ModuleCallbackMap.FindOrInsert(hMod).value.store(callback, std::memory_order_release);
    else
        DefaultEventCallback.store(reinterpret_cast<std::uintptr_t>(callback), std::memory_order_release);
}

namespace {

void LogEventNotLoaded()
{
    if (!IsLoaded())
        return;
    const platform::ErrorStateKept kept;
    PhaseText text;
    text.Begin();
    LogNotLoaded(text, Name);
}

void LogEventEntry(T_PDU_EVT_DATA eventType, UNUM32 hMod, UNUM32 hCLL, void* pCLLTag, void* pAPITag,
                   CALLBACKFNC handler)
{
    if (!IsLoaded() || !LoggingActive())
        return;
    const platform::ErrorStateKept kept;
    PhaseText text;
    text.Begin();
    LogEntry(text, Name);
    if (Setting(NumericKey::LogFnCalls) >= 2)
        text.Add("(Type=0x%X, hMod=%s, hCLL=%s, pCLLTag=%8p, pAPITag=%8p, Handler = %8p)"_fmt, eventType,
                 HandleText(hMod), HandleText(hCLL), pCLLTag, pAPITag, handler);
    text.Add("\n"_fmt);
    CommitEntry(text);
}

void LogEventExit()
{
    const platform::ErrorStateKept kept;
    PhaseText text;
    if (IsLoaded())
        CloseCallOut(text, Name);
    text.AddStamp();
    text.AddLine("%s%s"_fmt, marks::Exit, Name);
    WritePhase(text, ApiLogFile);
}

void PassOn(T_PDU_EVT_DATA eventType, UNUM32 hMod, UNUM32 hCLL, void* pCLLTag, void* pAPITag)
{
    const CALLBACKFNC handler = ResolveEventCallback(hMod, hCLL);
    // No handler: the event leaves no trace.
    if (!handler)
        return;
    const auto logged = [] { return Setting(NumericKey::LogCbCalls) != 0; };
    if (logged())
        LogEventEntry(eventType, hMod, hCLL, pCLLTag, pAPITag, handler);
    handler(eventType, hMod, hCLL, pCLLTag, pAPITag);
    if (logged())
        LogEventExit();
}

} // namespace

void PDUCallbackTrap(T_PDU_EVT_DATA eventType, UNUM32 hMod, UNUM32 hCLL, void* pCLLTag, void* pAPITag)
{
    {
        const platform::InFlight inside;
        if (TargetLibrary())
            return PassOn(eventType, hMod, hCLL, pCLLTag, pAPITag);
    }
    // The maps may have been freed.
    LogEventNotLoaded();
}

} // namespace marvane
