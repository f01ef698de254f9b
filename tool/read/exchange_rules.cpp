#include "tool/read/exchange_rules.h"

#include <algorithm>
#include <string_view>

#include "pdu/pdu_api.h"
#include "tool/read/call_text.h"

namespace marvane::read {

namespace {

constexpr std::uint8_t NegativeResponse = 0x7F;
constexpr std::uint8_t ResponsePending = 0x78;

std::int32_t Cycles(std::string_view value)
{
    if (value == "<INFINITE>")
        return -1;
    if (value == "<MULTIPLE>")
        return -2;
    return static_cast<std::int32_t>(NumberInValue(value).value_or(1));
}

/// By as many of the three bytes as the log shows.
bool IsRefusal(const Answer& answer, const std::vector<std::uint8_t>& request)
{
    const Bytes shown = answer.Data;
    if (answer.Size != 3 || shown.empty() || shown[0] != NegativeResponse)
        return false;
    return shown.size() < 2 || request.empty() || shown[1] == request[0];
}

/// The kinds of ComPrimitive that send something and may be answered.
bool SendsRequest(const Exchange& exchange)
{
    return exchange.Type == PDU_COPT_SENDRECV;
}

/// A negative answer without its code may have been a pending one: not if the request ended well after it.
bool IsRefusedBy(const Answer& answer, const Exchange& exchange)
{
    return answer.Nrc || (exchange.IsEnded && exchange.ErrorCode != PDU_ERR_EVT_RX_TIMEOUT);
}

/// Whether silence is a failure. A request that the log does not show counts as wanting an answer only if the
/// library itself missed one.
bool IsSilenceWrong(const Exchange& exchange)
{
    if (exchange.ErrorCode != 0 && exchange.ErrorCode != PDU_ERR_EVT_RX_TIMEOUT)
        return true;
    if (!SendsRequest(exchange) || exchange.IsSuppressed)
        return false;
    return exchange.ReceiveCycles ? exchange.ReceiveCycles != 0 : exchange.ErrorCode != 0;
}

} // namespace

std::optional<std::uint32_t> Elapsed(std::uint32_t from, std::uint32_t to)
{
    const std::uint32_t passed = to - from;
    if (passed == 0 || passed > 0x7FFFFFFF)
        return std::nullopt;
    return passed;
}

void KeepAnswer(Exchange& exchange, Answer&& answer)
{
    const bool isKindKnown =
        std::ranges::find(exchange.Answers, answer.Kind, &Answer::Kind) != exchange.Answers.end();
    if (answer.Kind == AnswerKind::Pending && isKindKnown)
        return;
    if (exchange.Answers.size() < Exchange::MostAnswers)
        exchange.Answers.push_back(std::move(answer));
    else if (!isKindKnown)
        exchange.Answers.back() = std::move(answer);
}

void ReadControlData(const Call& start, Exchange& exchange, std::vector<std::uint32_t>& negative)
{
    if (const auto value = ValueOf(start.LinesIn, "NumSendCycles"))
        exchange.SendCycles = Cycles(*value);
    if (const auto value = ValueOf(start.LinesIn, "NumReceiveCycles"))
        exchange.ReceiveCycles = Cycles(*value);
    constexpr std::string_view label = "AcceptanceId = ";
    for (const CallLine& line : start.LinesIn) {
        const std::size_t at = line.Text.find(label);
        if (at == std::string_view::npos || line.Text.find("(NEGATIVE)") == std::string_view::npos)
            continue;
        const std::string_view rest = line.Text.substr(at + label.size());
        if (const auto id = NumberInValue(rest.substr(0, rest.find(','))))
            negative.push_back(*id);
    }
}

Outcome OutcomeOf(const Exchange& exchange, bool isCancelled)
{
    if (isCancelled)
        return Outcome::Cancelled;
    if (const Answer* deciding = exchange.Deciding()) {
        if (deciding->Kind == AnswerKind::Good)
            return Outcome::Answered;
        if (IsRefusedBy(*deciding, exchange))
            return Outcome::Refused;
    }
    if (!exchange.IsEnded)
        return Outcome::Open;
    return IsSilenceWrong(exchange) ? Outcome::Silent : Outcome::Sent;
}

AnswerKind KindOf(Answer& answer, const std::vector<std::uint8_t>& request,
                  std::optional<std::uint32_t> acceptanceId, const std::vector<std::uint32_t>& negative)
{
    if (IsRefusal(answer, request)) {
        if (answer.Data.size() < 3)
            return AnswerKind::Refusal;
        answer.Nrc = answer.Data[2];
        return answer.Data[2] == ResponsePending ? AnswerKind::Pending : AnswerKind::Refusal;
    }
    const bool isNegative =
        answer.Data.empty() && acceptanceId && std::ranges::count(negative, *acceptanceId);
    return isNegative ? AnswerKind::Refusal : AnswerKind::Good;
}

Latency Passed(std::optional<std::uint32_t> byLibrary, LogTime from, LogTime to)
{
    if (byLibrary)
        return {*byLibrary, false};
    return {static_cast<std::uint64_t>(std::max<std::int64_t>(to - from, 0)) * 1000, true};
}

} // namespace marvane::read
