#include "tool/read/engine.h"

namespace marvane::read {

namespace {

bool IsOfHeader(LineKind kind)
{
    return kind == LineKind::Mark || kind == LineKind::Version || kind == LineKind::Header ||
           kind == LineKind::Setting;
}

} // namespace

/// Finds the session of the current line's thread.
void LogReader::Engine::Assign(const KnownLine& line)
{
    if (session_ && !IsStale(line))
        return;
    const bool isNew = session_ == nullptr;
    const bool beginsFile = isFileFresh_ && !isComms_ && isNew;
    session_ = beginsFile ? nullptr : sessions_.Newest();
    if (session_) {
        thread_->Session = session_->Number;
        return;
    }
    session_ = &sessions_.Begin(at_, time_, false);
    thread_->Session = session_->Number;
    thread_->IsInHeader = true;
    counts_.Sessions = sessions_.Count();
    if (!IsOfHeader(line.Kind))
        EndHeader(*thread_);
}

/// True if a line begins something on a thread whose session has ended while a later one goes on: another
/// process got the thread's id, or PDUConstruct was called again on another thread.
bool LogReader::Engine::IsStale(const KnownLine& line) const
{
    if (!session_->IsEnded || isComms_)
        return false;
    const bool begins = line.Kind == LineKind::NotLoaded || line.Kind == LineKind::Comms ||
                        (line.Kind == LineKind::Entry && !line.Rest.starts_with("LOGGER_"));
    if (!begins)
        return false;
    const Session* const newest = sessions_.Newest();
    return !newest->IsEnded && newest->Number > session_->Number;
}

void LogReader::Engine::BeginSession()
{
    EndHeader(*thread_);
    thread_->Previous = thread_->Session;
    session_ = &sessions_.Begin(at_, time_, true);
    session_->IsDateCertain = ++headersInFile_ == 1;
    thread_->Session = session_->Number;
    thread_->IsInHeader = true;
    counts_.Sessions = sessions_.Count();
}

/// "LogHeader{Loaded=N}": N shows whether the process has a session already.
void LogReader::Engine::ReadHeader(std::string_view rest)
{
    if (session_->Process != 0)
        return; // the header of a continuation file
    Session* old = sessions_.Find(thread_->Previous);
    if (LoadedOf(rest) == 1u) {
        if (!old || old->IsEnded)
            old = sessions_.NewestBefore(*session_);
        if (old)
            ReplaceSession(*old);
    } else if (old && !old->IsEnded) {
        EndDeadSession(*old);
        old = nullptr;
    }
    session_->Process = old ? old->Process : sessions_.NewProcess();
}

void LogReader::Engine::ReadSetting(std::string_view rest)
{
    openSetting_ = TakeSetting(*session_, rest);
    settings_.Session = 0;
    tail_ = Tail::Setting;
}

const LogReader::Engine::CallSettings& LogReader::Engine::Settings()
{
    if (settings_.Session != session_->Number)
        settings_ = {session_->Number, session_->NumberOf("LogFnCalls"), session_->NumberOf("LogCbCalls"),
                     session_->NumberOf("LogCallOuts")};
    return settings_;
}

/// PDUDestruct returns. A call that is still open leaves no further line, unless PDUConstruct comes first.
void LogReader::Engine::EndSession()
{
    session_->IsEnded = true;
    threads_.ForEach([this](ThreadState& thread) {
        if (thread.Session == session_->Number)
            for (const auto& frame : thread.Open)
                frame->IsDoubtful = true;
    });
}

/// A second PDUConstruct: the threads of the old session go on in the new one, within their calls.
void LogReader::Engine::ReplaceSession(Session& old)
{
    old.IsReplaced = old.IsEnded = true;
    threads_.ForEach([&](ThreadState& thread) {
        if (thread.Session == old.Number)
            thread.Session = session_->Number;
    });
}

/// A new process has the thread of a session without end: that process died.
void LogReader::Engine::EndDeadSession(Session& old)
{
    LeaveAll(old.Number);
    threads_.ForEach([&](ThreadState& thread) {
        if (thread.Session == old.Number)
            thread.Session = 0;
    });
    old.HasDied = old.IsEnded = true;
}

void LogReader::Engine::EndHeader(ThreadState& thread)
{
    if (!thread.IsInHeader)
        return;
    thread.IsInHeader = false;
    Session* const session = sessions_.Find(thread.Session);
    if (!session || session->IsHeaderComplete)
        return;
    if (session->Process == 0)
        session->Process = sessions_.NewProcess();
    session->IsHeaderComplete = true;
    sink_.OnSession(*session);
}

} // namespace marvane::read
