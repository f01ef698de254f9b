#include "examples/sim_vci/vci.h"

#include "examples/sim_vci/comms_report.h"
#include "examples/sim_vci/faults.h"

namespace sim {

// The worker uses the others until the last of them, the interface, is destroyed first.
Faults CurrentFaults;
Items OpenItems;
Vci Interface;

Vci::~Vci()
{
    if (!thread_.joinable())
        return;
    if (IsGone(systemThread_)) {
        thread_.detach();
        return;
    }
    {
        const std::lock_guard hold(Mutex);
        unloading_ = true;
    }
    AskToStop();
    WaitForWorker(Worker::Left);
    EndWorker(thread_, systemThread_);
}

void Vci::Start(void* apiTag)
{
    {
        const std::lock_guard hold(Mutex);
        Constructed = true;
        ApiTag = apiTag;
        stopping_ = false;
        started_ = Clock::now();
        worker_ = Worker::Starting;
        thread_ = std::thread([this] { Run(); });
    }
    // On Windows, a thread that has not begun when the library is unloaded could not be waited for.
    WaitForWorker(Worker::Running);
}

void Vci::AskToStop()
{
    {
        const std::lock_guard hold(Mutex);
        stopping_ = true;
        Constructed = false;
        ModuleConnected = false;
        LogCallback = nullptr;
        Callbacks.clear();
    }
    Wake();
}

void Vci::SetWorker(Worker state)
{
    worker_ = state;
    workerChanged_.notify_all();
}

void Vci::WaitForWorker(Worker state)
{
    std::unique_lock hold(Mutex);
    workerChanged_.wait(hold, [&] { return worker_ >= state; });
}

void Vci::Stop()
{
    AskToStop();
    if (thread_.joinable()) {
        if (thread_.get_id() == std::this_thread::get_id())
            thread_.detach();
        else
            thread_.join();
    }
    const std::lock_guard hold(Mutex);
    for (auto& [handle, link] : Links)
        for (PDU_EVENT_ITEM* event : link.Queue)
            OpenItems.Destroy(event);
    for (PDU_EVENT_ITEM* event : ModuleQueue)
        OpenItems.Destroy(event);
    Links.clear();
    Primitives.clear();
    Late.clear();
    ModuleQueue.clear();
}

Link* Vci::FindLink(UNUM32 hMod, UNUM32 hCLL)
{
    const auto found = Links.find(hCLL);
    return hMod == ModuleHandle && found != Links.end() ? &found->second : nullptr;
}

void Vci::PutEvent(Outbox& outbox, UNUM32 hCLL, PDU_EVENT_ITEM* event)
{
    const auto link = Links.find(hCLL);
    (link != Links.end() ? link->second.Queue : ModuleQueue).push_back(event);
    Notify(outbox, hCLL, PDU_EVT_DATA_AVAILABLE);
}

void Vci::Notify(Outbox& outbox, UNUM32 hCLL, T_PDU_EVT_DATA what) const
{
    const auto link = Links.find(hCLL);
    // The callback of the link, else that of the module, else that of the whole API.
    for (const auto& key : {std::pair{ModuleHandle, hCLL}, std::pair{ModuleHandle, PDU_HANDLE_UNDEF},
                            std::pair{PDU_HANDLE_UNDEF, PDU_HANDLE_UNDEF}})
        if (const auto found = Callbacks.find(key); found != Callbacks.end() && found->second) {
            outbox.Notifications.push_back(
                {found->second, what, hCLL, link != Links.end() ? link->second.Tag : nullptr});
            return;
        }
}

void Vci::PutStatus(Outbox& outbox, UNUM32 hCLL, const ComPrimitive* primitive, T_PDU_STATUS status)
{
    Item item;
    auto* const event = item.New<PDU_EVENT_ITEM>();
    auto* const code = item.New<T_PDU_STATUS>();
    *code = status;
    *event = {PDU_IT_STATUS, primitive ? primitive->Handle : PDU_HANDLE_UNDEF,
              primitive ? primitive->Tag : nullptr, Now(), code};
    PutEvent(outbox, hCLL, OpenItems.Publish(std::move(item), event));
}

void Vci::PutInfo(Outbox& outbox, T_PDU_INFO code)
{
    Item item;
    auto* const event = item.New<PDU_EVENT_ITEM>();
    auto* const info = item.New<PDU_INFO_DATA>();
    *info = {code, 0};
    *event = {PDU_IT_INFO, PDU_HANDLE_UNDEF, nullptr, Now(), info};
    PutEvent(outbox, PDU_HANDLE_UNDEF, OpenItems.Publish(std::move(item), event));
}

void Vci::Cancel(Outbox& outbox, ComPrimitive& primitive)
{
    primitive.Status = PDU_COPST_CANCELLED;
    PutStatus(outbox, primitive.Link, &primitive, PDU_COPST_CANCELLED);
}

void Vci::Deliver(const Outbox& outbox)
{
    PDU_MS_LOG_CALLBACK log;
    {
        const std::lock_guard hold(Mutex);
        log = LogCallback;
    }
    if (log)
        for (const Report& report : outbox.Reports)
            ReportComms(log, report);
    for (const Notification& notification : outbox.Notifications)
        notification.Callback(notification.Event, ModuleHandle, notification.Link, notification.LinkTag,
                              ApiTag);
}

UNUM32 Vci::Now() const
{
    return static_cast<UNUM32>(
        std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - started_).count());
}

} // namespace sim
