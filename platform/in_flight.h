// Which threads are inside calls, for a thread that must wait until the others have left.
//
// This may cost a call 2 ns, which rules out a shared counter and a fence (5 to 10 ns each). So each thread
// has a slot of its own, found by its thread pointer, in which it counts without a locked instruction; the
// thread that waits, once in a session, has the system fence all threads instead.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>

#include "platform/thread_pointer.h"

namespace marvane::platform {

namespace in_flight_detail {

inline constexpr unsigned SlotBits = 9;

/// The count of one thread. The slot of a thread that has ended is at 0 and waits for a thread that gets the
/// same thread pointer, which systems use again.
struct alignas(64) Slot
{
    std::atomic<std::uintptr_t> Owner = 0; ///< thread pointer; never changes once set
    std::atomic<std::uint32_t> Depth = 0;  ///< written by the owner only
};

extern Slot Slots[std::size_t{1} << SlotBits];

/// Where the search for a thread's slot begins.
inline Slot& FirstSlot(std::uintptr_t thread)
{
    constexpr std::uint64_t goldenRatio = 0x9E3779B97F4A7C15;
    return Slots[static_cast<std::size_t>(thread * goldenRatio >> (64 - SlotBits))];
}

/// The slot of a thread, taken if it has none yet; null if all are taken.
Slot* FindSlot(std::uintptr_t thread);

inline Slot* SlotOfThisThread()
{
    const std::uintptr_t thread = ThreadPointer();
    Slot& first = FirstSlot(thread);
    return first.Owner.load(std::memory_order_relaxed) == thread ? &first : FindSlot(thread);
}

/// Threads without a slot share one counter.
extern std::atomic<std::uint32_t> WithoutSlot;

} // namespace in_flight_detail

/// Counts the calling thread as inside for a scope. Scopes nest. What the thread reads inside it, it reads
/// after being counted: a pointer that was withdrawn before WaitForOthersToLeave began is not seen by a
/// thread that the wait missed.
class InFlight
{
public:
    InFlight() : slot_(in_flight_detail::SlotOfThisThread())
    {
        Add(1);
        std::atomic_signal_fence(std::memory_order_seq_cst);
    }
    ~InFlight() { Add(static_cast<std::uint32_t>(-1)); }
    InFlight(const InFlight&) = delete;
    InFlight& operator=(const InFlight&) = delete;

private:
    void Add(std::uint32_t step) const
    {
        if (slot_)
            slot_->Depth.store(slot_->Depth.load(std::memory_order_relaxed) + step,
                               std::memory_order_release);
        else
            in_flight_detail::WithoutSlot.fetch_add(step);
    }

    in_flight_detail::Slot* slot_;
};

/// Waits until each other thread that was inside has left, at most `milliseconds`. False on timeout. The
/// calling thread may be inside itself.
bool WaitForOthersToLeave(int milliseconds);

/// How many scopes the calling thread is inside.
std::uint32_t OwnDepth();

} // namespace marvane::platform
