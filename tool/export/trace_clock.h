// Times of a trace: microseconds, in the order of the log although its clock counts milliseconds.
#pragma once

#include <cstdint>

#include "tool/read/log_time.h"

namespace marvane::tool::trace {

/// The clock of one process. Lines of one millisecond are spread over it, a microsecond each, so that viewers
/// that sort by time see them in the order of the log. Where the clock was set back, time goes on.
class ProcessClock
{
public:
    /// The time of the next line, and of those of other threads that are a little older; microseconds since
    /// 1970, in the log's own time.
    std::int64_t Next(read::LogTime time)
    {
        constexpr std::int64_t usual = 1000; // ms that a line may be older than the one before it
        constexpr std::int64_t mostSteps = 999;
        if (hasTime_ && time.Ms + shift_ < latest_ - usual)
            shift_ = latest_ - time.Ms;
        const std::int64_t ms = time.Ms + shift_;
        if (!hasTime_ || ms > latest_) {
            latest_ = ms;
            steps_ = 0;
        } else if (ms == latest_ && steps_ < mostSteps) {
            ++steps_;
        }
        hasTime_ = true;
        return ms * 1000 + (ms == latest_ ? steps_ : 0);
    }

    /// The time of a line that does not count for the others.
    std::int64_t At(read::LogTime time) const { return (time.Ms + shift_) * 1000; }

private:
    bool hasTime_ = false;
    std::int64_t latest_ = 0; ///< ms
    std::int64_t shift_ = 0;  ///< ms
    std::int64_t steps_ = 0;
};

} // namespace marvane::tool::trace
