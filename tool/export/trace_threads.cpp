#include "tool/export/trace_threads.h"

#include <algorithm>
#include <cstdio>

#include "tool/console/row_text.h"

namespace marvane::tool::trace {

namespace {

std::string NameOf(const read::Call& call)
{
    return call.Which == read::Function::Unknown ? Printable(call.Name)
                                                 : std::string(read::FunctionName(call.Which));
}

std::string StatusOf(const read::Call& call)
{
    if (!call.Status)
        return {};
    char number[16];
    std::snprintf(number, sizeof number, " (0x%04X)", *call.Status);
    return std::string(call.StatusName) + number;
}

std::string_view StateOf(const read::Call& call)
{
    switch (call.State) {
    case read::CallState::NotLoaded:
        return "the library is not loaded";
    case read::CallState::Cut:
        return "the log lost the exit line";
    default:
        return {};
    }
}

} // namespace

ThreadRows::Thread& ThreadRows::ThreadOf(Row on)
{
    const auto known = threads_.find(on);
    if (known != threads_.end())
        return known->second;
    if (threads_.size() >= MostThreads)
        std::erase_if(threads_, [](const auto& entry) { return entry.second.Open.empty(); });
    char name[32];
    std::snprintf(name, sizeof name, "thread %08X", on.Thread);
    out_.WriteName("thread_name", on, name);
    return threads_[on];
}

std::int64_t ThreadRows::NextTime(Row on, Thread& thread, read::LogTime time)
{
    return thread.Last = std::max(clocks_[on.Process].Next(time), thread.Last + 1);
}

/// Ends the innermost call.
void ThreadRows::End(Row on, Thread& thread, read::LogTime time,
                     std::vector<std::pair<std::string_view, std::string>> arguments)
{
    const OpenCall call = std::move(thread.Open.back());
    thread.Open.pop_back();
    if (call.IsShown)
        out_.Write({.Phase = 'E',
                    .On = on,
                    .Us = NextTime(on, thread, time),
                    .Name = call.Name,
                    .Arguments = std::move(arguments)});
}

/// Ends calls that were left without an exit line, now that their thread goes on.
void ThreadRows::EndLost(Row on, Thread& thread, read::LogTime time)
{
    while (!thread.Open.empty() && thread.Open.back().IsLost)
        End(on, thread, time, {{"state", "left without an exit line"}});
}

std::int64_t ThreadRows::Enter(Row on, const read::Call& call, bool isEvent, bool isShown)
{
    Thread& thread = ThreadOf(on);
    EndLost(on, thread, call.BeginTime);
    OpenCall open = {call.Begin, NameOf(call), 0, isShown, false};
    const bool isRedacted =
        redactor_ && redactor_->IsChanged(call.Begin.File, call.Begin.Line, call.Begin.Line);
    if (isShown) {
        open.Us = NextTime(on, thread, call.BeginTime);
        out_.Write({.Phase = 'B',
                    .On = on,
                    .Us = open.Us,
                    .Name = open.Name,
                    .Category = isEvent ? "callback" : "call",
                    .Arguments = {{"line", PositionText(call.Begin)},
                                  {"arguments", std::string(call.Arguments)},
                                  {"redacted", isRedacted ? "yes" : ""}}});
    }
    thread.Open.push_back(std::move(open));
    return thread.Open.back().Us;
}

std::optional<std::int64_t> ThreadRows::Leave(Row on, const read::Call& call, bool isEvent, bool isShown)
{
    const auto isIt = [&](const OpenCall& open) { return open.Begin == call.Begin; };
    if (call.State == read::CallState::NotLoaded)
        Enter(on, call, isEvent, isShown); // one line is all that there is of it
    Thread& thread = ThreadOf(on);
    const auto found = std::ranges::find_if(thread.Open, isIt);
    if (found == thread.Open.end())
        return std::nullopt;
    const std::int64_t begin = found->Us;
    const bool wasShown = found->IsShown;
    if (call.State == read::CallState::InFlight) {
        found->IsLost = true;
    } else {
        while (!isIt(thread.Open.back()))
            End(on, thread, call.EndTime, {{"state", "left without an exit line"}});
        End(on, thread, call.EndTime, {{"status", StatusOf(call)}, {"state", std::string(StateOf(call))}});
    }
    return wasShown ? std::optional(begin) : std::nullopt;
}

void ThreadRows::Instant(Row on, read::LogTime time, std::string_view name, std::string_view category,
                         std::string line)
{
    ThreadOf(on);
    out_.Write({.Phase = 'i',
                .On = on,
                .Us = TimeOf(on.Process, time),
                .Name = name,
                .Category = category,
                .Arguments = {{"line", std::move(line)}}});
}

std::int64_t ThreadRows::TimeOf(std::uint32_t process, read::LogTime time) const
{
    const auto clock = clocks_.find(process);
    return clock == clocks_.end() ? time.Ms * 1000 : clock->second.At(time);
}

} // namespace marvane::tool::trace
