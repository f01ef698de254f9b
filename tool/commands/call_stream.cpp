#include "tool/commands/call_stream.h"

#include <algorithm>
#include <limits>

namespace marvane::tool {

namespace {

using read::LineKind;
using read::Position;

constexpr Position End = {std::numeric_limits<std::uint32_t>::max(), 0, 0};

/// True for lines that go on with what the line before them began.
bool GoesOn(LineKind kind)
{
    switch (kind) {
    case LineKind::Decoded:
    case LineKind::CallOut:
    case LineKind::Full:
    case LineKind::Continuation:
    case LineKind::Version:
    case LineKind::Header:
    case LineKind::Setting:
    case LineKind::Other:
        return true;
    default:
        return false;
    }
}

} // namespace

CallStream::ThreadState& CallStream::ThreadOf(std::uint32_t id)
{
    if (!lastThread_ || lastId_ != id) {
        lastThread_ = &threads_[id];
        lastId_ = id;
    }
    return *lastThread_;
}

void CallStream::OnLine(const read::Line& line)
{
    if (last_ && line.Kind == LineKind::Full && !line.HasStamp)
        return last_->Lines.Add(line);
    PutLast();
    ThreadState& thread = ThreadOf(line.Thread);
    // Lines that belong together are written at once: those of another thread end them.
    if (loose_ && (*loose_ != line.Thread || !GoesOn(line.Kind)))
        TakeLoose();
    if (thread.OpenCalls == 0)
        loose_ = line.Thread;
    thread.Lines.Add(line);
}

void CallStream::OnEntry(const read::Call& call, bool)
{
    loose_.reset(); // The entry line itself was the only one.
    ++ThreadOf(call.Thread).OpenCalls;
    open_.push_back(call.Begin);
}

void CallStream::Take(const read::Call& call, bool isEvent)
{
    PutLast(); // While this one still holds back what entered after it.
    ThreadState& thread = ThreadOf(call.Thread);
    if (call.State != read::CallState::NotLoaded) {
        thread.OpenCalls -= std::min<std::size_t>(thread.OpenCalls, 1);
        std::erase(open_, call.Begin);
    }
    loose_.reset();
    std::unique_ptr<Unit> unit = NewUnit();
    thread.Lines.Move(call.Begin, call.End, unit->Lines);
    unit->At = call.Begin;
    unit->Time = call.BeginTime;
    unit->Thread = call.Thread;
    unit->Seq = call.Seq;
    unit->HasFailed = !isEvent && call.HasFailed();
    unit->IsSelected = Select(call, isEvent, *unit);
    last_ = std::move(unit);
}

void CallStream::TakeLoose()
{
    ThreadState& thread = ThreadOf(*loose_);
    std::unique_ptr<Unit> unit = NewUnit();
    unit->Thread = *loose_;
    loose_.reset();
    if (thread.Lines.IsEmpty())
        return;
    thread.Lines.Move({}, End, unit->Lines);
    unit->At = unit->Lines.Entries().front().At;
    unit->Time = unit->Lines.Entries().front().Time;
    unit->IsSelected = SelectLoose(*unit);
    Put(std::move(unit));
}

void CallStream::PutLast()
{
    if (last_)
        Put(std::move(last_));
}

void CallStream::Put(std::unique_ptr<Unit> unit)
{
    if (!unit->IsSelected && !WantsAll()) {
        unused_.push_back(std::move(unit));
    } else {
        waitingBytes_ += unit->Lines.Bytes();
        auto place = waiting_.end();
        while (place != waiting_.begin() && unit->At < (*std::prev(place))->At)
            --place;
        waiting_.insert(place, std::move(unit));
    }
    GiveBefore(open_.empty() ? End : *std::ranges::min_element(open_));
    while (waitingBytes_ > MostBytes)
        GiveBefore({waiting_.front()->At.File, waiting_.front()->At.Line + 1, 0});
}

void CallStream::GiveBefore(Position limit)
{
    while (!waiting_.empty() && waiting_.front()->At < limit) {
        std::unique_ptr<Unit> unit = std::move(waiting_.front());
        waiting_.pop_front();
        waitingBytes_ -= unit->Lines.Bytes();
        Give(*unit);
        unused_.push_back(std::move(unit));
    }
}

std::unique_ptr<Unit> CallStream::NewUnit()
{
    if (unused_.empty())
        return std::make_unique<Unit>();
    std::unique_ptr<Unit> unit = std::move(unused_.back());
    unused_.pop_back();
    unit->Lines.Clear(); // Keeps its memory; all else is set anew.
    unit->Seq = 0;
    unit->IsSelected = unit->HasFailed = false;
    return unit;
}

void CallStream::Release()
{
    PutLast();
    GiveBefore(End);
}

void CallStream::Finish()
{
    PutLast();
    open_.clear();
    for (const auto& [id, thread] : threads_) {
        loose_ = id;
        TakeLoose();
    }
    GiveBefore(End);
}

} // namespace marvane::tool
