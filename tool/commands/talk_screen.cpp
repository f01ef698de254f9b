#include "tool/commands/talk_screen.h"

#include <algorithm>

#include "pdu/pdu_api.h"
#include "tool/analysis/link_words.h"
#include "tool/console/row_text.h"

namespace marvane::tool {

TalkScreen::TalkScreen(Console& console, const std::vector<read::LogFile>& files, TalkFilter filter)
    : console_(console), files_(files), filter_(std::move(filter)), layout_(console)
{
}

void TalkScreen::OnSession(const read::Session& session)
{
    Conversation::OnSession(session);
    begins_[session.Number] = session.BeginTime;
    hints_.OnSession(session);
}

void TalkScreen::OnProblem(const read::Problem& problem)
{
    ComplainAbout(problem, files_, console_);
}

void TalkScreen::OnUtterance(const Utterance& utterance)
{
    if (isByLink_)
        Turn(*std::visit([](const auto& each) { return each.On; }, utterance));
    if (const auto* exchange = std::get_if<read::Exchange>(&utterance))
        Show(*exchange);
    else if (const auto* change = std::get_if<read::ParamChange>(&utterance))
        Show(*change);
    else
        Show(std::get<read::LateAnswer>(utterance));
}

/// Goes on with the page of a link.
void TalkScreen::Turn(const read::Link& link)
{
    const auto [place, isNew] = pages_.try_emplace({link.Session, link.Module, link.Handle});
    page_ = &place->second;
    if (isNew)
        page_->Number = pages_.size() - 1;
}

read::LogTime TalkScreen::BeginOf(std::uint32_t session, read::LogTime otherwise) const
{
    const auto found = begins_.find(session);
    return found == begins_.end() ? otherwise : found->second;
}

void TalkScreen::Show(const read::Exchange& exchange)
{
    if (IsByTheWay(exchange) || !filter_.Accepts(*exchange.On))
        return;
    const auto change = states_.Change(exchange);
    if (!filter_.Accepts(exchange))
        return;
    Count(exchange);
    read::Exchange shown = exchange;
    shown.IsRedacted = redactor_ && redactor_->IsChanged(exchange);
    if (!page_->Fold.Takes(shown)) {
        WriteFold(*page_);
        WriteHeadings(exchange.On, exchange.Session, exchange.Time);
        BeginFold(shown);
    }
    if (!change || filter_.IsForRequests())
        return;
    WriteFold(*page_);
    const read::LogTime at = std::max(exchange.EndTime, exchange.Time);
    Write(layout_.Remark(SecondsText(BeginOf(exchange.Session, at), at), *change, ""));
}

void TalkScreen::Show(const read::ParamChange& change)
{
    if (filter_.IsForRequests() || !filter_.Accepts(*change.On))
        return;
    WriteFold(*page_);
    WriteHeadings(change.On, change.Session, change.Time);
    Write(layout_.Remark(SecondsText(BeginOf(change.Session, change.Time), change.Time), ChangeText(change),
                         PositionText(change.At)));
}

void TalkScreen::Show(const read::LateAnswer& late)
{
    if (filter_.IsForRequests() || !filter_.Accepts(*late.On))
        return;
    WriteFold(*page_);
    WriteHeadings(late.On, late.Session, late.What.Time);
    ++counts_.Late;
    const RequestText request = {LateText(late), {}};
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

void TalkScreen::BeginFold(const read::Exchange& exchange)
{
    if (isByLink_ && ++openFolds_ > MostFolds) {
        Page* const current = page_;
        for (auto& [key, page] : pages_)
            WriteFold(page);
        page_ = current;
        openFolds_ = 1;
    }
    page_->Fold.Begin(exchange);
}

void TalkScreen::WriteFold(Page& page)
{
    if (page.Fold.IsEmpty())
        return;
    page_ = &page;
    Write(page.Fold.Lines(layout_, BeginOf(page.Fold.Session(), page.Fold.Time())));
    page.Fold.Clear();
    openFolds_ -= isByLink_ ? 1 : 0;
}

void TalkScreen::FinishFold()
{
    if (isByLink_)
        WritePages();
    else
        WriteFold(whole_);
}

/// Writes the links one after the other.
void TalkScreen::WritePages()
{
    std::vector<Page*> inOrder(pages_.size());
    for (auto& [key, page] : pages_) {
        WriteFold(page);
        inOrder[page.Number] = &page;
    }
    page_ = &whole_;
    isByLink_ = false;
    for (const Page* const page : inOrder)
        if (page->On) {
            WriteHeadings(*page->On, page->Session, page->Time);
            texts_.Read(page->Number, [this](std::string_view text) { console_.Write(text); });
        }
}

/// The headings of the next row. Those of a page of a link are written with it.
void TalkScreen::WriteHeadings(const std::shared_ptr<const read::Link>& link, std::uint32_t session,
                               read::LogTime time)
{
    if (!isByLink_)
        return WriteHeadings(*link, session, time);
    if (page_->On)
        return;
    page_->On = link;
    page_->Session = session;
    page_->Time = time;
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
    if (isByLink_)
        texts_.Add(page_->Number, lines);
    else
        console_.Write(lines);
}

} // namespace marvane::tool
