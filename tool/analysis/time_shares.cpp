#include "tool/analysis/time_shares.h"

#include <algorithm>

#include "pdu/pdu_api.h"
#include "tool/read/call_text.h"

namespace marvane::tool {

namespace {

using read::Function;

// What a log could make endless is bounded.
constexpr std::size_t MostOpen = 1'000;

// The clock is set back if it goes back further; else lines of several threads are out of order.
constexpr std::int64_t ClockStepMs = 1'000;

/// A request that does not go on until it is cancelled, and waits for an answer.
bool WaitsForAnswer(const read::Call& start)
{
    const auto type = read::Argument(start.Arguments, "CoPType");
    const auto isNumber = [&](std::string_view label, std::uint32_t number) {
        const auto value = read::ValueOf(start.LinesIn, label);
        return value && read::NumberInValue(*value) == number;
    };
    const auto sends = read::ValueOf(start.LinesIn, "NumSendCycles");
    return type && read::NumberInValue(*type) == std::uint32_t{PDU_COPT_SENDRECV} &&
           !(sends && sends->starts_with('-')) && !isNumber("NumReceiveCycles", 0);
}

} // namespace

TimeShares::Request TimeShares::RequestOf(const read::Exchange& exchange)
{
    return {{exchange.Session, exchange.On->Handle}, exchange.Seq};
}

TimeShares::Share TimeShares::Current() const
{
    if (!callbacks_.empty())
        return Application;
    if (!calls_.empty())
        return Library;
    return announced_.empty() && !requests_.empty() ? ControlUnit : Application;
}

void TimeShares::Advance(read::LogTime to)
{
    const std::int64_t passed = last_ ? to - *last_ : 0;
    if (passed < 0 && passed > -ClockStepMs)
        return;
    if (passed > 0)
        ms_[Current()] += std::max<std::int64_t>(part_.Within(to) - part_.Within(*last_), 0);
    last_ = to;
}

void TimeShares::OnSession(const read::Session& session)
{
    areKnown_ = areKnown_ && session.NumberOf("LogFnCalls").value_or(2) >= 2 &&
                session.NumberOf("LogFnDecodeRsps").value_or(2) >= 1;
}

void TimeShares::OnEntry(const read::Call& call, bool isEvent)
{
    if (call.Which == Function::Construct)
        last_.reset(); // what was before it is no time of a session
    Advance(call.BeginTime);
    std::vector<read::Position>& open = isEvent ? callbacks_ : calls_;
    if (open.size() < MostOpen)
        open.push_back(call.Begin);
    const LinkKey link = {call.Session, call.Link.value_or(read::UndefinedHandle)};
    if (isEvent && HasRequest(link))
        announced_.insert(link);
    else if (call.Which == Function::GetEventItem)
        announced_.erase(link);
}

void TimeShares::OnCall(const read::Call& call)
{
    if (call.State == read::CallState::Returned)
        Advance(call.EndTime);
    std::erase(calls_, call.Begin);
    if (call.State != read::CallState::Returned || call.Status != 0u)
        return;
    if (call.Which == Function::StartComPrimitive && WaitsForAnswer(call))
        Begin(call);
    else if (call.Which == Function::Disconnect || call.Which == Function::DestroyComLogicalLink)
        Forget({call.Session, call.Link.value_or(read::UndefinedHandle)});
    else if (call.Which == Function::Destruct)
        std::erase_if(requests_, [&](const Request& each) { return each.On.Session == call.Session; });
}

void TimeShares::OnEvent(const read::Event& event)
{
    if (event.State == read::CallState::Returned)
        Advance(event.EndTime);
    std::erase(callbacks_, event.Begin);
}

void TimeShares::Begin(const read::Call& start)
{
    if (requests_.size() < MostOpen)
        requests_.insert({{start.Session, start.Link.value_or(read::UndefinedHandle)}, start.Seq});
}

void TimeShares::Forget(const LinkKey& link)
{
    std::erase_if(requests_, [&](const Request& each) { return each.On == link; });
    announced_.erase(link);
}

bool TimeShares::HasRequest(const LinkKey& link) const
{
    const auto first = requests_.lower_bound({link, 0});
    return first != requests_.end() && first->On == link;
}

} // namespace marvane::tool
