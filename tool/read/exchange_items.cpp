// Items that were fetched, on their way to the exchange that they belong to.
#include <algorithm>

#include "pdu/pdu_api.h"
#include "tool/read/exchange_rules.h"
#include "tool/read/exchanges.h"

namespace marvane::read {

namespace {

/// Items that wait for the handle of their ComPrimitive; the rest is forgotten.
constexpr std::size_t MostHeld = 256;

/// From the library's EXECUTING status to a time of its clock, else from one time of the log to another.
Latency PassedSince(std::optional<std::uint32_t> executingAt, std::uint32_t timestamp, LogTime from,
                    LogTime to)
{
    return Passed(executingAt ? Elapsed(*executingAt, timestamp) : std::nullopt, from, to);
}

} // namespace

Exchanges::Arrival Exchanges::ArrivalOf(const Item& item)
{
    Arrival arrival = {{LinkOf(*item.Fetch), item.Primitive.value_or(UndefinedHandle)},
                       item.Kind,
                       item.At,
                       item.Fetch->EndTime,
                       item.Timestamp,
                       item.Code,
                       std::string(item.CodeName),
                       item.Extra,
                       item.AcceptanceId,
                       {},
                       item.IsTxDoneValid ? item.TxDone : std::nullopt,
                       item.IsStartValid ? item.Start : std::nullopt,
                       {}};
    if (arrival.TxDone && arrival.Start)
        arrival.TransferTime = Elapsed(*arrival.TxDone, *arrival.Start);
    arrival.Result.Data.assign(item.Data.Shown.begin(), item.Data.Shown.end());
    arrival.Result.Size = item.Data.Size;
    arrival.Result.IsCut = item.Data.IsCut;
    arrival.Result.From = item.UniqueResponseId;
    arrival.Result.At = item.At;
    arrival.Result.Time = arrival.Time;
    return arrival;
}

void Exchanges::OnItem(const Item& item)
{
    if (!item.Fetch)
        return;
    if (!item.Primitive)
        return TakeStray(ArrivalOf(item));
    const Key key = {LinkOf(*item.Fetch), *item.Primitive};
    if (!openByHandle_.contains(key) && starting_.contains(key.On)) {
        // It may belong to the ComPrimitive whose handle is not known before its start returns.
        held_.push_back(ArrivalOf(item));
        if (held_.size() > MostHeld)
            held_.pop_front();
        return;
    }
    Take(ArrivalOf(item));
}

void Exchanges::TakeHeld(const LinkKey& link)
{
    if (starting_.contains(link)) {
        // Another start on this link is still out: keep what is not for those that are known now.
        std::deque<Arrival> rest;
        for (Arrival& arrival : held_)
            if (arrival.Of.On == link && openByHandle_.contains(arrival.Of))
                Take(std::move(arrival));
            else
                rest.push_back(std::move(arrival));
        held_ = std::move(rest);
        return;
    }
    std::deque<Arrival> all = std::move(held_);
    held_.clear();
    for (Arrival& arrival : all)
        if (arrival.Of.On == link)
            Take(std::move(arrival));
        else
            held_.push_back(std::move(arrival));
}

void Exchanges::Take(Arrival&& arrival)
{
    const auto found = openByHandle_.find(arrival.Of);
    if (found != openByHandle_.end())
        Apply(open_.find(found->second), std::move(arrival));
    else if (arrival.Kind == ItemKind::Result)
        TakeLate(std::move(arrival));
    else
        TakeStray(std::move(arrival));
}

void Exchanges::Apply(Slot slot, Arrival&& arrival)
{
    OpenExchange& open = slot->second;
    Exchange& exchange = open.What;
    exchange.EndTime = arrival.Time;
    if (arrival.Kind == ItemKind::Result) {
        AddAnswer(open, std::move(arrival));
    } else if (arrival.Kind == ItemKind::Error) {
        AddError(open, std::move(arrival));
    } else if (arrival.Kind == ItemKind::Status && arrival.Code == PDU_COPST_EXECUTING && !open.ExecutingAt) {
        open.ExecutingAt = arrival.Timestamp;
    } else if (arrival.Kind == ItemKind::Status &&
               (arrival.Code == PDU_COPST_FINISHED || arrival.Code == PDU_COPST_CANCELLED)) {
        exchange.IsEnded = true;
        exchange.Whole = PassedSince(open.ExecutingAt, arrival.Timestamp, exchange.Time, arrival.Time);
        open.IsCancelRequested = arrival.Code == PDU_COPST_CANCELLED;
        End(slot);
    }
}

void Exchanges::AddAnswer(OpenExchange& open, Arrival&& arrival)
{
    Exchange& exchange = open.What;
    auto us = arrival.TransferTime;
    if (open.ExecutingAt) {
        arrival.Result.SinceExecuting = arrival.Start.value_or(arrival.Timestamp) - *open.ExecutingAt;
        us = us ? us : Elapsed(*open.ExecutingAt, arrival.Timestamp);
        if (arrival.TxDone && !exchange.SentSinceExecuting)
            exchange.SentSinceExecuting = Elapsed(*open.ExecutingAt, *arrival.TxDone);
    }
    arrival.Result.After = Passed(us, exchange.Time, arrival.Time);
    arrival.Result.Kind =
        KindOf(arrival.Result, exchange.Request, arrival.AcceptanceId, open.NegativeAcceptances);
    ++exchange.AnswerCount;
    exchange.PendingCount += arrival.Result.Kind == AnswerKind::Pending;
    exchange.LastAnswerTime = arrival.Time;
    sink_.OnAnswer(exchange, arrival.Result);
    KeepAnswer(exchange, std::move(arrival.Result));
}

RequestError Exchanges::ErrorOf(Arrival&& arrival, LogTime begin, std::optional<std::uint32_t> executingAt)
{
    RequestError error;
    error.Code = arrival.Code;
    error.Name = std::move(arrival.CodeName);
    error.Extra = arrival.Extra;
    error.After = PassedSince(executingAt, arrival.Timestamp, begin, arrival.Time);
    if (executingAt)
        error.SinceExecuting = arrival.Timestamp - *executingAt;
    error.At = arrival.At;
    error.Time = arrival.Time;
    return error;
}

void Exchanges::AddError(OpenExchange& open, Arrival&& arrival)
{
    Exchange& exchange = open.What;
    const RequestError error = ErrorOf(std::move(arrival), exchange.Time, open.ExecutingAt);
    if (exchange.ErrorCode == 0) {
        exchange.ErrorCode = error.Code;
        exchange.ErrorName = error.Name;
        exchange.ExtraError = error.Extra;
        exchange.ErrorAfter = error.After;
        exchange.ErrorAt = error.At;
        exchange.ErrorTime = error.Time;
    }
    sink_.OnError(exchange, error);
}

void Exchanges::TakeStray(Arrival&& arrival)
{
    if (arrival.Kind != ItemKind::Result && arrival.Kind != ItemKind::Error)
        return;
    const LinkKey& on = arrival.Of.On;
    const std::shared_ptr<const Link> link = links_.Find(on.Session, on.Module, on.Link);
    if (arrival.Kind == ItemKind::Error)
        return sink_.OnStrayError(*link, ErrorOf(std::move(arrival), arrival.Time, {}));
    arrival.Result.After = {0, true};
    arrival.Result.Kind = KindOf(arrival.Result, {}, arrival.AcceptanceId, {});
    sink_.OnStrayAnswer(*link, arrival.Result);
}

void Exchanges::TakeLate(Arrival&& arrival)
{
    const auto ended = std::find_if(ended_.rbegin(), ended_.rend(),
                                    [&](const Ended& each) { return each.Of == arrival.Of; });
    if (ended == ended_.rend())
        return TakeStray(std::move(arrival));
    LateAnswer& late = ended->Late;
    late.What = std::move(arrival.Result);
    late.What.After = Passed(std::nullopt, late.RequestTime, arrival.Time);
    late.What.Kind = KindOf(late.What, late.Request, arrival.AcceptanceId, ended->NegativeAcceptances);
    late.AfterEndMs = std::max<std::int64_t>(arrival.Time - ended->EndTime, 0);
    sink_.OnLateAnswer(late);
}

} // namespace marvane::read
