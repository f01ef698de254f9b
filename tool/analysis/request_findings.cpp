// Findings about requests: refused, silent and late ones, each with its why.
#include <algorithm>

#include "tool/analysis/findings.h"
#include "tool/analysis/link_words.h"
#include "tool/console/row_text.h"
#include "tool/read/call_text.h"
#include "tool/words/describe.h"

namespace marvane::tool {

namespace {

using read::Outcome;

// A request that went out so much later than the call is a reason for silence.
constexpr std::int64_t LateSendingMs = 50;

std::string RequestSubject(read::Bytes request, std::uint64_t size, const read::Link& link)
{
    const std::string unseen = size == 0 ? "request" : "request of " + Counted(size, "byte");
    const std::string bytes = request.empty() ? unseen : BytesText(request, size, 6, 4);
    const std::string on = LinkText(link);
    return on.empty() ? bytes : bytes + ", " + on;
}

std::string After(const std::optional<read::Latency>& latency)
{
    return latency ? ", after " + MillisecondsText(*latency) + " ms" : std::string();
}

} // namespace

std::vector<std::string> Findings::WhatIsInFlight(const read::Call& call)
{
    if (call.Which == read::Function::StartComPrimitive) {
        std::vector<std::uint8_t> storage;
        const read::Payload request = read::RequestOf(call, storage);
        if (request.Shown.empty())
            return {};
        const words::Dialect dialect = DialectOf(*Links().Find(call));
        const std::string summary = words::DescribeRequest(dialect, request.Shown).Summary;
        return {"its request: " + BytesText(request.Shown, request.Size, 20, 16) +
                (summary.empty() ? "" : ", " + summary)};
    }
    const std::string_view command = read::CommandName(call.Arguments);
    if (call.Which != read::Function::IoCtl || command.empty())
        return {};
    return {"its command: " + Printable(command)};
}

std::vector<std::string> Findings::WhySilent(const read::Exchange& exchange) const
{
    std::vector<std::string> why;
    if (const std::int64_t sent = exchange.SentAfterMs.value_or(0); sent >= LateSendingMs)
        why.push_back(WhySentLate(exchange, sent));
    const auto loss = std::ranges::find_if(losses_, [&](const Loss& each) {
        return each.Session == exchange.Session &&
               each.Link.value_or(exchange.On->Handle) == exchange.On->Handle && each.At > exchange.At &&
               each.Time <= exchange.EndTime;
    });
    if (loss != losses_.end())
        why.push_back("perhaps lost: the event queue overflowed meanwhile (line " + PositionText(loss->At) +
                      ")");
    return why;
}

std::string Findings::WhySentLate(const read::Exchange& exchange, std::int64_t sent) const
{
    std::string why = "sent " + Grouped(static_cast<std::uint64_t>(sent)) + " ms after the call";
    const LongCallback* longest = nullptr;
    for (const LongCallback& callback : callbacks_) {
        const bool isMeanwhile = callback.Session == exchange.Session &&
                                 callback.Begin.Ms < exchange.Time.Ms + sent && callback.End > exchange.Time;
        if (isMeanwhile && (!longest || callback.End - callback.Begin > longest->End - longest->Begin))
            longest = &callback;
    }
    if (longest)
        why += "; meanwhile a callback was open for " +
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
    finding.Text = exchange.ErrorCode == 0
                       ? "no answer" + After(exchange.Whole)
                       : ErrorText(exchange.Session, exchange.ErrorName, exchange.ErrorCode);
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

} // namespace marvane::tool
