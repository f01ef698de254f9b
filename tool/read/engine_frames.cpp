// The calls that are open: from their entry to their delivery, and how many of them are kept.
#include <algorithm>

#include "tool/read/engine.h"

namespace marvane::read {

namespace {

/// Deeper nesting, more calls or more text than this at a time is no log.
constexpr std::size_t MostDepth = 64;
constexpr std::size_t MostFrames = 20000;
constexpr std::size_t MostBytes = 32 * 1024 * 1024;

} // namespace

Frame& LogReader::Engine::Open(std::string_view entry)
{
    std::unique_ptr<Frame> frame = pool_.Get();
    frame->SetEntry(entry);
    Event& record = frame->Record;
    record.Seq = frame->IsEvent ? 0 : ++counts_.Calls;
    counts_.Events += frame->IsEvent ? 1 : 0;
    ++(frame->IsEvent ? session_->Events : session_->Calls);
    record.Session = session_->Number;
    record.Thread = thread_->Id;
    record.Begin = record.End = at_;
    record.BeginTime = record.EndTime = time_;
    for (const auto& outer : thread_->Open) {
        record.Depth += outer->IsDoubtful ? 0 : 1;
        record.InsideCall = outer->IsEvent || outer->IsDoubtful ? record.InsideCall : outer->Record.Seq;
    }
    if (thread_->Open.size() == MostDepth)
        DropOldest();
    openBytes_ += frame->Size();
    ++openFrames_;
    thread_->Open.push_back(std::move(frame));
    return *thread_->Open.back();
}

/// The frame for lines whose entry line is not there: before the beginning of the log, or damaged.
Frame& LogReader::Engine::OpenOrphan()
{
    std::unique_ptr<Frame> frame = pool_.Get();
    frame->IsOrphan = true;
    frame->Record.Session = session_->Number;
    frame->Record.Thread = thread_->Id;
    frame->Record.Begin = at_;
    frame->Record.BeginTime = time_;
    if (thread_->Open.size() == MostDepth)
        DropOldest();
    ++openFrames_;
    thread_->Open.push_back(std::move(frame));
    return *thread_->Open.back();
}

/// Leaves what the thread has entered inside a frame: it can't outlive it.
void LogReader::Engine::LeaveAbove(const Frame& frame)
{
    while (thread_->Top() != &frame)
        Close(*thread_, CallState::InFlight);
}

/// Takes the thread's innermost frame away and delivers it.
void LogReader::Engine::Close(ThreadState& thread, CallState state)
{
    std::unique_ptr<Frame> frame = std::move(thread.Open.back());
    thread.Open.pop_back();
    --openFrames_;
    openBytes_ -= std::min(openBytes_, frame->Size());
    frame->Record.State = state;
    if (frame->IsOrphan)
        DropOrphan(*frame);
    else
        Deliver(*frame);
    pool_.Put(std::move(frame));
}

/// Takes the thread's innermost frame away without a word.
void LogReader::Engine::Forget(ThreadState& thread)
{
    --openFrames_;
    openBytes_ -= std::min(openBytes_, thread.Top()->Size());
    pool_.Put(std::move(thread.Open.back()));
    thread.Open.pop_back();
}

void LogReader::Engine::ForgetAll()
{
    threads_.ForEach([this](ThreadState& thread) {
        while (thread.Top())
            Forget(thread);
    });
}

void LogReader::Engine::Deliver(Frame& frame)
{
    const Event& record = frame.Finished(storage_);
    if (Wanted(Wants::Calls) && frame.IsEvent)
        sink_.OnEvent(record);
    else if (Wanted(Wants::Calls))
        sink_.OnCall(record);
    if (const Item* const item = Wanted(Wants::Items) ? items_.ItemOf(record) : nullptr) {
        ++counts_.Items;
        sink_.OnItem(*item);
    }
    if (const Param* const param = Wanted(Wants::Params) ? items_.ParamOf(record) : nullptr) {
        ++counts_.Params;
        sink_.OnParam(*param);
    }
    const std::string_view name = record.Name;
    if (record.State == CallState::InFlight)
        Tell(ProblemKind::InFlight, record.Begin, &record, name);
    if (record.State == CallState::NotLoaded)
        Tell(ProblemKind::NotLoaded, record.Begin, &record, name);
    if (record.State == CallState::Cut || record.IsCutIn || record.IsCutOut)
        Tell(ProblemKind::Cut, record.Begin, &record, name);
}

/// Lines that belong to no call: each is damage.
void LogReader::Engine::DropOrphan(Frame& frame)
{
    const Event& record = frame.Finished(storage_);
    for (const CallLine& line : storage_) {
        ++counts_.DamagedLines;
        Tell(ProblemKind::Damaged, {record.Begin.File, line.Number, 0}, &record, line.Text);
    }
}

/// Leaves the outermost frame of the thread.
void LogReader::Engine::DropOldest()
{
    std::rotate(thread_->Open.begin(), thread_->Open.begin() + 1, thread_->Open.end());
    Close(*thread_, CallState::InFlight);
}

/// Leaves the threads that were silent the longest if there is too much to remember.
void LogReader::Engine::KeepBounds()
{
    if (!threads_.IsFull() && openFrames_ < MostFrames && openBytes_ < MostBytes)
        return;
    for (ThreadState* const thread : threads_.Oldest()) {
        while (thread->Top())
            Close(*thread, CallState::InFlight);
        EndHeader(*thread);
        threads_.Remove(thread->Id);
    }
    thread_ = nullptr;
}

/// Leaves all frames of a session, of all sessions if it is 0, in the order of their entry lines.
void LogReader::Engine::LeaveAll(std::uint32_t session)
{
    std::vector<std::unique_ptr<Frame>> left;
    threads_.ForEach([&](ThreadState& thread) {
        if (session != 0 && thread.Session != session)
            return;
        for (auto& frame : thread.Open)
            left.push_back(std::move(frame));
        thread.Open.clear();
    });
    openFrames_ -= left.size();
    std::ranges::sort(left, {}, [](const auto& frame) { return frame->Record.Begin; });
    for (const auto& frame : left) {
        openBytes_ -= std::min(openBytes_, frame->Size());
        frame->Record.State = CallState::InFlight;
        frame->IsOrphan ? DropOrphan(*frame) : Deliver(*frame);
    }
}

} // namespace marvane::read
