#include "tool/commands/findings.h"

#include <algorithm>
#include <cstdio>

#include "pdu/pdu_api.h"
#include "tool/commands/link_words.h"
#include "tool/commands/row_text.h"
#include "tool/words/describe.h"

namespace marvane::tool {

namespace {

using read::CallState;
using read::Outcome;

// Callbacks that may have held something up are remembered from this length on, and no more than so many.
constexpr std::int64_t LongCallbackMs = 20;
constexpr std::size_t MostCallbacks = 256;

// A request that went out so much later than the call is a reason for silence.
constexpr std::int64_t LateSendingMs = 50;

constexpr std::uint32_t DataLostEvent = 0x802;

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

std::string RequestSubject(read::Bytes request, std::uint64_t size, const read::Link& link)
{
    const std::string unseen = size == 0 ? "request" : "request of " + Counted(size, "byte");
    const std::string bytes = request.empty() ? unseen : BytesText(request, size, 6, 4);
    const std::string on = LinkText(link);
    return on.empty() ? bytes : bytes + ", " + on;
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

std::string After(const std::optional<read::Latency>& latency)
{
    return latency ? ", after " + MillisecondsText(*latency) + " ms" : std::string();
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
               SubjectText("error item", fetch),
               ErrorText(fetch.Session, WithoutPrefix(item.CodeName, "PDU_ERR_"), item.Code),
               ExtraErrorText(fetch.Session, item.Extra), 1});
}

void Findings::PutFailed(const read::Call& call)
{
    const std::uint32_t status = call.Status.value_or(0);
    const std::string text =
        ErrorText(call.Session, WithoutPrefix(WithoutPrefix(call.StatusName, "PDU_ERR_"), "PDU_"), status);
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
    return own.value_or(std::string(name)) + " " + Code(code);
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
        return Put(FindingKind::InFlight, call, "entered, never returned: the log ends here");
    if (call.State != CallState::NotLoaded)
        return;
    const auto [place, isFirst] =
        notLoaded_.try_emplace(call.Session, NotLoaded{processOf_[call.Session], call.Begin});
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
    std::vector<std::string> why;
    for (const ItemBalance::OutItem& item : items.Out(5))
        why.push_back("not destroyed: item of " + item.By + ", line " + PositionText(item.At));
    Put(FindingKind::ItemLeak, destruct,
        Counted(items.Given() - items.Destroyed(), "item") + " of " + Grouped(items.Given()) +
            " not destroyed",
        std::move(why));
    items.Forget();
}

void Findings::OnEvent(const read::Event& event)
{
    if (event.State == CallState::InFlight)
        Put(FindingKind::InFlight, event, "entered, never returned: the log ends here");
    if (event.Type == DataLostEvent)
        Put(FindingKind::DataLost, event, "PDU_EVT_DATA_LOST (0x0802): the event queue overflowed");
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

std::vector<std::string> Findings::WhySilent(const read::Exchange& exchange) const
{
    std::vector<std::string> why;
    const std::int64_t sent = exchange.SentAfterMs.value_or(0);
    if (sent < LateSendingMs)
        return why;
    why.push_back("sent " + Grouped(static_cast<std::uint64_t>(sent)) + " ms after the call");
    const LongCallback* longest = nullptr;
    for (const LongCallback& callback : callbacks_) {
        const bool isMeanwhile = callback.Session == exchange.Session &&
                                 callback.Begin.Ms < exchange.Time.Ms + sent && callback.End > exchange.Time;
        if (isMeanwhile && (!longest || callback.End - callback.Begin > longest->End - longest->Begin))
            longest = &callback;
    }
    if (longest)
        why.back() += "; meanwhile a callback was open for " +
                      Grouped(static_cast<std::uint64_t>(longest->End - longest->Begin)) + " ms (" +
                      PositionText(longest->At) + ")";
    return why;
}

std::vector<std::string> Findings::WhyRefused(const read::Exchange& exchange) const
{
    const read::Answer* refusal = exchange.Deciding();
    if (refusal && !refusal->Nrc) {
        const auto hints = hintsOf_.find(exchange.Session);
        return {(hints == hintsOf_.end() ? SettingsHints() : hints->second).ForNegativeCode()};
    }
    const bool isUds = DialectOf(*exchange.On) == words::Dialect::Uds;
    constexpr std::uint8_t OfState[] = {0x22, 0x24, 0x33, 0x7E, 0x7F};
    if (isUds && refusal && refusal->Nrc && std::ranges::count(OfState, *refusal->Nrc))
        return {"at that moment: " + states_.Text(*exchange.On)};
    return {};
}

std::string Findings::RefusalText(const read::Exchange& exchange) const
{
    const read::Answer& refusal = *exchange.Deciding();
    if (!refusal.Nrc)
        return refusal.Size == 0 ? "negative answer" : "negative answer of " + Counted(refusal.Size, "byte");
    return BytesText(refusal.Data, refusal.Size, 9, 8) + "  " +
           NrcText(DialectOf(*exchange.On), *refusal.Nrc);
}

void Findings::FindRefused(const read::Exchange& exchange, Finding finding)
{
    finding.Kind = FindingKind::Refused;
    finding.Text = RefusalText(exchange) + After(exchange.FirstAnswer());
    finding.Why = WhyRefused(exchange);
    OnFinding(finding);
}

void Findings::FindSilent(const read::Exchange& exchange, Finding finding)
{
    finding.Text =
        exchange.ErrorCode == 0
            ? "no answer" + After(exchange.Whole)
            : ErrorText(exchange.Session, WithoutPrefix(exchange.ErrorName, "PDU_ERR_"), exchange.ErrorCode);
    if (exchange.ErrorAfter)
        finding.Text += ", " + MillisecondsText(*exchange.ErrorAfter) + " ms after " +
                        (exchange.ErrorAfter->IsByLog ? "the call" : "sending");
    finding.Why = WhySilent(exchange);
    for (std::string& extra : ExtraErrorText(exchange.Session, exchange.ExtraError))
        finding.Why.push_back(std::move(extra));
    const bool isAnswered = exchange.Result != Outcome::Silent;
    if (!isAnswered && exchange.Deciding()) {
        finding.Why.push_back("before it a " + RefusalText(exchange) + ", refused or pending");
        finding.Why.push_back(WhyRefused(exchange).front());
    }
    OnFinding(finding);
}

void Findings::OnExchange(const read::Exchange& exchange)
{
    Finding finding = {FindingKind::Silent,
                       exchange.At,
                       exchange.Time,
                       exchange.Session,
                       exchange.Seq,
                       RequestSubject(exchange.Request, exchange.RequestSize, *exchange.On),
                       {},
                       {},
                       1};
    cutPayloads_ += exchange.IsRequestCut && !exchange.Request.empty();
    if (exchange.PendingCount > 0) {
        Finding pending = finding;
        pending.Kind = FindingKind::Pending;
        pending.Count = exchange.PendingCount;
        pending.Text = Counted(exchange.PendingCount, "pending answer") + " (7F xx 78)";
        OnFinding(pending);
    }
    if (exchange.Result == Outcome::Refused)
        FindRefused(exchange, std::move(finding));
    else if (exchange.Result == Outcome::Silent ||
             (exchange.ErrorCode != 0 && exchange.Result != Outcome::Sent))
        FindSilent(exchange, std::move(finding));
    states_.Change(exchange);
    OnEnded(exchange);
}

void Findings::OnLateAnswer(const read::LateAnswer& late)
{
    const std::string bytes = BytesText(late.What.Data, late.What.Size, 9, 8);
    OnFinding({FindingKind::Late,
               late.What.At,
               late.What.Time,
               late.Session,
               late.Seq,
               RequestSubject(late.Request, late.Request.size(), *late.On),
               bytes + "  came " + std::to_string(late.AfterEndMs) + " ms after its end",
               {"requested in line " + PositionText(late.RequestAt)},
               1});
}

/// The calls of a session that found no target library since the first, or since this was called.
void Findings::PutMoreNotLoaded(std::uint32_t session, NotLoaded& calls)
{
    if (calls.More > 0)
        OnFinding({.Kind = FindingKind::NotLoaded,
                   .At = calls.First,
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
