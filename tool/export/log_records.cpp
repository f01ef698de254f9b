// Keys and their types never change within a version of the schema.
#include "tool/export/log_records.h"

#include <algorithm>

#include "tool/export/record_fields.h"
#include "tool/input/log_source.h"

namespace marvane::tool {

namespace {

// Calls that were redacted are remembered for what is found later about them.
constexpr std::size_t MostChanged = 20'000;

std::vector<std::string_view> TextsOf(std::span<const read::CallLine> lines)
{
    std::vector<std::string_view> texts;
    for (const read::CallLine& line : lines)
        texts.push_back(line.Text);
    return texts;
}

} // namespace

LogRecords::LogRecords(const Inputs& inputs, RecordWriter& writer, Sink& sink)
    : inputs_(inputs), line_(writer), sink_(sink), times_(inputs.Zone)
{
    UseNames(inputs.Names);
}

std::string_view LogRecords::FileName(std::uint32_t file) const
{
    return file < inputs_.Files.size() ? std::string_view(inputs_.Files[file].Begin.Name) : "";
}

void LogRecords::Put(std::string_view key, read::LogTime time)
{
    time_.clear();
    times_.Append(time_, time);
    line_.Text(key, time_);
}

/// Ends a record, which says whether it was redacted.
void LogRecords::End(bool isChanged)
{
    if (isChanged)
        line_.Flag("redacted", true);
    sink_.Write(line_.End());
}

/// Whether a line of a part of a file was redacted.
bool LogRecords::IsChanged(const read::Position& first, const read::Position& last) const
{
    return inputs_.Redaction && inputs_.Redaction->IsChanged(first.File, first.Line, last.Line);
}

/// Begins a record. False if it is outside the part that is wanted.
bool LogRecords::Begin(std::string_view kind, read::LogTime time, const read::Position& at,
                       std::uint32_t session)
{
    if (!line_.Takes(kind) || !inputs_.Range.Holds(time))
        return false;
    if (sink_.SelectDay(time.Day()))
        WriteHead();
    line_.Begin(kind);
    Put("ts", time);
    line_.Text("file", FileName(at.File));
    line_.Number("line", Signed(std::max<std::uint64_t>(at.Line, 1)));
    line_.Number("session", session);
    return true;
}

void LogRecords::AddEnd(const read::Call& call)
{
    if (call.State == read::CallState::InFlight)
        return;
    line_.Number("dur_ms", call.Duration());
    Put("end_ts", call.EndTime);
    line_.Text("end_file", FileName(call.End.File));
    line_.Number("end_line", Signed(call.End.Line));
}

void LogRecords::OnEntry(const read::Call& call, bool isEvent)
{
    WriteSession();
    Findings::OnEntry(call, isEvent);
}

void LogRecords::OnCall(const read::Call& call)
{
    WriteSession();
    if (IsChanged(call))
        changed_.insert(call.Seq);
    if (changed_.size() > MostChanged)
        changed_.erase(changed_.begin());
    if (Begin("call", call.BeginTime, call.Begin, call.Session)) {
        line_.Number("seq", Signed(call.Seq));
        line_.Text("call", call.Name);
        line_.Number("thread", call.Thread);
        if (call.HasArguments)
            line_.Text("args", call.Arguments);
        AddStatus(line_, call);
        AddEnd(call);
        line_.Number("depth", call.Depth);
        AddHandles(line_, call);
        AddNumber(line_, "hcop", call.Primitive);
        if (inputs_.HasLines) {
            line_.Texts("lines_in", TextsOf(call.LinesIn));
            line_.Texts("lines_out", TextsOf(call.LinesOut));
        }
        End(IsChanged(call));
    }
    if (call.State == read::CallState::NotLoaded)
        PutProblem("not_loaded", call.BeginTime, call.Begin, call.Session, call.Seq,
                   std::string(call.Name) + ": called, but no target library is loaded (0x0020)");
    Findings::OnCall(call);
}

void LogRecords::OnEvent(const read::Event& event)
{
    if (Begin("event", event.BeginTime, event.Begin, event.Session)) {
        line_.Number("thread", event.Thread);
        if (event.HasArguments)
            line_.Number("event_type", event.Type);
        AddHandles(line_, event);
        line_.TextIfAny("handler", event.Handler);
        if (event.State != read::CallState::InFlight)
            line_.Number("dur_ms", event.Duration());
        line_.Text("state", StateName(event.State));
        End(IsChanged(event));
    }
    Findings::OnEvent(event);
}

void LogRecords::OnItem(const read::Item& item)
{
    const read::Call& fetch = *item.Fetch;
    if (Begin("item", fetch.EndTime, item.At, fetch.Session)) {
        line_.Number("seq", Signed(fetch.Seq));
        line_.Text("item", ItemName(item.Kind));
        AddHandles(line_, fetch);
        AddNumber(line_, "hcop", item.Primitive);
        line_.Number("timestamp", item.Timestamp);
        if (item.Kind == read::ItemKind::Result)
            AddResult(line_, item);
        AddNumber(line_, "extra", item.Extra);
        if (item.Kind == read::ItemKind::Result)
            AddPayload(line_, item.Data);
        else if (item.Kind != read::ItemKind::Unknown) {
            line_.Number("code", item.Code);
            line_.TextIfAny("name", item.CodeName);
        }
        End(IsChanged(fetch));
    }
    Findings::OnItem(item);
}

void LogRecords::OnComms(const read::Comms& report)
{
    if (Begin("comms", report.Time, report.At, report.Session)) {
        line_.TextIfAny("protocol", report.Protocol);
        line_.Number("thread", report.Thread);
        line_.Text("direction", report.Way == Direction::ToTarget ? "sent" : "received");
        line_.Text("title", report.Title);
        AddNumber(line_, "address", report.Address);
        AddPayload(line_, report.Data);
        WriteMore(report);
        End(IsChanged(report));
    }
    Findings::OnComms(report);
}

/// The parameters after the address and the first dump.
void LogRecords::WriteMore(const read::Comms& report)
{
    std::string_view dumped;
    bool hasAddress = false;
    std::vector<std::string_view> more;
    for (const read::CallLine& line : report.Lines) {
        const read::DecodedText text = line.Decode();
        const bool isAddress = !hasAddress && report.Address && text.Label == "Address";
        if (text.Dump && dumped.empty())
            dumped = text.Label;
        hasAddress |= isAddress;
        if (!isAddress && !(text.Dump && text.Label == dumped))
            more.push_back(text.Text);
    }
    if (!more.empty())
        line_.Texts("more", more);
}

void LogRecords::OnParam(const read::Param& param)
{
    const read::Call& call = *param.By;
    if (!Begin("param", call.BeginTime, call.Begin, call.Session))
        return;
    line_.Number("seq", Signed(call.Seq));
    line_.Text("action", param.IsSet ? "set" : "get");
    AddHandles(line_, call);
    line_.Number("id", param.Id);
    const std::string name = inputs_.Names.ParamName(call.Session, param.Id, param.Name);
    if (name != "ComParam " + std::to_string(param.Id))
        line_.TextIfAny("name", name);
    line_.TextIfAny("data_type", param.DataType);
    if (param.Number)
        line_.Number("value", *param.Number);
    else if (param.IsField)
        line_.Hex("value_hex", param.Field);
    if (const auto link = Links().Find(call))
        if (const std::optional<std::string> usual = inputs_.Names.DefaultOf(*link, param.Id))
            line_.Text("default", *usual);
    End(IsChanged(call));
}

void LogRecords::OnMark(const read::Mark& mark)
{
    if (!Begin("mark", mark.Time, mark.At, mark.Session))
        return;
    line_.Text("text", mark.Text);
    End(IsChanged(mark.At, mark.At));
}

void LogRecords::OnProblem(const read::Problem& problem)
{
    ComplainAbout(problem, inputs_.Files, inputs_.Messages);
    Findings::OnProblem(problem);
}

void LogRecords::OnFinding(const Finding& finding)
{
    // Calls that found no library are reported one by one, not as a number.
    if (IsNormal(finding.Kind) || finding.Kind == FindingKind::NotLoaded)
        return;
    std::string text = finding.Subject + ": " + finding.Text;
    for (const std::string& why : finding.Why)
        text += "; " + why;
    PutProblem(FindingName(finding.Kind), finding.Time, finding.At, finding.Session, finding.Seq, text);
}

void LogRecords::PutProblem(std::string_view what, read::LogTime time, const read::Position& at,
                            std::uint32_t session, std::uint64_t seq, std::string_view text)
{
    if (!Begin("problem", time, at, session))
        return;
    line_.Text("what", what);
    if (seq != 0)
        line_.Number("seq", Signed(seq));
    line_.Text("text", text);
    End(IsChanged(at, at) || changed_.contains(seq));
}

void LogRecords::OnEnded(const read::Exchange& exchange)
{
    if (!Begin("exchange", exchange.Time, exchange.At, exchange.Session))
        return;
    const read::Link& link = *exchange.On;
    line_.Number("seq", Signed(exchange.Seq));
    if (exchange.HasHandles && link.Module != read::UndefinedHandle)
        line_.Number("hmod", link.Module);
    if (exchange.HasHandles && link.Handle != read::UndefinedHandle)
        line_.Number("hcll", link.Handle);
    AddNumber(line_, "hcop", exchange.Primitive);
    line_.TextIfAny("link", link.Resource.empty() ? link.Protocol : link.Resource);
    line_.TextIfAny("cop_type", exchange.TypeName);
    AddRequest(line_, exchange);
    AddAnswer(line_, exchange);
    if (exchange.IsEnded)
        Put("ended_ts", exchange.EndTime);
    End(IsChanged(exchange));
}

void LogRecords::Finish()
{
    WriteSession();
    FinishFindings();
}

void LogRecords::Write(const Inputs& inputs, RecordWriter& writer, Sink& sink)
{
    LogRecords records(inputs, writer, sink);
    inputs.Read(records, read::Wants::Calls | read::Wants::Comms | read::Wants::Items | read::Wants::Params,
                [&] { sink.Flush(); });
    records.Finish();
}

} // namespace marvane::tool
