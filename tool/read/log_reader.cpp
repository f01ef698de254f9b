#include "tool/read/log_reader.h"

#include "tool/read/engine.h"

namespace marvane::read {

void LogSink::OnFile(std::uint32_t, std::string_view) {}
void LogSink::OnSession(const Session&) {}
void LogSink::OnLine(const Line&) {}
void LogSink::OnEntry(const Call&, bool) {}
void LogSink::OnCall(const Call&) {}
void LogSink::OnEvent(const Event&) {}
void LogSink::OnItem(const Item&) {}
void LogSink::OnComms(const Comms&) {}
void LogSink::OnParam(const Param&) {}
void LogSink::OnMark(const Mark&) {}
void LogSink::OnProblem(const Problem&) {}

bool Call::HasFailed() const
{
    constexpr std::uint32_t emptyQueue = 0x71;
    return State != CallState::Returned || (Status.value_or(0) != 0 && Status != emptyQueue);
}

LogReader::LogReader(LogSink& sink, Wants wants) : engine_(std::make_unique<Engine>(sink, wants)) {}
LogReader::~LogReader() = default;

void LogReader::BeginFile(const FileBegin& file)
{
    file_ = files_++;
    hasFile_ = true;
    if (filter_)
        filter_->Begin(file_);
    engine_->BeginFile(file);
}
void LogReader::Feed(std::string_view bytes)
{
    if (!filter_)
        return engine_->Feed(bytes);
    filtered_.clear();
    filter_->Take(file_, bytes, filtered_);
    engine_->Feed(filtered_);
}
void LogReader::Skip(std::uint64_t bytes, std::uint64_t lines)
{
    EndFilter();
    if (filter_)
        filter_->Skip(file_, lines);
    engine_->Skip(bytes, lines);
}
/// Reads what the filter has kept back.
void LogReader::EndFilter()
{
    if (!filter_ || !hasFile_)
        return;
    filtered_.clear();
    filter_->End(file_, filtered_);
    engine_->Feed(filtered_);
}
void LogReader::EndFile()
{
    EndFilter();
    hasFile_ = false;
    engine_->EndFile();
}
void LogReader::Suspend()
{
    hasFile_ = false;
    engine_->Suspend();
}
void LogReader::Resume(std::uint32_t file)
{
    file_ = file;
    hasFile_ = true;
    engine_->Resume(file);
}
void LogReader::Finish()
{
    EndFilter();
    engine_->Finish();
}
void LogReader::Report(ProblemKind what, std::string_view text)
{
    engine_->Report(what, text);
}

bool LogReader::IsEnough() const
{
    return engine_->Sink().IsEnough();
}
const ReadCounts& LogReader::Counts() const
{
    return engine_->Counts();
}
const Session* LogReader::FindSession(std::uint32_t number) const
{
    return engine_->Sessions().Find(number);
}

} // namespace marvane::read
