// Per-thread cache of the stamp.
#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/clock.h"

namespace marvane {

/// A thread's last stamp. Within a second only its milliseconds are written again, which saves most of what
/// composing it costs. The time-zone rules are consulted once per second, so a change of offset shows within
/// a second.
class ThreadStamp
{
public:
    /// Room for the stamp, in two 16-byte registers.
    static constexpr std::size_t Place = 32;

    /// The calling thread's own, with its second brought up to date. In a source of its own on purpose:
    /// inlined, each use would recompute the thread-local address.
    static ThreadStamp& OfThisThread(std::int64_t second);

    /// Writes Place characters of the stamp to `out`, with these milliseconds.
    void Put(std::uint32_t milliseconds, char* out);

    /// The stamp itself, composed anew if it is another second's.
    ThreadStamp& At(std::int64_t second) { return second == second_ ? *this : Begin(second); }

private:
    ThreadStamp& Begin(std::int64_t second);

    std::int64_t second_ = -1;
    std::uint32_t milliseconds_ = 0;
    char text_[Place] = {};
};

} // namespace marvane
