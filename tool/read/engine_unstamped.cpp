// Lines without a stamp, and the mark of a full buffer, which may be one.
#include "tool/read/engine.h"
#include "tool/read/known_lines.h"

namespace marvane::read {

namespace {

constexpr std::size_t LongestSetting = 64 * 1024;

} // namespace

void LogReader::Engine::ReadUnstamped(std::string_view whole)
{
    std::string_view text = whole;
    const bool isMark = text == FullMark;
    const bool isCut = !isMark && TakeMark(text);
    const bool isKnown = isMark ? tail_ != Tail::Nothing || (thread_ && thread_->IsInHeader) : Continue(text);
    if (Wanted(Wants::Lines))
        TellLine(isMark    ? LineKind::Full
                 : isKnown ? LineKind::Continuation
                           : LineKind::Foreign,
                 whole, whole, false);
    if (!isKnown) {
        SettleMark();
        CloseReport(false);
        tail_ = Tail::Nothing;
        return Damaged(whole);
    }
    if (isMark || isCut)
        MarkFull();
}

/// Adds a line without stamp to what the line before it has begun. False if that was complete.
bool LogReader::Engine::Continue(std::string_view text)
{
    Frame* const top = thread_ ? thread_->Top() : nullptr;
    switch (tail_) {
    case Tail::Entry:
        if (!top || top->HasWholeEntry())
            return false;
        top->ContinueEntry(text);
        openBytes_ += text.size();
        return true;
    case Tail::Decoded:
        return top &&
               IsOpenText(
                   std::string_view(top->LastLine()).substr(std::min(ArrowLength, top->LastLine().size()))) &&
               top->ContinueLine(text);
    case Tail::ReportTitle:
        report_.ContinueTitle(text);
        return true;
    case Tail::ReportLine:
        if (!IsOpenText(report_.LastLine().substr(ArrowLength)))
            return false;
        report_.ContinueLine(text);
        return true;
    case Tail::Setting:
        return ContinueSetting(text);
    case Tail::LoadFailure:
        TakeLoadFailure(*session_, text);
        return true;
    case Tail::StampedMark:
        if (!top || !IsDeepText(text))
            return false;
        tail_ = Tail::Decoded;
        return AddToFrame(text);
    case Tail::Nothing:
    case Tail::Exit:
        return false;
    }
    return false;
}

bool LogReader::Engine::ContinueSetting(std::string_view text)
{
    if (!openSetting_ || openSetting_->size() > LongestSetting)
        return false;
    openSetting_->append("\n").append(text);
    if (openSetting_->ends_with('\'')) {
        openSetting_->pop_back();
        tail_ = Tail::Nothing;
    }
    return true;
}

/// The mark of a full buffer has ended the text of the thread's phase.
void LogReader::Engine::MarkFull()
{
    const bool followsExit = tail_ == Tail::Exit;
    tail_ = Tail::Nothing;
    if (report_.IsOpen())
        return CloseReport(true);
    Frame* const top = thread_->Top();
    if (followsExit || thread_->IsInHeader || !top)
        return;
    if (!top->IsInResults) {
        top->Record.IsCutIn = true;
        return;
    }
    top->Record.IsCutOut = true;
    top->Record.End = at_;
    top->Record.EndTime = time_;
    if (!top->IsOrphan)
        Close(*thread_, CallState::Cut);
}

/// A mark that stood after a stamp was none of a deep indent.
void LogReader::Engine::SettleMark()
{
    if (tail_ != Tail::StampedMark)
        return;
    const Position next = at_;
    at_ = markAt_;
    if (!thread_->Top() && !thread_->IsInHeader)
        Damaged(FullMark);
    MarkFull();
    at_ = next;
}

} // namespace marvane::read
