// Per-thread cache of the stamp.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "line/stamp.h"
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

    /// The calling thread's own. Kept out of line, and apart from what it is used for: where the compiler
    /// sees the object, each use recomputes its thread-local address (11 instructions).
    static ThreadStamp& OfThisThread();

    /// Writes Place characters of the stamp to `out`, with these milliseconds.
    void Put(std::uint32_t milliseconds, char* out)
    {
        if (milliseconds != milliseconds_) {
            PutStampMilliseconds(text_, milliseconds);
            milliseconds_ = milliseconds;
        }
        std::memcpy(out, text_, Place);
    }

    /// The stamp itself, composed anew if it is another second's.
    ThreadStamp& At(std::int64_t second) { return second == second_ ? *this : Begin(second); }

private:
    ThreadStamp& Begin(std::int64_t second);

    std::int64_t second_ = -1;
    std::uint32_t milliseconds_ = 0;
    char text_[Place] = {};
};

} // namespace marvane
