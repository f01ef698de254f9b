// Keys and their types never change within a version of the schema.
#include "tool/export/record_fields.h"

#include "tool/analysis/link_words.h"
#include "tool/analysis/talk_rows.h"
#include "tool/words/describe.h"
#include "tool/words/negative_codes.h"

namespace marvane::tool {

std::string_view StateName(read::CallState state)
{
    constexpr std::string_view names[] = {"returned", "in_flight", "not_loaded", "cut"};
    return names[static_cast<std::size_t>(state)];
}

std::string_view ItemName(read::ItemKind kind)
{
    constexpr std::string_view names[] = {"result", "status", "error", "info", "unknown"};
    return names[static_cast<std::size_t>(kind)];
}

void AddNumber(RecordWriter& line, std::string_view key, std::optional<std::uint32_t> number)
{
    if (number)
        line.Number(key, *number);
}

void AddHandles(RecordWriter& line, const read::Call& call)
{
    AddNumber(line, "hmod", call.Module);
    AddNumber(line, "hcll", call.Link);
}

void AddPayload(RecordWriter& line, const read::Payload& data)
{
    if (!data.IsPresent)
        return;
    line.Hex("data", data.Shown);
    line.Number("size", Signed(data.Size));
    if (data.IsCut)
        line.Flag("cut", true);
}

void AddStatus(RecordWriter& line, const read::Call& call)
{
    line.Text("state", StateName(call.State));
    if (call.Status) {
        line.Text("status", call.StatusName);
        line.Number("status_code", *call.Status);
    }
    line.Text("level", call.HasFailed() ? "error" : "info");
}

void AddResult(RecordWriter& line, const read::Item& item)
{
    AddNumber(line, "uri", item.UniqueResponseId);
    AddNumber(line, "acceptance_id", item.AcceptanceId);
    if (item.IsTxDoneValid)
        AddNumber(line, "tx_done", item.TxDone);
    if (item.IsStartValid)
        AddNumber(line, "start", item.Start);
}

void AddRequest(RecordWriter& line, const read::Exchange& exchange)
{
    if (exchange.IsRequestKnown) {
        line.Hex("request", exchange.Request);
        line.Number("request_size", Signed(exchange.RequestSize));
    }
    const read::Answer* const answer = exchange.Deciding();
    if (exchange.IsRequestCut || (answer && answer->IsCut))
        line.Flag("cut", true);
    const words::Dialect dialect = DialectOf(*exchange.On);
    const words::RequestWords asked = words::DescribeRequest(dialect, exchange.Request);
    if (dialect != words::Dialect::Unknown && !exchange.Request.empty())
        line.Number("sid", exchange.Request[0]);
    if (asked.SubFunction)
        line.Number("subfunction", *asked.SubFunction);
    if (asked.Identifier)
        line.Number("did", *asked.Identifier);
    line.TextIfAny("service", asked.What ? asked.What->Name : std::string_view());
    line.TextIfAny("summary", RequestTextOf(exchange).Words);
}

void AddAnswer(RecordWriter& line, const read::Exchange& exchange)
{
    line.Text("outcome", read::OutcomeName(exchange.Result));
    if (const read::Answer* const answer = exchange.Deciding()) {
        line.Hex("answer", answer->Data);
        line.Number("answer_size", Signed(answer->Size));
        if (answer->Nrc && answer->Kind == read::AnswerKind::Refusal) {
            line.Number("nrc", *answer->Nrc);
            line.TextIfAny("nrc_name", words::NegativeCodeName(DialectOf(*exchange.On), *answer->Nrc));
        }
    }
    line.Number("pending", Signed(exchange.PendingCount));
    line.Number("answers", Signed(exchange.AnswerCount));
    if (const std::optional<read::Latency> latency = exchange.FirstAnswer()) {
        line.Number("latency_us", Signed(latency->Us));
        line.Text("latency_by", latency->IsByLog ? "log" : "library");
    }
}

} // namespace marvane::tool
