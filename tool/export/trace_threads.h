// The rows of a trace that show threads: calls and callbacks as slices that nest.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "tool/export/redactor.h"
#include "tool/export/trace_clock.h"
#include "tool/export/trace_events.h"
#include "tool/read/records.h"

namespace marvane::tool::trace {

/// Writes a begin and an end for each call, in the order in which each thread came to them. A call without an
/// exit line has no end if its thread did nothing after it; else it ends where its thread went on.
class ThreadRows
{
public:
    /// So many threads are remembered at a time; those without open calls are forgotten first.
    static constexpr std::size_t MostThreads = 10'000;

    /// Both outlive it; `redactor` may be null.
    ThreadRows(EventWriter& out, const Redactor* redactor) : out_(out), redactor_(redactor) {}

    /// The first half of a call or callback; returns its time. Hidden ones take part in the nesting only.
    std::int64_t Enter(Row on, const read::Call& call, bool isEvent, bool isShown);
    /// The whole call; returns the time of its first half, if that was shown.
    std::optional<std::int64_t> Leave(Row on, const read::Call& call, bool isEvent, bool isShown);
    /// Something at one moment.
    void Instant(Row on, read::LogTime time, std::string_view name, std::string_view category,
                 std::string line);
    /// A time of the log that counts for no other.
    std::int64_t TimeOf(std::uint32_t process, read::LogTime time) const;

private:
    struct OpenCall
    {
        read::Position Begin;
        std::string Name;
        std::int64_t Us = 0;
        bool IsShown = true;
        bool IsLost = false; ///< its exit line will not come
    };
    struct Thread
    {
        std::vector<OpenCall> Open;
        std::int64_t Last = INT64_MIN;
    };

    Thread& ThreadOf(Row on);
    std::int64_t NextTime(Row on, Thread& thread, read::LogTime time);
    void End(Row on, Thread& thread, read::LogTime time,
             std::vector<std::pair<std::string_view, std::string>> arguments);
    void EndLost(Row on, Thread& thread, read::LogTime time);

    EventWriter& out_;
    const Redactor* redactor_;
    std::map<std::uint32_t, ProcessClock> clocks_;
    std::map<Row, Thread> threads_;
};

} // namespace marvane::tool::trace
