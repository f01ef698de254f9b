#include "tool/read/exchanges.h"

#include <algorithm>

#include "tool/read/call_text.h"
#include "tool/read/exchange_rules.h"

namespace marvane::read {

namespace {

// Late answers and reports are looked for among so many; the rest is forgotten.
constexpr std::size_t MostEnded = 256;
constexpr std::size_t MostSent = 64;

} // namespace

void ExchangeSink::OnRequest(const Exchange&) {}
void ExchangeSink::OnUnstarted(const Exchange&) {}
void ExchangeSink::OnAnswer(const Exchange&, const Answer&) {}
void ExchangeSink::OnError(const Exchange&, const RequestError&) {}
void ExchangeSink::OnLateAnswer(const LateAnswer&) {}
void ExchangeSink::OnStrayAnswer(const Link&, const Answer&) {}
void ExchangeSink::OnStrayError(const Link&, const RequestError&) {}

Exchanges::LinkKey Exchanges::LinkOf(const Call& call)
{
    return {call.Session, call.Module.value_or(UndefinedHandle), call.Link.value_or(UndefinedHandle)};
}

void Exchanges::OnEntry(const Call& call, bool isEvent)
{
    if (!isEvent && call.Which == Function::StartComPrimitive)
        starting_[LinkOf(call)].push_back(call.Begin);
}

void Exchanges::OnCall(const Call& call)
{
    const bool isGood = call.State == CallState::Returned && call.Status == 0u;
    switch (call.Which) {
    case Function::StartComPrimitive:
        if (isGood)
            Start(call);
        else if (call.State == CallState::InFlight)
            TellUnreturned(call);
        else if (call.State == CallState::Returned && call.Status)
            TellRefused(call);
        EndStarting(call);
        break;
    case Function::CancelComPrimitive:
        if (isGood && call.Primitive)
            if (const auto found = openByHandle_.find({LinkOf(call), *call.Primitive});
                found != openByHandle_.end())
                open_.at(found->second).IsCancelRequested = true;
        break;
    case Function::DestroyComLogicalLink:
        if (isGood)
            EndWhere([link = LinkOf(call)](const LinkKey& key) { return key == link; });
        break;
    case Function::ModuleDisconnect:
        if (isGood)
            EndWhere([link = LinkOf(call)](const LinkKey& key) {
                return key.Session == link.Session && key.Module == link.Module;
            });
        break;
    case Function::Destruct:
        EndWhere([&](const LinkKey& key) { return key.Session == call.Session; });
        break;
    default:
        break;
    }
    links_.OnCall(call);
}

/// A start is over: the items that waited for it can be given to their requests.
void Exchanges::EndStarting(const Call& start)
{
    const LinkKey link = LinkOf(start);
    if (const auto starting = starting_.find(link); starting != starting_.end()) {
        std::erase(starting->second, start.Begin);
        if (starting->second.empty())
            starting_.erase(starting);
    }
    TakeHeld(link);
}

Exchanges::OpenExchange Exchanges::Begin(const Call& start)
{
    OpenExchange open;
    Exchange& exchange = open.What;
    exchange.Seq = start.Seq;
    exchange.Session = start.Session;
    exchange.Thread = start.Thread;
    exchange.At = start.Begin;
    exchange.Time = start.BeginTime;
    exchange.EndTime = start.EndTime;
    exchange.On = links_.Find(start);
    exchange.HasHandles = start.HasArguments;
    exchange.Primitive = start.Primitive;
    if (const auto type = Argument(start.Arguments, "CoPType")) {
        exchange.Type = NumberInValue(*type).value_or(0);
        exchange.TypeName = NameInValue(*type);
    }
    std::vector<std::uint8_t> storage;
    const Payload request = RequestOf(start, storage);
    exchange.Request.assign(request.Shown.begin(), request.Shown.end());
    exchange.RequestSize = request.Size;
    exchange.IsRequestCut = request.IsCut;
    exchange.IsRequestKnown = request.IsPresent;
    ReadControlData(start, exchange, open.NegativeAcceptances);
    exchange.IsSuppressed = rule_ && rule_(*exchange.On, exchange.Request);
    return open;
}

void Exchanges::Start(const Call& start)
{
    OpenExchange open = Begin(start);
    FindSending(open.What);
    sink_.OnRequest(open.What);
    if (!open.What.Primitive) {
        // Without its handle nothing can be found that belongs to it.
        sink_.OnExchange(open.What);
        return;
    }
    const Key key = {LinkOf(start), *open.What.Primitive};
    if (const auto old = openByHandle_.find(key); old != openByHandle_.end())
        End(open_.find(old->second));
    if (open_.size() >= MostOpen)
        End(open_.begin());
    openByHandle_[key] = open.What.Seq;
    open_.emplace(open.What.Seq, std::move(open));
}

/// Only if it carried a request: of other ComPrimitives there is nothing to see.
void Exchanges::TellRefused(const Call& start)
{
    Exchange request = Begin(start).What;
    if (request.RequestSize == 0)
        return;
    request.Primitive.reset(); // what was written there is no handle
    request.Result = Outcome::NotStarted;
    request.StartError = *start.Status;
    request.StartErrorName = start.StatusName;
    sink_.OnUnstarted(request);
}

void Exchanges::TellUnreturned(const Call& start)
{
    Exchange request = Begin(start).What;
    request.Result = Outcome::NeverReturned;
    FindSending(request);
    sink_.OnUnstarted(request);
}

void Exchanges::OnComms(const Comms& report)
{
    if (report.Way != Direction::ToTarget || report.Data.Shown.empty())
        return;
    SentReport sent = {
        report.Session, report.At, report.Time, {report.Data.Shown.begin(), report.Data.Shown.end()}};
    // The oldest of the latest requests that has these bytes and waits for them.
    auto oldest = open_.end();
    std::size_t looked = 0;
    for (auto at = open_.end(); at != open_.begin() && looked < MostSent; ++looked) {
        --at;
        const Exchange& exchange = at->second.What;
        if (exchange.Session == sent.Session && !exchange.SentAfterMs && exchange.Request == sent.Data)
            oldest = at;
    }
    if (oldest != open_.end()) {
        oldest->second.What.SentAfterMs = sent.Time - oldest->second.What.Time;
        oldest->second.What.SentAt = sent.At;
        return;
    }
    sent_.push_back(std::move(sent));
    if (sent_.size() > MostSent)
        sent_.pop_front();
}

/// A report that came before the start returned.
void Exchanges::FindSending(Exchange& exchange)
{
    if (exchange.Request.empty())
        return;
    const auto found = std::ranges::find_if(sent_, [&](const SentReport& sent) {
        return sent.Session == exchange.Session && sent.At > exchange.At && sent.Data == exchange.Request;
    });
    if (found == sent_.end())
        return;
    exchange.SentAfterMs = found->Time - exchange.Time;
    exchange.SentAt = found->At;
    sent_.erase(found);
}

void Exchanges::End(Slot slot)
{
    OpenExchange open = std::move(slot->second);
    Exchange& exchange = open.What;
    const Key key = {{exchange.Session, exchange.On->Module, exchange.On->Handle}, *exchange.Primitive};
    openByHandle_.erase(key);
    open_.erase(slot);
    exchange.Result = OutcomeOf(exchange, open.IsCancelRequested);
    ended_.push_back({key,
                      {exchange.Seq,
                       exchange.Session,
                       exchange.At,
                       exchange.Time,
                       exchange.On,
                       *exchange.Primitive,
                       exchange.Request,
                       {},
                       0},
                      exchange.EndTime,
                      std::move(open.NegativeAcceptances)});
    if (ended_.size() > MostEnded)
        ended_.pop_front();
    sink_.OnExchange(exchange);
}

void Exchanges::EndWhere(const auto& isMeant)
{
    for (auto at = open_.begin(); at != open_.end();) {
        const auto slot = at++;
        const Link& link = *slot->second.What.On;
        if (isMeant(LinkKey{link.Session, link.Module, link.Handle}))
            End(slot);
    }
}

void Exchanges::Finish()
{
    EndWhere([](const LinkKey&) { return true; });
}

std::optional<Position> Exchanges::FirstOpen() const
{
    std::optional<Position> first;
    if (!open_.empty())
        first = open_.begin()->second.What.At;
    for (const auto& [link, starts] : starting_)
        for (const Position& at : starts)
            first = first ? std::min(*first, at) : at;
    return first;
}

} // namespace marvane::read
