#include "tool/read/engine.h"

#include <cstring>

#include "line/marks.h"
#include "tool/read/known_lines.h"

namespace marvane::read {

namespace {

/// The one line of a start that has no line end: the next stamp follows it.
constexpr std::string_view NoPathLine = "\tERROR: Couldn't find library path (";
/// What PDUIoCtl writes although calls are not logged.
constexpr std::string_view BareIoCtlLine = "   -->  *ppOutputData\t= ";

std::uint32_t TimeOfDay(const Stamp& stamp)
{
    const std::uint32_t seconds = (stamp.Hour * 60u + stamp.Minute) * 60u + stamp.Second;
    return std::min(seconds * 1000u + stamp.Milliseconds, static_cast<std::uint32_t>(MillisecondsPerDay - 1));
}

/// memcmp of a stamp in four words: it is done for every line.
bool IsSameStamp(const char* left, const char* right)
{
    constexpr std::size_t word = sizeof(std::uint64_t);
    constexpr std::size_t places[] = {0, word, 2 * word, StampLength - word};
    std::uint64_t difference = 0;
    for (const std::size_t place : places) {
        std::uint64_t a;
        std::uint64_t b;
        std::memcpy(&a, left + place, word);
        std::memcpy(&b, right + place, word);
        difference |= a ^ b;
    }
    return difference == 0;
}

/// The second stamp of a line that should have been two, or npos.
std::size_t SecondStamp(std::string_view text)
{
    if (!text.starts_with(NoPathLine))
        return std::string_view::npos;
    for (std::size_t at = text.find('{'); at != std::string_view::npos; at = text.find('{', at + 1))
        if (ParseStamp(text.substr(at)))
            return at;
    return std::string_view::npos;
}

} // namespace

void LogReader::Engine::ReadLine(std::string_view whole, std::size_t length, bool hasEnd)
{
    ++counts_.Lines;
    at_ = {number_, ++lines_, offset_};
    offset_ += length;
    hasLineEnd_ = hasEnd;
    if (ReadStamp(whole))
        ReadStamped(whole);
    else
        ReadUnstamped(whole);
}

bool LogReader::Engine::ReadStamp(std::string_view whole)
{
    if (whole.size() < StampLength)
        return false;
    isNewStamp_ = !hasStamp_ || !IsSameStamp(whole.data(), stamp_.data());
    if (!isNewStamp_)
        return true;
    const std::optional<Stamp> stamp = ParseStamp(whole);
    if (!stamp)
        return false;
    parsed_ = *stamp;
    std::memcpy(stamp_.data(), whole.data(), StampLength);
    hasStamp_ = true;
    return true;
}

void LogReader::Engine::ReadStamped(std::string_view whole)
{
    std::string_view text = whole.substr(StampLength);
    SettleMark();
    const std::size_t second = SecondStamp(text);
    const std::string_view rest = second == std::string_view::npos ? std::string_view() : text.substr(second);
    text = text.substr(0, second);
    const std::string_view uncut = text;
    const bool isCut = TakeMark(text);
    const KnownLine known = KindOf(text);
    if (isNewStamp_) {
        KeepBounds();
        const std::uint32_t timeOfDay = TimeOfDay(parsed_);
        time_ = known.Kind == LineKind::Initialise ? clock_.AtSessionBegin(timeOfDay) : clock_.At(timeOfDay);
        thread_ = &threads_.Get(parsed_.Thread);
        session_ = sessions_.Find(thread_->Session);
    }
    // A version outside a header: the line before it, which begins the session, is damaged.
    const bool isLateBegin = known.Kind == LineKind::Version && session_ && !thread_->IsInHeader;
    if (known.Kind == LineKind::Initialise || isLateBegin)
        BeginSession();
    else
        Assign(known);
    thread_->LastUse = counts_.Lines;
    session_->LastTime = time_;
    session_->LastAt = at_;
    if (Wanted(Wants::Lines))
        TellLine(known.Kind, uncut, whole.substr(0, StampLength + uncut.size()), true);
    if (report_.IsOpen() && known.Kind != LineKind::Decoded)
        CloseReport(false);
    tail_ = Tail::Nothing;
    isFileFresh_ = false;
    Dispatch(known, isCut);
    if (!rest.empty() && ReadStamp(rest))
        ReadStamped(rest);
}

void LogReader::Engine::Dispatch(const KnownLine& line, bool isCut)
{
    switch (line.Kind) {
    case LineKind::Decoded:
        return ReadDecoded(line.Rest, isCut);
    case LineKind::Entry:
        return ReadEntry(line.Rest, isCut);
    case LineKind::CallOut:
        return ReadCallOut(line.Rest);
    case LineKind::Exit:
        return ReadExit(line.Rest);
    case LineKind::NotLoaded:
        return ReadNotLoaded(line.Rest);
    case LineKind::Comms:
        return ReadReportTitle(line.Rest, isCut);
    case LineKind::Mark:
        return ReadMark(line.Rest);
    case LineKind::Initialise:
        return;
    case LineKind::Version:
        session_->Marvane = line.Rest;
        return;
    case LineKind::Header:
        return ReadHeader(line.Rest);
    case LineKind::Setting:
        return ReadSetting(line.Rest);
    case LineKind::Full:
        tail_ = Tail::StampedMark;
        markAt_ = at_;
        return;
    case LineKind::Continuation:
    case LineKind::Foreign:
    case LineKind::Other:
        return ReadOther(line.Rest);
    }
}

void LogReader::Engine::ReadDecoded(std::string_view text, bool isCut)
{
    const Frame* const top = thread_->Top();
    if (report_.Accepts(thread_->Id, time_, text) &&
        !(top && !top->IsInResults && BeginsResults(top->Record.Which, text))) {
        report_.AddLine(at_.Line, text);
        tail_ = Tail::ReportLine;
        return isCut ? CloseReport(true) : void();
    }
    CloseReport(false);
    if (thread_->IsInHeader && IsHeaderLine(text)) {
        tail_ = IsLoadFailure(text) ? Tail::LoadFailure : Tail::Nothing;
        return TakeLoading(*session_, text);
    }
    if (Settings().FnCalls == 0u && text.starts_with(BareIoCtlLine))
        return;
    if (!AddToFrame(text))
        return Damaged(text);
    tail_ = Tail::Decoded;
    if (isCut)
        MarkFull();
}

void LogReader::Engine::ReadOther(std::string_view text)
{
    if (thread_->IsInHeader && text.starts_with(NoPathLine))
        return;
    Frame* const top = thread_->Top();
    if (!top || top->CountLines() == 0 || !IsDeepText(text) || !top->AddLine(at_.Line, text)) {
        if (hasLineEnd_)
            Damaged(text);
        return;
    }
    openBytes_ += text.size();
    tail_ = Tail::Decoded;
}

void LogReader::Engine::ReadReportTitle(std::string_view text, bool isCut)
{
    EndHeader(*thread_);
    Comms report;
    report.Session = session_->Number;
    report.Thread = thread_->Id;
    report.At = at_;
    report.Time = time_;
    for (const auto& frame : thread_->Open)
        if (!frame->IsEvent && !isComms_)
            report.InsideCall = frame->Record.Seq;
    report_.Begin(report, *ParseReportTitle(text));
    tail_ = Tail::ReportTitle;
    if (isCut)
        CloseReport(true);
}

void LogReader::Engine::CloseReport(bool isCut)
{
    if (!report_.IsOpen())
        return;
    const Comms& report = report_.Finish(isCut);
    ++counts_.Comms;
    if (Wanted(Wants::Comms))
        sink_.OnComms(report);
    if (isCut)
        Tell(ProblemKind::Cut, report.At, nullptr, report.Title);
}

void LogReader::Engine::ReadMark(std::string_view text)
{
    EndHeader(*thread_);
    thread_->IsInHeader = text.ends_with(marks::ContinuationFile);
    if (text.ends_with(marks::ClosingFile))
        session_->IsEnded = true;
    ++counts_.Marks;
    sink_.OnMark({session_->Number, thread_->Id, at_, time_, text});
}

void LogReader::Engine::Damaged(std::string_view line)
{
    if (!hasLineEnd_)
        return; // reported as a cut last line
    ++counts_.DamagedLines;
    Tell(ProblemKind::Damaged, at_, nullptr, line);
}

void LogReader::Engine::Tell(ProblemKind what, Position at, const Call* call, std::string_view text)
{
    Problem problem;
    problem.What = what;
    problem.At = at;
    problem.Time = call ? call->BeginTime : time_;
    problem.Session = call ? call->Session : session_ ? session_->Number : 0;
    problem.Thread = call ? call->Thread : thread_ ? thread_->Id : 0;
    problem.Seq = call ? call->Seq : 0;
    problem.Text = text;
    sink_.OnProblem(problem);
}

void LogReader::Engine::TellLine(LineKind kind, std::string_view text, std::string_view whole, bool hasStamp)
{
    Line line;
    line.At = at_;
    line.Time = time_;
    line.Thread = thread_ ? thread_->Id : 0;
    line.Kind = kind;
    line.HasStamp = hasStamp;
    line.HasLineEnd = hasLineEnd_;
    line.Text = text;
    line.Whole = whole;
    sink_.OnLine(line);
}

} // namespace marvane::read
