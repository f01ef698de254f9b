// The files of the reader: begun, left, resumed, ended.
#include "tool/read/engine.h"

namespace marvane::read {

void LogReader::Engine::BeginFile(const FileBegin& file)
{
    if (hasFile_)
        EndFile();
    hasFile_ = isFileFresh_ = true;
    isComms_ = file.IsComms;
    headersInFile_ = 0;
    offset_ = lines_ = 0;
    hasStamp_ = false;
    clock_.BeginFile(file.NameTime, file.HasNameTime);
    number_ = files_++;
    sink_.OnFile(number_, file.Name);
}

void LogReader::Engine::Feed(std::string_view bytes)
{
    counts_.Bytes += bytes.size();
    splitter_.Feed(bytes,
                   [this](std::string_view line, std::size_t length) { ReadLine(line, length, true); });
}

void LogReader::Engine::Skip(std::uint64_t bytes, std::uint64_t lines)
{
    SettleMark();
    CloseReport(false);
    tail_ = Tail::Nothing;
    ForgetAll();
    hasSkipped_ = true;
    offset_ += bytes;
    lines_ += lines;
}

void LogReader::Engine::EndFile()
{
    if (!hasFile_)
        return;
    if (!splitter_.Rest().empty()) {
        const std::string rest(splitter_.Rest());
        splitter_.Clear();
        ReadLine(rest, rest.size(), false);
        Tell(ProblemKind::LastLineCut, at_, nullptr, rest);
    }
    SettleMark();
    CloseReport(false);
    tail_ = Tail::Nothing;
    hasLineEnd_ = true;
    hasFile_ = false;
}

void LogReader::Engine::Suspend()
{
    SettleMark();
    CloseReport(false);
    tail_ = Tail::Nothing;
    suspended_[number_] = {isComms_, isFileFresh_,         headersInFile_, offset_,
                           lines_,   std::move(splitter_), clock_};
    splitter_ = LineSplitter();
    hasFile_ = false;
}

void LogReader::Engine::Resume(std::uint32_t file)
{
    SuspendedFile state = std::move(suspended_.at(file));
    suspended_.erase(file);
    number_ = file;
    isComms_ = state.IsComms;
    isFileFresh_ = state.IsFresh;
    headersInFile_ = state.Headers;
    offset_ = state.Offset;
    lines_ = state.Lines;
    splitter_ = std::move(state.Splitter);
    clock_ = state.Clock;
    hasStamp_ = false;
    hasFile_ = true;
}

void LogReader::Engine::Finish()
{
    EndFile();
    while (!suspended_.empty()) {
        Resume(suspended_.begin()->first);
        EndFile();
    }
    LeaveAll(0);
    threads_.ForEach([this](ThreadState& thread) { EndHeader(thread); });
}

void LogReader::Engine::Report(ProblemKind what, std::string_view text)
{
    Tell(what, {number_, lines_, offset_}, nullptr, text);
}

} // namespace marvane::read
