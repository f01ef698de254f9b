#include "tool/report/exchange_tables.h"

#include <algorithm>

#include "pdu/pdu_api.h"
#include "tool/analysis/link_words.h"
#include "tool/analysis/talk_rows.h"
#include "tool/console/row_text.h"
#include "tool/words/describe.h"

namespace marvane::tool::report {

namespace {

constexpr std::size_t MostHexBytes = 64;

std::int64_t NumberOf(const auto& number)
{
    return number ? static_cast<std::int64_t>(*number) : None;
}

/// What requests are counted and filtered by: the standard's name of the service, else the nearest to it.
std::string ServiceName(const read::Exchange& exchange, const words::RequestWords& words)
{
    if (words.What)
        return std::string(words.What->Name);
    if (!exchange.Request.empty())
        return "service " + ByteText(exchange.Request.front());
    const RequestText text = RequestTextOf(exchange);
    if (!text.Words.empty())
        return text.Words;
    return exchange.RequestSize > 0 || !exchange.IsRequestKnown ? "unknown service" : "no bytes";
}

bool IsCut(const read::Exchange& exchange)
{
    return exchange.IsRequestCut || std::ranges::any_of(exchange.Answers, &read::Answer::IsCut);
}

std::uint32_t FlagsOf(const read::Exchange& exchange)
{
    const auto latency = exchange.FirstAnswer();
    std::uint32_t flags = 0;
    if (latency && latency->IsByLog)
        flags |= ExchangeByLog;
    if (IsByTheWay(exchange))
        flags |= ExchangeQuiet;
    if (IsCut(exchange))
        flags |= ExchangeCut;
    if (exchange.IsRedacted)
        flags |= ExchangeRedacted;
    if (exchange.Type == PDU_COPT_SENDRECV || exchange.Type == 0)
        flags |= ExchangeIsRequest;
    return flags;
}

} // namespace

std::uint32_t ExchangeTables::Hex(read::Bytes bytes)
{
    std::string hex;
    for (const std::uint8_t byte : bytes.first(std::min(bytes.size(), MostHexBytes)))
        hex += ByteText(byte);
    return Text(hex);
}

std::int64_t ExchangeTables::LineOf(const read::Position& at) const
{
    return NumberOf(lines_.IndexOf(at));
}

void ExchangeTables::Add(const read::Exchange& exchange)
{
    const auto change = IsByTheWay(exchange) ? std::nullopt : states_.Change(exchange);
    if (!lines_.IndexOf(exchange.At))
        return;
    if (redactor_) {
        read::Exchange marked = exchange;
        marked.IsRedacted = redactor_->IsChanged(exchange);
        AddExchange(marked);
    } else {
        AddExchange(exchange);
    }
    if (change)
        AddState(exchange, *change);
}

void ExchangeTables::AddExchange(const read::Exchange& exchange)
{
    ExchangeRow row;
    row.Seq = exchange.Seq;
    row.Link = records_.LinkNumber(*exchange.On);
    row.Primitive = NumberOf(exchange.Primitive);
    DescribeRequest(exchange, row);
    row.Outcome = exchange.Result;
    row.Latency = After(exchange.FirstAnswer()).Us;
    row.End = exchange.IsEnded ? exchange.EndTime - exchange.Time : None;
    row.Flags = FlagsOf(exchange);
    row.Sent = NumberOf(exchange.SentAfterMs);
    row.Responses = AddResponses(exchange);
    row.Answers = AddAnswers(exchange);
    model_.Exchanges.push_back(row);
}

void ExchangeTables::DescribeRequest(const read::Exchange& exchange, ExchangeRow& row)
{
    const words::RequestWords words = words::DescribeRequest(DialectOf(*exchange.On), exchange.Request);
    const RequestText text = RequestTextOf(exchange);
    row.Request = Hex(exchange.Request);
    row.Size = exchange.IsRequestKnown ? static_cast<std::int64_t>(exchange.RequestSize) : None;
    row.Text = Text(text.Bytes);
    row.Words = Text(text.Words);
    row.Detail = Text(words.Detail);
    row.Service = Text(ServiceName(exchange, words));
    row.Sid = exchange.Request.empty() ? None : std::int64_t(exchange.Request.front());
}

Rows ExchangeTables::AddResponses(const read::Exchange& exchange)
{
    Rows rows = {model_.Responses.size(), 0};
    for (const ResponseRow& row : ResponseRows(exchange)) {
        model_.Responses.push_back({row.Mark, Text(row.Text), After(row.After)});
        ++rows.Count;
    }
    return rows;
}

/// The answers that the exchange has kept, and its first error.
Rows ExchangeTables::AddAnswers(const read::Exchange& exchange)
{
    const std::size_t first = model_.Answers.size();
    const words::Dialect dialect = DialectOf(*exchange.On);
    for (const read::Answer& answer : exchange.Answers)
        model_.Answers.push_back({static_cast<AnswerKind>(answer.Kind), answer.Time, LineOf(answer.At),
                                  Text(AnswerText(answer, dialect)), Hex(answer.Data), answer.Size,
                                  NumberOf(answer.From), After(answer.After)});
    if (exchange.ErrorCode != 0)
        model_.Answers.push_back({AnswerKind::Error, exchange.ErrorTime, LineOf(exchange.ErrorAt),
                                  Text(exchange.ErrorName), Text({}), 0, None, After(exchange.ErrorAfter)});
    return {first, model_.Answers.size() - first};
}

void ExchangeTables::AddState(const read::Exchange& exchange, std::string_view text)
{
    model_.Remarks.push_back({RemarkKind::StateChanged, LineOf(exchange.At),
                              std::max(exchange.EndTime, exchange.Time), records_.LinkNumber(*exchange.On),
                              ' ', Text(text), exchange.Seq});
}

void ExchangeTables::Add(const read::ParamChange& change)
{
    if (lines_.IndexOf(change.At))
        model_.Remarks.push_back({RemarkKind::ParamChanged, LineOf(change.At), change.Time,
                                  records_.LinkNumber(*change.On), ' ', Text(ChangeText(change)), 0});
}

void ExchangeTables::Add(const read::LateAnswer& late)
{
    if (!lines_.IndexOf(late.What.At))
        return;
    std::string text = LateText(late) + ": " + AnswerText(late.What, DialectOf(*late.On));
    if (redactor_ && redactor_->IsChanged(late.What.Data))
        text += " redacted";
    model_.Remarks.push_back({RemarkKind::LateAnswer, LineOf(late.What.At), late.What.Time,
                              records_.LinkNumber(*late.On), '!', Text(text), late.Seq});
}

} // namespace marvane::tool::report
