#include "tool/read/engine.h"
#include "tool/read/known_lines.h"

namespace marvane::read {

namespace {

constexpr std::string_view Start = "LOGGER_Initialise"; ///< has no entry line, but a header

/// Functions whose arguments can be nested so deep that they show the arrows of results.
bool HasDeepArguments(Function function)
{
    return function == Function::SetComParam || function == Function::SetUniqueRespIdTable ||
           function == Function::IoCtl;
}

} // namespace

void LogReader::Engine::ReadEntry(std::string_view rest, bool isCut)
{
    EndHeader(*thread_);
    const bool isEvent = rest.starts_with(FunctionName(Function::CallbackTrap));
    TakeLost(isEvent);
    Frame& frame = Open(rest);
    frame.Record.IsCutIn = isCut;
    tail_ = isCut ? Tail::Nothing : Tail::Entry;
    session_->IsLoaded |= frame.Record.Which != Function::LoggerUninitialise;
    if (Wanted(Wants::Calls))
        sink_.OnEntry(frame.Entry(), frame.IsEvent);
}

/// Leaves frames whose exit lines must have been lost.
void LogReader::Engine::TakeLost(bool nextIsEvent)
{
    while (Frame* const top = thread_->Top()) {
        if (!IsLost(*top, nextIsEvent)) {
            top->IsDoubtful |= IsDoubtful(*top, nextIsEvent);
            return;
        }
        Close(*thread_, CallState::InFlight);
    }
}

/// True if a frame can't be open any more where its thread enters the next one.
bool LogReader::Engine::IsLost(const Frame& frame, bool nextIsEvent) const
{
    if (frame.IsOrphan)
        return frame.IsInResults || !nextIsEvent;
    return frame.IsInResults; // results and exit line are written at once
}

/// True if a frame should not be open where its thread enters the next one: calls and callbacks take turns,
/// if both are logged.
bool LogReader::Engine::IsDoubtful(const Frame& frame, bool nextIsEvent)
{
    const bool hasEvents = Settings().CbCalls.value_or(session_->Events > 0) != 0;
    const bool hasCalls = Settings().FnCalls.value_or(session_->Calls > 0) != 0;
    return frame.IsEvent ? nextIsEvent && hasCalls : !nextIsEvent && hasEvents;
}

bool LogReader::Engine::AddToFrame(std::string_view line)
{
    Frame* const top = thread_->Top();
    Frame& frame = top ? *top : OpenOrphan();
    if (!frame.IsInResults && !frame.IsOrphan && ParseArrow(line))
        frame.IsInResults = BeginsResultsOf(frame, line);
    // All lines of a half have one stamp: others are what is left of a damaged report.
    const bool isOther = !frame.IsInResults && !frame.IsOrphan && time_ != frame.Record.BeginTime;
    if (isOther || !frame.AddLine(at_.Line, line))
        return false;
    openBytes_ += line.size();
    if (frame.IsInResults) {
        frame.Record.End = at_;
        frame.Record.EndTime = time_;
    }
    return true;
}

/// True if the results of the frame begin with that line.
bool LogReader::Engine::BeginsResultsOf(const Frame& frame, std::string_view line)
{
    if (BeginsResults(frame.Record.Which, line))
        return true;
    if (Settings().CallOuts == 1u)
        return false; // they begin with "    <NAME"
    const bool pointsBack = ParseArrow(line)->ShownDirection() == Direction::FromTarget;
    return time_ != frame.Record.BeginTime || (pointsBack && !HasDeepArguments(frame.Record.Which));
}

Frame* LogReader::Engine::FindFrame(std::string_view name)
{
    const Function function = FunctionOf(name);
    for (auto frame = thread_->Open.rbegin(); frame != thread_->Open.rend(); ++frame)
        if (!(*frame)->IsOrphan && (*frame)->Record.Which == function && (*frame)->HasName(name))
            return frame->get();
    return nullptr;
}

void LogReader::Engine::ReadCallOut(std::string_view name)
{
    if (name == Start)
        return;
    EndHeader(*thread_);
    Frame* const found = FindFrame(name);
    if (found)
        LeaveAbove(*found);
    Frame& frame = found ? *found : OpenOrphan();
    frame.IsInResults = true;
    frame.Record.HasCallOut = true;
    frame.Record.End = at_;
    frame.Record.EndTime = time_;
}

void LogReader::Engine::ReadExit(std::string_view rest)
{
    const ExitText exit = ParseExit(rest);
    EndHeader(*thread_);
    if (exit.Name == Start && exit.IsWhole)
        return;
    if (!exit.IsWhole)
        return Damaged(rest);
    tail_ = Tail::Exit;
    Frame* const frame = FindFrame(exit.Name);
    if (!frame) {
        Frame* const top = thread_->Top();
        if (top && top->IsOrphan)
            Forget(*thread_);
        else if (top && top->Record.Which == Function::Unknown)
            Close(*thread_, CallState::InFlight); // its name was damaged
        if (!hasSkipped_)
            Tell(ProblemKind::ExitWithoutEntry, at_, nullptr, rest);
        return;
    }
    LeaveAbove(*frame);
    Event& record = frame->Record;
    record.End = at_;
    record.EndTime = time_;
    record.Status = exit.Status;
    record.StatusName = exit.StatusName;
    frame->IsDoubtful = false;
    if (record.Which == Function::Destruct)
        EndSession();
    Close(*thread_, CallState::Returned);
}

void LogReader::Engine::ReadNotLoaded(std::string_view name)
{
    EndHeader(*thread_);
    session_->HasNotLoaded = true;
    Open(name);
    Close(*thread_, CallState::NotLoaded);
}

} // namespace marvane::read
