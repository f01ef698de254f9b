#include "tool/analysis/talk_rows.h"

#include <algorithm>
#include <cstdio>
#include <string_view>

#include "pdu/pdu_api.h"
#include "tool/analysis/link_words.h"
#include "tool/console/row_text.h"
#include "tool/words/describe.h"

namespace marvane::tool {

namespace {

using read::AnswerKind;
using read::Exchange;
using read::Outcome;

constexpr std::size_t MostAnswerRows = 12;
// A request that went out so much later than the call is worth a remark.
constexpr std::int64_t LateSendingMs = 50;

bool IsText(read::Bytes bytes)
{
    return bytes.size() >= 4 &&
           std::ranges::all_of(bytes, [](auto byte) { return byte >= 0x20 && byte < 0x7F; });
}

std::string WordsOfType(std::uint32_t type)
{
    switch (type) {
    case PDU_COPT_STARTCOMM:
        return "start communication";
    case PDU_COPT_STOPCOMM:
        return "stop communication";
    case PDU_COPT_UPDATEPARAM:
        return "update parameters";
    case PDU_COPT_DELAY:
        return "delay";
    case PDU_COPT_RESTORE_PARAM:
        return "restore parameters";
    default:
        return {};
    }
}

std::string ErrorText(std::string_view name)
{
    constexpr std::string_view prefix = "PDU_ERR_EVT_";
    return Printable(name.starts_with(prefix) ? name.substr(prefix.size()) : name);
}

/// "TX_QUEUE_FULL", or the number of what the log calls unknown.
std::string StartErrorText(const Exchange& exchange)
{
    constexpr std::string_view prefix = "PDU_ERR_";
    const std::string_view name = exchange.StartErrorName;
    if (!name.empty() && !name.starts_with('<'))
        return Printable(name.starts_with(prefix) ? name.substr(prefix.size()) : name);
    char number[16];
    std::snprintf(number, sizeof number, "0x%04X", exchange.StartError);
    return number;
}

bool AreAllEqual(const std::vector<const read::Answer*>& answers)
{
    return std::ranges::all_of(answers, [&](const read::Answer* answer) {
        const read::Answer& first = *answers.front();
        return answer->Data == first.Data && answer->Size == first.Size && answer->Kind == first.Kind &&
               answer->From == first.From;
    });
}

bool HaveSeveralSenders(const std::vector<const read::Answer*>& answers)
{
    return std::ranges::any_of(
        answers, [&](const read::Answer* answer) { return answer->From != answers.front()->From; });
}

void AddPending(const Exchange& exchange, words::Dialect dialect, std::vector<ResponseRow>& rows)
{
    const auto first = std::ranges::find(exchange.Answers, AnswerKind::Pending, &read::Answer::Kind);
    if (first == exchange.Answers.end())
        return;
    std::string text = BytesText(first->Data, first->Size, 9, 8);
    text += dialect == words::Dialect::Unknown ? "" : " pending";
    if (exchange.PendingCount > 1)
        text += ", " + std::to_string(exchange.PendingCount) + " times";
    rows.push_back({'.', std::move(text), first->After});
}

/// A negative answer whose code the log lacks is a failure only if the request failed by it.
char MarkOf(const read::Answer& answer, const Exchange& exchange)
{
    if (answer.Kind != AnswerKind::Refusal)
        return ' ';
    return answer.Nrc || exchange.Result == Outcome::Refused ? 'X' : '.';
}

void AddAnswers(const Exchange& exchange, words::Dialect dialect, std::vector<ResponseRow>& rows)
{
    std::vector<const read::Answer*> answers;
    for (const read::Answer& answer : exchange.Answers)
        if (answer.Kind != AnswerKind::Pending)
            answers.push_back(&answer);
    if (answers.empty())
        return;
    const std::uint64_t count = exchange.AnswerCount - exchange.PendingCount;
    const bool isRepeated = count > 1 && AreAllEqual(answers);
    const bool hasSenders = HaveSeveralSenders(answers);
    const std::size_t shown = isRepeated ? 1 : std::min(answers.size(), MostAnswerRows);
    for (std::size_t i = 0; i < shown; ++i) {
        const read::Answer& answer = *answers[i];
        std::string text = AnswerText(answer, dialect);
        if (isRepeated)
            text += "  " + Grouped(count) + " times";
        if (hasSenders && answer.From)
            text.insert(0, std::to_string(*answer.From) + ": ");
        const auto after = isRepeated && exchange.Whole ? *exchange.Whole : answer.After;
        rows.push_back({MarkOf(answer, exchange), std::move(text), after});
    }
    if (!isRepeated && count > shown)
        rows.push_back({'.', "and " + Grouped(count - shown) + " more answers", {}});
}

/// What the outcome adds to the answers.
void AddEnd(const Exchange& exchange, std::vector<ResponseRow>& rows)
{
    const std::string error = ErrorText(exchange.ErrorName);
    switch (exchange.Result) {
    case Outcome::Silent:
        rows.push_back({'X', exchange.AnswerCount == 0 ? "no answer" : "no final answer",
                        exchange.ErrorAfter ? exchange.ErrorAfter : exchange.Whole});
        if (!error.empty())
            rows.back().Text += ": " + error;
        return;
    case Outcome::Cancelled:
        rows.push_back({'.', "cancelled", exchange.Whole});
        break;
    case Outcome::Sent:
        if (exchange.Type == PDU_COPT_SENDRECV || exchange.Type == 0)
            rows.push_back({'.', "no answer wanted", {}});
        return;
    case Outcome::Open: {
        const bool wantsAnswer = exchange.Type == PDU_COPT_SENDRECV || exchange.Type == 0;
        const char* const missing = wantsAnswer ? "no answer in the log" : "no end in the log";
        rows.push_back({'?', exchange.Primitive ? missing : "answers are not in the log", {}});
        return;
    }
    case Outcome::NotStarted:
        rows.push_back({'X', "not started: " + StartErrorText(exchange), {}});
        return;
    case Outcome::NeverReturned:
        rows.push_back({'X', "call never returned", {}});
        return;
    default:
        break;
    }
    if (!error.empty())
        rows.push_back({'!', error, exchange.ErrorAfter});
}

} // namespace

RequestText RequestTextOf(const Exchange& exchange)
{
    RequestText text;
    if (exchange.RequestSize > 0 || !exchange.Request.empty()) {
        text.Bytes = exchange.Request.empty() ? Counted(exchange.RequestSize, "byte")
                                              : BytesText(exchange.Request, exchange.RequestSize, 6, 4);
        text.Words = words::DescribeRequest(DialectOf(*exchange.On), exchange.Request).Summary;
    } else {
        text.Words = WordsOfType(exchange.Type);
        if (text.Words.empty())
            text.Bytes = exchange.IsRequestKnown ? "no bytes" : "?";
    }
    const std::int32_t cycles = exchange.SendCycles.value_or(1);
    if (exchange.Type == PDU_COPT_SENDRECV && cycles != 1)
        text.Bytes += cycles < 0 ? "  endless" : "  " + std::to_string(cycles) + " cycles";
    return text;
}

std::string AnswerText(const read::Answer& answer, words::Dialect dialect)
{
    const read::Bytes bytes = answer.Data;
    if (answer.Kind != AnswerKind::Good && answer.Nrc && dialect != words::Dialect::Unknown)
        return BytesText(bytes, answer.Size, 9, 8) + " " + NrcText(dialect, *answer.Nrc);
    // The three bytes of "62 F1 90" name the identifier; what follows may be a text.
    const bool isRead = dialect == words::Dialect::Uds && bytes.size() > 3 && bytes[0] == 0x62;
    if (isRead && !answer.IsCut && IsText(bytes.subspan(3)))
        return BytesText(bytes.first(3), 3, 3, 3) + " " + std::string(bytes.begin() + 3, bytes.end());
    if (answer.Kind == AnswerKind::Refusal && !answer.Nrc)
        return "negative (" + (answer.Size == 0 ? "no bytes" : Counted(answer.Size, "byte")) + ")";
    if (bytes.empty())
        return answer.Size == 0 ? "(no bytes)" : "(" + Counted(answer.Size, "byte") + ")";
    return BytesText(bytes, answer.Size, 9, 8);
}

bool IsByTheWay(const Exchange& exchange)
{
    const bool isQuiet = exchange.Type == PDU_COPT_UPDATEPARAM || exchange.Type == PDU_COPT_DELAY;
    const bool isGood = exchange.Result != Outcome::Cancelled && exchange.Result != Outcome::NotStarted &&
                        exchange.Result != Outcome::NeverReturned;
    return isQuiet && isGood && exchange.ErrorCode == 0;
}

std::string ChangeText(const read::ParamChange& change)
{
    return Printable(change.Before ? change.Name + " " + *change.Before + " -> " + change.After
                                   : change.Name + " = " + change.After);
}

std::string LateText(const read::LateAnswer& late)
{
    return "late answer, " + std::to_string(late.AfterEndMs) + " ms after the end";
}

std::vector<ResponseRow> ResponseRows(const Exchange& exchange)
{
    std::vector<ResponseRow> rows;
    const words::Dialect dialect = DialectOf(*exchange.On);
    AddPending(exchange, dialect, rows);
    AddAnswers(exchange, dialect, rows);
    AddEnd(exchange, rows);
    if (exchange.IsRedacted)
        rows.push_back({'.', "redacted", {}});
    if (rows.empty())
        rows.emplace_back();
    if (exchange.SentAfterMs.value_or(0) >= LateSendingMs)
        rows.push_back(
            {'!',
             "sent " + Grouped(static_cast<std::uint64_t>(*exchange.SentAfterMs)) + " ms after the call",
             {}});
    return rows;
}

} // namespace marvane::tool
