// The form of the model, "marvane-report/1" (docs/report.md). Tables are objects of columns, arrays of equal
// length, which compress better and load faster than an object a row. Growing numbers are written as
// differences (d). Numbers of strings count from 0 in "strings"; lines count from 0 through all lines in the
// page; times are milliseconds since "begin"; -1 is none.
#include "tool/report/model.h"

#include <algorithm>

#include "platform/clock.h"
#include "tool/console/help.h"
#include "tool/console/json_text.h"
#include "tool/console/row_text.h"
#include "tool/report/json_stream.h"

namespace marvane::tool::report {

namespace {

std::string MadeText()
{
    const platform::Moment now = platform::Now();
    return DateTimeText({now.Second * 1000 + now.Milliseconds}) + "Z";
}

std::int64_t MarkNumber(char mark)
{
    return static_cast<std::int64_t>(std::string_view(" X!.?").find(mark));
}

template <typename List> std::string TextsJson(const List& texts)
{
    return ListJson(texts, [](const auto& text) { return JsonString(text); });
}

class ModelWriter
{
public:
    ModelWriter(Model& model, PackedText& out) : model_(model), out_(out) {}

    void Write()
    {
        Sort();
        WriteHead();
        WriteRecords();
        WriteExchanges();
        WriteResponses();
        WriteAnswers();
        WriteRemarks();
        out_.Finish();
    }

private:
    void Sort()
    {
        std::ranges::stable_sort(model_.Records, {}, &Record::Line);
        std::ranges::stable_sort(model_.Exchanges, {}, &ExchangeRow::Seq);
        std::ranges::stable_sort(model_.Remarks, {}, &Remark::Line);
    }

    std::int64_t Since(read::LogTime time) const { return time - model_.Begin; }

    std::string TimeJson(const std::optional<read::LogTime>& time) const
    {
        return time ? std::to_string(Since(*time)) : "null";
    }

    /// The number of the exchange that a call began.
    std::int64_t ExchangeOf(std::uint64_t seq) const
    {
        const auto found = std::ranges::lower_bound(model_.Exchanges, seq, {}, &ExchangeRow::Seq);
        const bool isIt = found != model_.Exchanges.end() && found->Seq == seq;
        return isIt ? found - model_.Exchanges.begin() : None;
    }

    static std::string FileJson(const FileRow& file)
    {
        JsonObject object;
        object.Add("name", file.Name).Add("first", file.First).Add("lines", file.Lines);
        if (file.Bytes)
            object.Add("bytes", *file.Bytes);
        return object.Text();
    }

    std::string LinkJson(const LinkRow& link) const
    {
        JsonObject object;
        object.Add("session", link.What.Session);
        if (link.What.Module != read::UndefinedHandle)
            object.Add("hmod", link.What.Module);
        if (link.What.Handle != read::UndefinedHandle)
            object.Add("hcll", link.What.Handle);
        if (!link.What.Protocol.empty())
            object.Add("protocol", link.What.Protocol);
        if (!link.What.Resource.empty())
            object.Add("resource", link.What.Resource);
        if (!link.What.Bus.empty())
            object.Add("bus", link.What.Bus);
        object.AddRaw("pins", ListJson(link.What.Pins, [](auto pin) { return std::to_string(pin); }));
        if (link.Connected)
            object.Add("connected", Since(*link.Connected));
        if (link.Disconnected)
            object.Add("disconnected", Since(*link.Disconnected));
        return object.Text();
    }

    std::string RedactedJson() const
    {
        if (!model_.IsRedacted)
            return "null";
        return JsonObject()
            .AddRaw("kinds", TextsJson(model_.RedactedKinds))
            .Add("lines", model_.RedactedLines)
            .Text();
    }

    std::string PartJson() const
    {
        if (!model_.Part.Since && !model_.Part.Until)
            return "null";
        return JsonObject()
            .AddRaw("since", TimeJson(model_.Part.Since))
            .AddRaw("until", TimeJson(model_.Part.Until))
            .Text();
    }

    void WriteHead()
    {
        const auto isCall = [](const Record& record) { return record.Kind == RecordKind::Call; };
        const auto firstCall = std::ranges::find_if(model_.Records, isCall);
        out_.Member("format", JsonString("marvane-report/1"));
        out_.Member("program", JsonString(VersionLine()));
        out_.Member("made", JsonString(MadeText()));
        out_.Member("files", ListJson(model_.Files, FileJson));
        out_.Member("begin", model_.Begin.Ms);
        out_.Member("part", PartJson());
        out_.Member("redacted", RedactedJson());
        out_.Member("summary", model_.Summary);
        out_.Member("errors", model_.Errors);
        out_.Member("normal", model_.Normal);
        out_.Member("hints", TextsJson(model_.Hints));
        out_.Member("threads", ListJson(model_.Threads, [](const ThreadRow& thread) {
                        return JsonObject().Add("id", thread.Id).Add("session", thread.Session).Text();
                    }));
        out_.Member("links", ListJson(model_.Links, [&](const LinkRow& link) { return LinkJson(link); }));
        out_.Member("statuses", ListJson(model_.Statuses, [](const Status& status) {
                        return JsonObject().Add("name", status.Name).Add("code", status.Code).Text();
                    }));
        out_.Member("strings", model_.Strings.Json());
        out_.Member("firstSeq", firstCall == model_.Records.end() ? std::uint64_t(1) : firstCall->Seq);
    }

    /// "line" (d), "lines": from the first line to the last one; "seq" (d): of a record that is no call, that
    /// of the call before it.
    void WriteRecords()
    {
        const auto& rows = model_.Records;
        std::uint64_t seq = 0;
        out_.BeginColumns("records");
        out_.Column("kind", rows, [](const Record& row) { return static_cast<int>(row.Kind); });
        out_.Differences("line", rows, [](const Record& row) { return row.Line; });
        out_.Column("lines", rows, [](const Record& row) { return row.LastLine - row.Line; });
        out_.Column("thread", rows, [](const Record& row) { return row.Thread; });
        out_.Column("name", rows, [](const Record& row) { return row.Name; });
        out_.Differences("time", rows, [&](const Record& row) { return Since(row.Time); });
        out_.Column("dur", rows, [](const Record& row) { return row.Duration; });
        out_.Column("status", rows, [](const Record& row) { return row.Status; });
        out_.Column("flags", rows, [](const Record& row) { return row.Flags; });
        out_.Column("depth", rows, [](const Record& row) { return row.Depth; });
        out_.Column("link", rows, [](const Record& row) { return row.Link; });
        out_.Differences("seq", rows, [&](const Record& row) {
            return seq = row.Kind == RecordKind::Call ? row.Seq : seq;
        });
        out_.EndColumns();
    }

    /// "seq" (d): of the PDUStartComPrimitive; "end": ms after it.
    void WriteExchanges()
    {
        const auto& rows = model_.Exchanges;
        out_.BeginColumns("exchanges");
        out_.Differences("seq", rows, [](const ExchangeRow& row) { return row.Seq; });
        out_.Column("link", rows, [](const ExchangeRow& row) { return row.Link; });
        out_.Column("cop", rows, [](const ExchangeRow& row) { return row.Primitive; });
        out_.Column("request", rows, [](const ExchangeRow& row) { return row.Request; });
        out_.Column("size", rows, [](const ExchangeRow& row) { return row.Size; });
        out_.Column("text", rows, [](const ExchangeRow& row) { return row.Text; });
        out_.Column("words", rows, [](const ExchangeRow& row) { return row.Words; });
        out_.Column("detail", rows, [](const ExchangeRow& row) { return row.Detail; });
        out_.Column("service", rows, [](const ExchangeRow& row) { return row.Service; });
        out_.Column("sid", rows, [](const ExchangeRow& row) { return row.Sid; });
        out_.Column("outcome", rows, [](const ExchangeRow& row) { return static_cast<int>(row.Outcome); });
        out_.Column("latency", rows, [](const ExchangeRow& row) { return row.Latency; });
        out_.Column("end", rows, [](const ExchangeRow& row) { return row.End; });
        out_.Column("flags", rows, [](const ExchangeRow& row) { return row.Flags; });
        out_.Column("sent", rows, [](const ExchangeRow& row) { return row.Sent; });
        out_.EndColumns();
    }

    /// A row of a table of parts, with the number of the exchange that it is a part of.
    template <typename Part> struct PartOf
    {
        std::size_t Exchange;
        const Part* Row;
    };

    /// Parts in the order of their exchanges.
    template <typename Part>
    std::vector<PartOf<Part>> PartsOf(const std::vector<Part>& parts, Rows ExchangeRow::*rows) const
    {
        std::vector<PartOf<Part>> sorted;
        sorted.reserve(parts.size());
        for (std::size_t i = 0; i < model_.Exchanges.size(); ++i) {
            const Rows of = model_.Exchanges[i].*rows;
            for (std::size_t part = of.First; part < of.First + of.Count; ++part)
                sorted.push_back({i, &parts[part]});
        }
        return sorted;
    }

    /// "of" (d): number of the exchange.
    void WriteResponses()
    {
        const auto rows = PartsOf(model_.Responses, &ExchangeRow::Responses);
        out_.BeginColumns("responses");
        out_.Differences("of", rows, [](const auto& row) { return row.Exchange; });
        out_.Column("mark", rows, [](const auto& row) { return MarkNumber(row.Row->Mark); });
        out_.Column("text", rows, [](const auto& row) { return row.Row->Text; });
        out_.Column("after", rows, [](const auto& row) { return row.Row->Took.Us; });
        out_.Column("byLog", rows, [](const auto& row) { return row.Row->Took.IsByLog; });
        out_.EndColumns();
    }

    void WriteAnswers()
    {
        const auto rows = PartsOf(model_.Answers, &ExchangeRow::Answers);
        out_.BeginColumns("answers");
        out_.Differences("of", rows, [](const auto& row) { return row.Exchange; });
        out_.Column("kind", rows, [](const auto& row) { return static_cast<int>(row.Row->Kind); });
        out_.Column("time", rows, [&](const auto& row) { return Since(row.Row->Time); });
        out_.Column("line", rows, [](const auto& row) { return row.Row->Line; });
        out_.Column("text", rows, [](const auto& row) { return row.Row->Text; });
        out_.Column("hex", rows, [](const auto& row) { return row.Row->Hex; });
        out_.Column("size", rows, [](const auto& row) { return row.Row->Size; });
        out_.Column("from", rows, [](const auto& row) { return row.Row->From; });
        out_.Column("after", rows, [](const auto& row) { return row.Row->Took.Us; });
        out_.Column("byLog", rows, [](const auto& row) { return row.Row->Took.IsByLog; });
        out_.EndColumns();
    }

    void WriteRemarks()
    {
        const auto& rows = model_.Remarks;
        out_.BeginColumns("remarks");
        out_.Column("line", rows, [](const Remark& row) { return row.Line; });
        out_.Column("time", rows, [&](const Remark& row) { return Since(row.Time); });
        out_.Column("link", rows, [](const Remark& row) { return row.Link; });
        out_.Column("kind", rows, [](const Remark& row) { return static_cast<int>(row.Kind); });
        out_.Column("mark", rows, [](const Remark& row) { return MarkNumber(row.Mark); });
        out_.Column("text", rows, [](const Remark& row) { return row.Text; });
        out_.Column("exchange", rows, [&](const Remark& row) { return ExchangeOf(row.Seq); });
        out_.EndColumns();
    }

    Model& model_;
    JsonStream out_;
};

} // namespace

std::string PackedModel(Model& model)
{
    PackedText packed;
    ModelWriter(model, packed).Write();
    return packed.Finish();
}

} // namespace marvane::tool::report
