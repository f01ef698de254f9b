// The worker thread, which runs ComPrimitives: it sends, collects the answers and signals events.
#include <algorithm>

#include "examples/sim_vci/faults.h"
#include "examples/sim_vci/vci.h"

namespace sim {

namespace {

using std::chrono::milliseconds;

constexpr milliseconds AnswerTime(2);
constexpr milliseconds PendingTime(20);

bool IsPending(const Bytes& answer)
{
    return answer.size() == 3 && answer[0] == 0x7F && answer[2] == 0x78;
}

bool Matches(const Expected& expected, const Bytes& answer, UNUM32 uniqueRespId)
{
    if (expected.Positive == (answer[0] == 0x7F) || expected.Pattern.size() > answer.size())
        return false;
    for (std::size_t i = 0; i < expected.Pattern.size(); ++i)
        if ((answer[i] & expected.Mask[i]) != (expected.Pattern[i] & expected.Mask[i]))
            return false;
    const auto& ids = expected.UniqueRespIds;
    return ids.empty() || std::find(ids.begin(), ids.end(), uniqueRespId) != ids.end();
}

/// The acceptance id of the first expected response that matches an answer, if any does.
std::optional<UNUM32> Accept(const ComPrimitive& primitive, const Bytes& answer, UNUM32 uniqueRespId)
{
    if (primitive.Responses.empty())
        return 0;
    for (const Expected& expected : primitive.Responses)
        if (Matches(expected, answer, uniqueRespId))
            return expected.AcceptanceId;
    return std::nullopt;
}

/// The answers of the control unit, with its faults.
std::vector<Bytes> AnswersOf(Ecu& unit, const Bytes& request)
{
    if (CurrentFaults.Silences(request))
        return {};
    if (const auto code = CurrentFaults.Refusal(request); code && !request.empty())
        return {{0x7F, request[0], *code}};
    return unit.Answer(request);
}

void SetFlags(Item& item, PDU_FLAG_DATA& flags, std::initializer_list<UNUM8> bytes)
{
    flags.NumFlagBytes = static_cast<UNUM32>(bytes.size());
    flags.pFlagData = item.Bytes(bytes);
}

} // namespace

void Vci::Run()
{
    std::unique_lock hold(Mutex);
    systemThread_ = ThisSystemThread();
    SetWorker(Worker::Running);
    RunUntilStopped(hold);
    SetWorker(Worker::Left);
    const bool unloading = unloading_;
    hold.unlock();
    if (unloading)
        SleepUntilTerminated();
}

void Vci::RunUntilStopped(std::unique_lock<std::mutex>& hold)
{
    while (!stopping_) {
        const auto due = NextDue();
        if (!due || *due > Clock::now()) {
            hold.unlock();
            alarm_.Wait(due);
            hold.lock();
            continue;
        }
        Outbox outbox;
        DeliverLateAnswers(outbox);
        for (auto& [handle, primitive] : Primitives)
            if (primitive.Status <= PDU_COPST_EXECUTING && primitive.Due <= Clock::now())
                Step(outbox, primitive);
        std::erase_if(Primitives,
                      [](const auto& entry) { return entry.second.Status > PDU_COPST_EXECUTING; });
        hold.unlock();
        Deliver(outbox);
        hold.lock();
    }
}

std::optional<Clock::time_point> Vci::NextDue() const
{
    std::optional<Clock::time_point> next;
    for (const auto& [handle, primitive] : Primitives)
        if (primitive.Status <= PDU_COPST_EXECUTING && (!next || primitive.Due < *next))
            next = primitive.Due;
    for (const ComPrimitive& late : Late)
        if (IsTimeOver(late) && (!next || late.Due < *next))
            next = late.Due;
    return next;
}

void Vci::Step(Outbox& outbox, ComPrimitive& primitive)
{
    Link& link = Links.at(primitive.Link);
    const bool first = primitive.Status == PDU_COPST_IDLE;
    if (first) {
        primitive.Status = PDU_COPST_EXECUTING;
        PutStatus(outbox, primitive.Link, &primitive, PDU_COPST_EXECUTING);
    }
    switch (primitive.Type) {
    case PDU_COPT_SENDRECV:
        return primitive.Pending.empty() ? Send(outbox, primitive, link) : Receive(outbox, primitive, link);
    case PDU_COPT_DELAY:
        if (!first)
            return Finish(outbox, primitive);
        primitive.Due = Clock::now() + milliseconds(primitive.Time);
        return;
    case PDU_COPT_STARTCOMM:
        link.Status = PDU_CLLST_COMM_STARTED;
        PutStatus(outbox, primitive.Link, nullptr, link.Status);
        return Finish(outbox, primitive);
    case PDU_COPT_STOPCOMM:
        link.Status = PDU_CLLST_ONLINE;
        PutStatus(outbox, primitive.Link, nullptr, link.Status);
        return Finish(outbox, primitive);
    case PDU_COPT_UPDATEPARAM:
        link.P2Max = link.Parameters.P2Max();
        PutInfo(outbox, PDU_INFO_PHYS_COMPARAM_CHG);
        return Finish(outbox, primitive);
    case PDU_COPT_RESTORE_PARAM:
        link.Parameters = ComParams();
        link.P2Max = link.Parameters.P2Max();
        return Finish(outbox, primitive);
    default:
        return Finish(outbox, primitive);
    }
}

void Vci::Send(Outbox& outbox, ComPrimitive& primitive, Link& link)
{
    if (primitive.SendCycles >= 0 && primitive.Sent >= primitive.SendCycles)
        return Finish(outbox, primitive);
    ++primitive.Sent;
    outbox.Reports.push_back({link.Resource, true, primitive.Data});
    primitive.SentAt = Now();
    for (Bytes& answer : AnswersOf(link.Unit, primitive.Data))
        primitive.Pending.push_back(std::move(answer));
    if (primitive.ReceiveCycles == 0)
        primitive.Pending.clear();
    else if (primitive.Pending.empty())
        // No answer: an empty one is delivered when the time is up, as a timeout.
        primitive.Pending.push_back({});
    const milliseconds answerTime = AnswerTime + CurrentFaults.Delay(primitive.Data);
    const milliseconds timeout(primitive.P2Max);
    if (!primitive.Pending.empty() && !primitive.Pending.front().empty() && answerTime > timeout) {
        Late.push_back(primitive);
        Late.back().Due = Clock::now() + answerTime;
        primitive.Pending = {Bytes()};
    }
    primitive.Due = Clock::now() + (primitive.Pending.empty()           ? milliseconds(primitive.Time)
                                    : primitive.Pending.front().empty() ? timeout
                                                                        : answerTime);
}

bool Vci::IsTimeOver(const ComPrimitive& late) const
{
    const auto original = Primitives.find(late.Handle);
    return original == Primitives.end() || original->second.Sent > late.Sent;
}

void Vci::DeliverLateAnswers(Outbox& outbox)
{
    const auto isDue = [this, now = Clock::now()](const ComPrimitive& late) {
        return late.Due <= now && IsTimeOver(late);
    };
    for (const ComPrimitive& late : Late)
        if (isDue(late))
            for (const Bytes& answer : late.Pending)
                PutAnswer(outbox, late, Links.at(late.Link), answer);
    std::erase_if(Late, isDue);
}

bool Vci::PutAnswer(Outbox& outbox, const ComPrimitive& primitive, const Link& link, const Bytes& answer)
{
    outbox.Reports.push_back({link.Resource, false, answer});
    const auto acceptanceId = Accept(primitive, answer, link.UniqueRespId());
    if (acceptanceId && CurrentFaults.LosesResult()) {
        Notify(outbox, primitive.Link, PDU_EVT_DATA_LOST);
        return false;
    }
    if (acceptanceId)
        PutResult(outbox, primitive, link, *acceptanceId, answer);
    return true;
}

void Vci::Receive(Outbox& outbox, ComPrimitive& primitive, Link& link)
{
    const Bytes answer = std::move(primitive.Pending.front());
    primitive.Pending.pop_front();
    bool isLost = false;
    if (answer.empty())
        PutTimeout(outbox, primitive, link);
    else
        isLost = !PutAnswer(outbox, primitive, link, answer);
    primitive.Due = Clock::now() + (IsPending(answer)           ? PendingTime
                                    : primitive.Pending.empty() ? milliseconds(primitive.Time)
                                                                : AnswerTime);
    // A loss is signalled before the end: Send makes the end then.
    if (!isLost && primitive.Pending.empty() && primitive.SendCycles >= 0 &&
        primitive.Sent >= primitive.SendCycles)
        Finish(outbox, primitive);
}

void Vci::Finish(Outbox& outbox, ComPrimitive& primitive)
{
    primitive.Status = PDU_COPST_FINISHED;
    PutStatus(outbox, primitive.Link, &primitive, PDU_COPST_FINISHED);
}

void Vci::PutResult(Outbox& outbox, const ComPrimitive& primitive, const Link& link, UNUM32 acceptanceId,
                    const Bytes& answer)
{
    Item item;
    auto* const event = item.New<PDU_EVENT_ITEM>();
    auto* const result = item.New<PDU_RESULT_DATA>();
    SetFlags(item, result->RxFlag, {0x00, 0x00, 0x00, 0x40});
    SetFlags(item, result->TimestampFlags, {0xC0, 0x00, 0x00, 0x00});
    result->UniqueRespIdentifier = link.UniqueRespId();
    result->AcceptanceId = acceptanceId;
    result->StartMsgTimestamp = Now();
    result->TxMsgDoneTimestamp = primitive.SentAt;
    if (primitive.ExtraInfo) {
        result->pExtraInfo = item.New<PDU_EXTRA_INFO>();
        *result->pExtraInfo = {4, 2, item.Bytes({0x00, 0x00, 0x07, 0xE8}), item.Bytes({0x55, 0x55})};
    }
    result->NumDataBytes = static_cast<UNUM32>(answer.size());
    result->pDataBytes = item.Bytes(answer);
    *event = {PDU_IT_RESULT, primitive.Handle, primitive.Tag, Now(), result};
    PutEvent(outbox, primitive.Link, OpenItems.Publish(std::move(item), event));
}

void Vci::PutTimeout(Outbox& outbox, const ComPrimitive& primitive, Link& link)
{
    link.Error = {PDU_ERR_EVT_RX_TIMEOUT, primitive.Handle, Now()};
    Item item;
    auto* const event = item.New<PDU_EVENT_ITEM>();
    auto* const error = item.New<PDU_ERROR_DATA>();
    *error = {PDU_ERR_EVT_RX_TIMEOUT, 0};
    *event = {PDU_IT_ERROR, primitive.Handle, primitive.Tag, Now(), error};
    PutEvent(outbox, primitive.Link, OpenItems.Publish(std::move(item), event));
}

} // namespace sim
