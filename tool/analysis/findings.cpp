#include "tool/analysis/findings.h"

#include <algorithm>
#include <cstdio>

#include "pdu/pdu_api.h"
#include "tool/analysis/link_words.h"
#include "tool/console/row_text.h"
#include "tool/words/describe.h"

namespace marvane::tool {

namespace {

using read::CallState;

// Callbacks that may have held something up are remembered from this length on, and no more than so many.
constexpr std::int64_t LongCallbackMs = 20;
constexpr std::size_t MostCallbacks = 256;

constexpr std::uint32_t DataLostEvent = 0x802;
constexpr std::size_t MostLosses = 256;

std::string_view WithoutPrefix(std::string_view name, std::string_view prefix)
{
    return name.starts_with(prefix) ? name.substr(prefix.size()) : name;
}

std::string Code(std::uint32_t code)
{
    char text[16];
    std::snprintf(text, sizeof text, "(0x%04X)", code);
    return text;
}

/// "PDULockResource, link 2"
std::string SubjectText(std::string_view name, const read::Call& call)
{
    std::string subject(name);
    if (call.Module || call.Link) {
        read::Link link;
        link.Module = call.Module.value_or(read::UndefinedHandle);
        link.Handle = call.Link.value_or(read::UndefinedHandle);
        subject += ", " + LinkText(link);
    }
    return subject;
}

} // namespace

std::string_view FindingName(FindingKind kind)
{
    constexpr std::string_view names[] = {"failed_call", "refused",   "silent",      "late",
                                          "data_lost",   "in_flight", "cut",         "damaged",
                                          "not_loaded",  "item_leak", "empty_queue", "pending"};
    return names[static_cast<std::size_t>(kind)];
}

Findings::Findings() : exchanges_(static_cast<read::ExchangeSink&>(*this), SuppressesAnswer) {}

void Findings::OnSession(const read::Session& session)
{
    // The process has begun anew: nothing more comes of its former sessions.
    for (auto& [number, calls] : notLoaded_)
        if (calls.Process == session.Process)
            PutMoreNotLoaded(number, calls);
    processOf_[session.Number] = session.Process;
    hintsOf_[session.Number].OnSession(session);
    hints_.OnSession(session);
    names_.OnSession(session);
    std::vector<std::string>& why = whyNotLoaded_[session.Number];
    if (!session.Target.empty())
        why.push_back("could not be loaded: " + Printable(session.Target));
    if (!session.LoadFailure.empty())
        why.push_back(Printable(session.LoadFailure));
}

void Findings::UseNames(const MdfNames& names)
{
    names_ = names;
    Links().SetNames(names_.Names());
}

void Findings::OnEntry(const read::Call& call, bool isEvent)
{
    exchanges_.OnEntry(call, isEvent);
}

void Findings::Put(FindingKind kind, const read::Call& call, std::string text, std::vector<std::string> why)
{
    OnFinding({kind, call.Begin, call.BeginTime, call.Session, call.Seq, SubjectText(call.Name, call),
               std::move(text), std::move(why), 1});
}

/// An error of a link, a module or the API itself, which no request waits for.
void Findings::PutErrorItem(const read::Item& item)
{
    const read::Call& fetch = *item.Fetch;
    OnFinding({FindingKind::FailedCall, item.At, fetch.EndTime, fetch.Session, fetch.Seq,
               SubjectText("error item", fetch), ErrorText(fetch.Session, item.CodeName, item.Code),
               ExtraErrorText(fetch.Session, item.Extra), 1});
}

void Findings::PutFailed(const read::Call& call)
{
    const std::uint32_t status = call.Status.value_or(0);
    const std::string text = ErrorText(call.Session, call.StatusName, status);
    if (status == PDU_ERR_EVENT_QUEUE_EMPTY)
        return Put(FindingKind::EmptyQueue, call, text);
    const auto why = history_.Why(call);
    Put(FindingKind::FailedCall, call, text,
        why ? std::vector<std::string>{*why} : std::vector<std::string>());
}

/// "EVT_RX_TIMEOUT (0x0103)". What the log calls unknown may be an error of the library's own.
std::string Findings::ErrorText(std::uint32_t session, std::string_view name, std::uint32_t code) const
{
    const bool isUnknown = name.empty() || name.starts_with('<');
    const std::optional<std::string> own = isUnknown ? names_.ErrorText(session, code) : std::nullopt;
    const std::string_view known = WithoutPrefix(WithoutPrefix(name, "PDU_ERR_"), "PDU_");
    return own.value_or(Printable(known)) + " " + Code(code);
}

/// "extra error 4096: ERR_BUS_OFF", or nothing.
std::vector<std::string> Findings::ExtraErrorText(std::uint32_t session,
                                                  std::optional<std::uint32_t> number) const
{
    if (number.value_or(0) == 0)
        return {};
    const std::optional<std::string> text = names_.ErrorText(session, *number);
    return {"extra error " + std::to_string(*number) + (text ? ": " + *text : "")};
}

void Findings::PutUnfinished(const read::Call& call)
{
    if (call.State == CallState::Cut)
        return Put(FindingKind::Cut, call,
                   "its exit line was lost: the text outgrew the buffer of 15,000 bytes",
                   {"its status is not in the log; lower LogMaxPduBuff, LogFnDecodeArgs or LogFnDecodeRsps"});
    if (call.State == CallState::InFlight)
        return Put(FindingKind::InFlight, call, "entered, never returned: the log ends here",
                   WhatIsInFlight(call));
    if (call.State != CallState::NotLoaded)
        return;
    const auto [place, isFirst] =
        notLoaded_.try_emplace(call.Session, NotLoaded{processOf_[call.Session], call.Begin, call.BeginTime});
    if (isFirst)
        Put(FindingKind::NotLoaded, call, "called, but no target library is loaded (0x0020)",
            whyNotLoaded_[call.Session]);
    else
        ++place->second.More;
    if (call.Which == read::Function::Destruct)
        PutMoreNotLoaded(call.Session, place->second);
}

void Findings::OnCall(const read::Call& call)
{
    if (call.State != CallState::Returned)
        PutUnfinished(call);
    else if (call.Status.value_or(0) != 0)
        PutFailed(call);
    if (call.State == CallState::Returned && (call.IsCutIn || call.IsCutOut))
        Put(FindingKind::Cut, call,
            call.IsCutIn ? "its arguments are cut: they outgrew the buffer of 15,000 bytes"
                         : "its results are cut: they outgrew the buffer of 15,000 bytes");
    items_[call.Session].OnCall(call);
    if (call.Which == read::Function::Destruct)
        PutLeak(call);
    history_.OnCall(call);
    exchanges_.OnCall(call);
}

void Findings::PutLeak(const read::Call& destruct)
{
    ItemBalance& items = items_[destruct.Session];
    if (items.Given() <= items.Destroyed())
        return items.Forget();
    Put(FindingKind::ItemLeak, destruct,
        Counted(items.Given() - items.Destroyed(), "item") + " of " + Grouped(items.Given()) +
            " not destroyed",
        items.WhatIsOut());
    items.Forget();
}

void Findings::OnEvent(const read::Event& event)
{
    if (event.State == CallState::InFlight)
        Put(FindingKind::InFlight, event, "entered, never returned: the log ends here");
    if (event.Type == DataLostEvent) {
        Put(FindingKind::DataLost, event, "PDU_EVT_DATA_LOST (0x0802): the event queue overflowed");
        losses_.push_back({event.Session, event.Link, event.Begin, event.BeginTime});
        if (losses_.size() > MostLosses)
            losses_.pop_front();
    }
    if (event.Duration() >= LongCallbackMs) {
        callbacks_.push_back({event.Session, event.Begin, event.BeginTime, event.EndTime});
        if (callbacks_.size() > MostCallbacks)
            callbacks_.pop_front();
    }
}

void Findings::OnItem(const read::Item& item)
{
    if (item.Fetch)
        items_[item.Fetch->Session].OnItem(item);
    cutPayloads_ += item.Data.IsCut && !item.Data.Shown.empty();
    if (item.Kind == read::ItemKind::Error && item.Code != 0 && item.Fetch && !item.Primitive)
        PutErrorItem(item);
    exchanges_.OnItem(item);
}

void Findings::OnComms(const read::Comms& report)
{
    exchanges_.OnComms(report);
}

void Findings::OnProblem(const read::Problem& problem)
{
    Finding finding = {
        FindingKind::Damaged, problem.At, problem.Time, problem.Session, problem.Seq, {}, {}, {}, 1};
    if (problem.What == read::ProblemKind::Damaged)
        finding.Text = "belongs to nothing: \"" + Shortened(Printable(problem.Text), 40) + "\"";
    else if (problem.What == read::ProblemKind::ExitWithoutEntry)
        finding.Text = "its first half is not in the log: \"" + Shortened(Printable(problem.Text), 40) + "\"";
    else if (problem.What == read::ProblemKind::LastLineCut)
        finding.Text = "the file ends inside this line";
    else
        return; // calls are found as calls, and trouble with a file is no fact of the log
    finding.Subject = "damaged line";
    OnFinding(finding);
}

/// The calls of a session that found no target library since the first, or since this was called.
void Findings::PutMoreNotLoaded(std::uint32_t session, NotLoaded& calls)
{
    if (calls.More > 0)
        OnFinding({.Kind = FindingKind::NotLoaded,
                   .At = calls.First,
                   .Time = calls.FirstTime,
                   .Session = session,
                   .Text = "and " + Counted(calls.More, "more call"),
                   .Count = calls.More});
    calls.More = 0;
}

void Findings::FinishFindings()
{
    exchanges_.Finish();
    for (auto& [session, calls] : notLoaded_)
        PutMoreNotLoaded(session, calls);
}

std::uint64_t Findings::ItemsGiven() const
{
    std::uint64_t sum = 0;
    for (const auto& [session, items] : items_)
        sum += items.Given();
    return sum;
}

std::uint64_t Findings::ItemsDestroyed() const
{
    std::uint64_t sum = 0;
    for (const auto& [session, items] : items_)
        sum += items.Destroyed();
    return sum;
}

} // namespace marvane::tool
