#include "platform/in_flight.h"

#include <chrono>
#include <thread>

#include "platform/process.h"
#include "platform/uninterrupted.h"

namespace marvane::platform {

namespace in_flight_detail {

constinit Slot Slots[std::size_t{1} << SlotBits] = {};
constinit std::atomic<std::uint32_t> WithoutSlot = 0;

namespace {

// A forked child has but one of the threads.
void ForgetOthers()
{
    const std::uintptr_t self = ThreadPointer();
    for (Slot& slot : Slots)
        if (slot.Owner.load(std::memory_order_relaxed) != self)
            slot.Depth.store(0, std::memory_order_relaxed);
    WithoutSlot = 0;
}

const bool ForksSeen = (CallInForkedChild(ForgetOthers), true);

} // namespace

Slot* FindSlot(std::uintptr_t thread)
{
    const auto first = static_cast<std::size_t>(&FirstSlot(thread) - Slots);
    constexpr std::size_t count = std::size(Slots);
    for (std::size_t i = 0; i < count; ++i) {
        Slot& slot = Slots[(first + i) % count];
        std::uintptr_t owner = 0;
        if (slot.Owner.compare_exchange_strong(owner, thread) || owner == thread)
            return &slot;
    }
    return nullptr;
}

} // namespace in_flight_detail

namespace {

using in_flight_detail::Slot;
using in_flight_detail::Slots;
using in_flight_detail::WithoutSlot;
using TimePoint = std::chrono::steady_clock::time_point;

bool WaitForZero(const std::atomic<std::uint32_t>& count, TimePoint end)
{
    while (count.load(std::memory_order_acquire) != 0) {
        if (std::chrono::steady_clock::now() >= end)
            return false;
        std::this_thread::sleep_for(std::chrono::microseconds(100));
    }
    return true;
}

} // namespace

bool WaitForOthersToLeave(int milliseconds)
{
    const CancellationDeferred deferred;
    const TimePoint end = std::chrono::steady_clock::now() + std::chrono::milliseconds(milliseconds);
    const Slot* const own = in_flight_detail::SlotOfThisThread();
    FenceAllThreads();
    for (const Slot& slot : Slots)
        if (&slot != own && !WaitForZero(slot.Depth, end))
            return false;
    // A thread without a slot can't tell itself from the others there.
    return !own || WaitForZero(WithoutSlot, end);
}

std::uint32_t OwnDepth()
{
    const Slot* const own = in_flight_detail::SlotOfThisThread();
    return own ? own->Depth.load(std::memory_order_relaxed) : 0;
}

} // namespace marvane::platform
