#include "tool/export/capture_requests.h"

#include <algorithm>

#include "tool/analysis/talk_rows.h"
#include "tool/export/capture_packets.h"

namespace marvane::tool::pcapng {

/// When an answer or error came: by the library's clock if that can be joined to the log's, else when it was
/// fetched. Never before its request.
std::int64_t CaptureRequests::TimeOf(const read::Exchange& request,
                                     std::optional<std::uint32_t> sinceExecuting, const read::Latency& after,
                                     read::LogTime fetched)
{
    constexpr std::int64_t round = 1LL << 32; // the library's clock wraps around
    const std::int64_t sent = out_.Queue().TimeOf(request.Seq);
    const std::int64_t begun = out_.MicrosecondsOf(request.Time);
    const std::int64_t seen = out_.MicrosecondsOf(fetched);
    std::int64_t us = seen;
    if (sinceExecuting)
        us = begun + *sinceExecuting + (seen - begun - *sinceExecuting + round / 2) / round * round;
    else if (!after.IsByLog && request.AnswerCount <= 1)
        us = begun + static_cast<std::int64_t>(after.Us);
    return std::max(us, sent);
}

/// By the library's clock if it says so.
std::int64_t CaptureRequests::EndOf(const read::Exchange& exchange)
{
    const bool isByLibrary = exchange.Whole && !exchange.Whole->IsByLog;
    const std::int64_t us =
        isByLibrary ? out_.MicrosecondsOf(exchange.Time) + static_cast<std::int64_t>(exchange.Whole->Us)
                    : out_.MicrosecondsOf(exchange.EndTime);
    return std::max(us, out_.Queue().TimeOf(exchange.Seq));
}

void CaptureRequests::OnRequest(const read::Exchange& request)
{
    QueuedPacket packet = RequestPacket(request, out_.LineText(request.At));
    packet.Interface = out_.Interfaces().Of(*request.On);
    packet.Us = out_.MicrosecondsOf(request.Time);
    out_.MarkRedacted(packet, read::Bytes(request.Request));
    out_.Put(std::move(packet), request.Time);
}

void CaptureRequests::AddAnswer(const read::Link& link, const read::Answer& answer, std::uint64_t request,
                                std::int64_t us, const std::string& about)
{
    QueuedPacket packet = AnswerPacket(link, answer, about, out_.LineText(answer.At));
    packet.Interface = out_.Interfaces().Of(link);
    packet.Us = us;
    packet.About = request;
    out_.MarkRedacted(packet, read::Bytes(answer.Data));
    out_.Put(std::move(packet), answer.Time);
}

void CaptureRequests::OnAnswer(const read::Exchange& request, const read::Answer& answer)
{
    if (request.AnswerCount == 1 && request.SentSinceExecuting)
        out_.Queue().Move(request.Seq, out_.MicrosecondsOf(request.Time) + *request.SentSinceExecuting);
    const std::string number =
        request.AnswerCount > 1 ? "answer " + std::to_string(request.AnswerCount) : "answer";
    AddAnswer(*request.On, answer, request.Seq,
              TimeOf(request, answer.SinceExecuting, answer.After, answer.Time),
              number + " to %" + AfterText(answer.After));
}

void CaptureRequests::OnLateAnswer(const read::LateAnswer& late)
{
    AddAnswer(*late.On, late.What, late.Seq,
              std::max(out_.MicrosecondsOf(late.What.Time), out_.Queue().TimeOf(late.Seq)),
              "late answer to %, " + std::to_string(late.AfterEndMs) + " ms after its end");
}

void CaptureRequests::OnStrayAnswer(const read::Link& link, const read::Answer& answer)
{
    AddAnswer(link, answer, 0, out_.MicrosecondsOf(answer.Time), "answer to no request that is in the log");
}

void CaptureRequests::OnError(const read::Exchange& request, const read::RequestError& error)
{
    QueuedPacket packet;
    SetText(packet, Level::Error, CodeText(error.Name, error.Code));
    packet.Interface = out_.Interfaces().Of(*request.On);
    packet.Us = TimeOf(request, error.SinceExecuting, error.After, error.Time);
    packet.About = request.Seq;
    packet.Comment = "error of %" + AfterText(error.After) + ", " + out_.LineText(error.At);
    out_.Put(std::move(packet), error.Time);
}

void CaptureRequests::OnStrayError(const read::Link& link, const read::RequestError& error)
{
    out_.PutText(Level::Error, CodeText(error.Name, error.Code), link, error.Time, error.At);
}

/// Requests that were answered show their end by their answers.
void CaptureRequests::OnExchange(const read::Exchange& exchange)
{
    out_.Queue().Forget(exchange.Seq);
    const bool isSilent = exchange.Result == read::Outcome::Silent && exchange.ErrorCode == 0;
    if (exchange.Result != read::Outcome::Cancelled && !isSilent)
        return;
    const std::string bytes = RequestTextOf(exchange).Bytes;
    QueuedPacket packet;
    SetText(packet, isSilent ? Level::Error : Level::Note,
            (isSilent ? "no answer" : "cancelled") + (bytes.empty() ? "" : ": " + bytes));
    packet.Interface = out_.Interfaces().Of(*exchange.On);
    packet.Us = EndOf(exchange);
    packet.About = exchange.Seq;
    packet.Comment = "end of %" + (exchange.Whole ? AfterText(*exchange.Whole) : std::string());
    out_.Put(std::move(packet), exchange.EndTime);
}

} // namespace marvane::tool::pcapng
