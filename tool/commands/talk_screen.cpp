#include "tool/commands/talk_screen.h"

#include <algorithm>

#include "pdu/pdu_api.h"
#include "tool/commands/link_words.h"
#include "tool/commands/row_text.h"

namespace marvane::tool {

namespace {

/// ComPrimitives that say nothing to the control unit and show only if something went wrong.
bool IsByTheWay(const read::Exchange& exchange)
{
    const bool isQuiet = exchange.Type == PDU_COPT_UPDATEPARAM || exchange.Type == PDU_COPT_DELAY;
    return isQuiet && exchange.ErrorCode == 0 && exchange.Result != read::Outcome::Cancelled;
}

} // namespace

TalkScreen::TalkScreen(Console& console, const std::vector<read::LogFile>& files, TalkFilter filter)
    : console_(console), files_(files), filter_(std::move(filter)), layout_(console)
{
}

void TalkScreen::Restart(const read::Link& link)
{
    Conversation::Restart();
    states_ = {};
    only_ = link;
    isAgain_ = true;
}

void TalkScreen::OnSession(const read::Session& session)
{
    Conversation::OnSession(session);
    begins_[session.Number] = session.BeginTime;
    hints_.OnSession(session);
}

void TalkScreen::OnProblem(const read::Problem& problem)
{
    if (!isAgain_)
        ComplainAbout(problem, files_, console_);
}

void TalkScreen::OnUtterance(const Utterance& utterance)
{
    if (const auto* exchange = std::get_if<read::Exchange>(&utterance))
        Show(*exchange);
    else if (const auto* change = std::get_if<read::ParamChange>(&utterance))
        Show(*change);
    else
        Show(std::get<read::LateAnswer>(utterance));
}

bool TalkScreen::IsShown(const read::Link& link) const
{
    const bool isMeant = !only_ || (only_->Session == link.Session && only_->Module == link.Module &&
                                    only_->Handle == link.Handle);
    return isMeant && filter_.Accepts(link);
}

read::LogTime TalkScreen::BeginOf(std::uint32_t session, read::LogTime otherwise) const
{
    const auto found = begins_.find(session);
    return found == begins_.end() ? otherwise : found->second;
}

void TalkScreen::Show(const read::Exchange& exchange)
{
    if (IsByTheWay(exchange) || !IsShown(*exchange.On))
        return;
    const auto change = states_.Change(exchange);
    if (!filter_.Accepts(exchange))
        return;
    Count(exchange);
    read::Exchange shown = exchange;
    shown.IsRedacted = redactor_ && redactor_->IsChanged(exchange);
    if (!fold_.Takes(shown)) {
        WriteFold();
        WriteHeadings(*exchange.On, exchange.Session, exchange.Time);
        fold_.Begin(shown);
    }
    if (!change || filter_.IsForRequests())
        return;
    WriteFold();
    const read::LogTime at = std::max(exchange.EndTime, exchange.Time);
    Write(layout_.Remark(SecondsText(BeginOf(exchange.Session, at), at), *change, ""));
}

void TalkScreen::Show(const read::ParamChange& change)
{
    if (filter_.IsForRequests() || !IsShown(*change.On))
        return;
    WriteFold();
    WriteHeadings(*change.On, change.Session, change.Time);
    const std::string text = change.Before
                                 ? Printable(change.Name) + " " + *change.Before + " -> " + change.After
                                 : Printable(change.Name) + " = " + change.After;
    Write(layout_.Remark(SecondsText(BeginOf(change.Session, change.Time), change.Time), text,
                         PositionText(change.At)));
}

void TalkScreen::Show(const read::LateAnswer& late)
{
    if (filter_.IsForRequests() || !IsShown(*late.On))
        return;
    WriteFold();
    WriteHeadings(*late.On, late.Session, late.What.Time);
    ++counts_.Late;
    const RequestText request = {"late answer, " + std::to_string(late.AfterEndMs) + " ms after the end", {}};
    ResponseRow row = {'!', AnswerText(late.What, DialectOf(*late.On)), {}};
    if (redactor_ && redactor_->IsChanged(late.What.Data))
        row.Text += " redacted";
    Write(layout_.Row(SecondsText(BeginOf(late.Session, late.What.Time), late.What.Time),
                      std::to_string(late.Primitive), request, row, PositionText(late.What.At)));
}

void TalkScreen::Count(const read::Exchange& exchange)
{
    for (const ResponseRow& row : ResponseRows(exchange))
        if (row.After)
            (row.After->IsByLog ? counts_.HasLogTimes : counts_.HasLibraryTimes) = true;
    const bool isRequestCut = exchange.IsRequestCut && !exchange.Request.empty();
    const bool isAnswerCut = std::ranges::any_of(
        exchange.Answers, [](const read::Answer& answer) { return answer.IsCut && !answer.Data.empty(); });
    counts_.Cut += isRequestCut || isAnswerCut;
    if (exchange.Type != PDU_COPT_SENDRECV && exchange.Type != 0)
        return;
    ++counts_.Requests;
    ++counts_.ByOutcome[static_cast<std::size_t>(exchange.Result)];
}

void TalkScreen::WriteFold()
{
    if (!fold_.IsEmpty())
        Write(fold_.Lines(layout_, BeginOf(fold_.Session(), fold_.Time())));
    fold_.Clear();
}

void TalkScreen::WriteHeadings(const read::Link& link, std::uint32_t session, read::LogTime time)
{
    const bool isNewSession = session != session_;
    if (isNewSession && begins_.size() > 1) {
        const read::LogTime begin = BeginOf(session, time);
        Write((session_ == 0 ? "" : "\n") + std::string("== session ") + std::to_string(session) + "   " +
              DateText(begin) + "  " + ClockText(begin) + "\n");
    }
    const bool isSameLink =
        !isNewSession && link_ && link_->Module == link.Module && link_->Handle == link.Handle;
    session_ = session;
    if (isSameLink)
        return;
    link_ = link;
    std::string heading = LinkText(link).empty() ? std::string("link ?") : LinkText(link);
    if (!link.Name().empty())
        heading += "   " + Printable(link.Name());
    for (std::size_t i = 0; i < link.Pins.size(); ++i)
        heading += (i == 0 ? "   pins " : ", ") + std::to_string(link.Pins[i]);
    PutBefore(heading, console_.Columns() - 2, "+" + SecondsText(BeginOf(session, time), time) + " s");
    Write((hasHeading_ && !isNewSession ? "\n" : "") + heading + "\n" +
          (hasHeading_ ? "" : layout_.Header()));
    hasHeading_ = true;
}

void TalkScreen::Write(const std::string& lines)
{
    ++rows_;
    console_.Write(lines);
}

} // namespace marvane::tool
