#include "tool/analysis/conversation.h"

#include "tool/analysis/link_words.h"

namespace marvane::tool {

namespace {

std::size_t BytesOf(const read::Exchange& exchange)
{
    std::size_t bytes = sizeof(Utterance) + exchange.Request.size();
    for (const read::Answer& answer : exchange.Answers)
        bytes += sizeof answer + answer.Data.size();
    return bytes;
}

} // namespace

read::Position PositionOf(const Utterance& utterance)
{
    if (const auto* late = std::get_if<read::LateAnswer>(&utterance))
        return late->What.At;
    if (const auto* change = std::get_if<read::ParamChange>(&utterance))
        return change->At;
    return std::get<read::Exchange>(utterance).At;
}

Conversation::Conversation() : exchanges_(static_cast<read::ExchangeSink&>(*this), SuppressesAnswer) {}

void Conversation::UseNames(const MdfNames& names)
{
    names_ = names;
    exchanges_.Links().SetNames(names_.Names());
}

void Conversation::OnEntry(const read::Call& call, bool isEvent)
{
    exchanges_.OnEntry(call, isEvent);
}

void Conversation::OnCall(const read::Call& call)
{
    exchanges_.OnCall(call);
    params_.OnCall(call);
}

void Conversation::OnItem(const read::Item& item)
{
    exchanges_.OnItem(item);
}

void Conversation::OnComms(const read::Comms& report)
{
    exchanges_.OnComms(report);
}

void Conversation::OnParam(const read::Param& param)
{
    if (auto change = params_.OnParam(param, Links())) {
        const read::Position at = change->At;
        Put(at, std::move(*change), sizeof(Utterance));
    }
}

void Conversation::OnExchange(const read::Exchange& exchange)
{
    Put(exchange.At, exchange, BytesOf(exchange));
}

void Conversation::OnLateAnswer(const read::LateAnswer& answer)
{
    Put(answer.What.At, answer, sizeof(Utterance) + answer.What.Data.size());
}

void Conversation::Put(read::Position at, Utterance&& utterance, std::size_t bytes)
{
    waiting_.emplace(at, Waiting{std::move(utterance), bytes});
    waitingBytes_ += bytes;
    GiveOut(waiting_.size() > MostWaiting || waitingBytes_ > MostWaitingBytes);
}

void Conversation::GiveOut(bool isForced)
{
    const auto open = exchanges_.FirstOpen();
    while (!waiting_.empty() && (isForced || !open || waiting_.begin()->first < *open)) {
        const auto first = waiting_.extract(waiting_.begin());
        waitingBytes_ -= first.mapped().Bytes;
        OnUtterance(first.mapped().What);
    }
}

void Conversation::FinishConversation()
{
    exchanges_.Finish();
    GiveOut(true);
}

} // namespace marvane::tool
