#include "tool/report/report.h"

#include <algorithm>
#include <map>

#include "tool/analysis/conversation.h"
#include "tool/analysis/finding_json.h"
#include "tool/analysis/summary_facts.h"
#include "tool/analysis/summary_json.h"
#include "tool/console/json_text.h"
#include "tool/input/watched_bytes.h"
#include "tool/report/exchange_tables.h"
#include "tool/report/raw_copy.h"
#include "tool/report/record_tables.h"

namespace marvane::tool {

namespace {

using report::Model;
using report::RawCopy;

/// The facts of the summary, and what went wrong.
class ReportFacts : public SummaryFacts
{
public:
    using SummaryFacts::SummaryFacts;

    /// Without what is normal.
    std::vector<Finding> Found;

    void OnFinding(const Finding& finding) override
    {
        SummaryFacts::OnFinding(finding);
        if (!IsNormal(finding.Kind))
            Found.push_back(finding);
    }

    void OnSession(const read::Session& session) override
    {
        SummaryFacts::OnSession(session);
        begins_[session.Number] = session.BeginTime;
    }

    read::LogTime BeginOf(const Finding& finding) const
    {
        const auto found = begins_.find(finding.Session);
        return found == begins_.end() ? finding.Time : found->second;
    }

private:
    std::map<std::uint32_t, read::LogTime> begins_; ///< by session
};

/// Distributes what is read to all who gather it.
class ReportReader : public Conversation
{
public:
    explicit ReportReader(const ReportInputs& inputs)
        : inputs_(inputs), facts_(inputs.Messages, inputs.Files), lines_(inputs.Part),
          records_(model_, lines_, inputs.Redaction), exchanges_(model_, lines_, records_, inputs.Redaction)
    {
        facts_.CountIn(inputs.Part);
        facts_.UseNames(inputs.Names);
        UseNames(inputs.Names);
    }

    /// To be called once, after LogReader::Finish, while the reader lives. `raw` may be null.
    Report Finish(RawCopy* raw);

    void OnLine(const read::Line& line) override { lines_.Add(line); }
    void OnSession(const read::Session& session) override
    {
        facts_.OnSession(session);
        Conversation::OnSession(session);
    }
    void OnEntry(const read::Call& call, bool isEvent) override
    {
        facts_.OnEntry(call, isEvent);
        Conversation::OnEntry(call, isEvent);
    }
    void OnCall(const read::Call& call) override
    {
        records_.Add(call, LinkOf(call).get());
        facts_.OnCall(call);
        Conversation::OnCall(call);
    }
    void OnEvent(const read::Event& event) override
    {
        records_.Add(event, LinkOf(event).get());
        facts_.OnEvent(event);
    }
    void OnItem(const read::Item& item) override
    {
        facts_.OnItem(item);
        Conversation::OnItem(item);
    }
    void OnComms(const read::Comms& report) override
    {
        records_.Add(report);
        facts_.OnComms(report);
        Conversation::OnComms(report);
    }
    void OnParam(const read::Param& param) override
    {
        facts_.OnParam(param);
        Conversation::OnParam(param);
    }
    void OnMark(const read::Mark& mark) override { records_.Add(mark); }
    void OnProblem(const read::Problem& problem) override { facts_.OnProblem(problem); }
    void OnUtterance(const Utterance& utterance) override
    {
        std::visit([&](const auto& each) { exchanges_.Add(each); }, utterance);
    }

private:
    std::shared_ptr<const read::Link> LinkOf(const read::Call& call)
    {
        return call.Link || call.Module ? Links().Find(call) : nullptr;
    }
    std::string ErrorsJson();
    void DescribeFiles(const RawCopy* raw);
    void DescribeLinks();
    void DescribeFacts();
    std::string Title() const;

    const ReportInputs& inputs_;
    Model model_;
    ReportFacts facts_;
    LineBlock lines_;
    report::RecordTables records_;
    report::ExchangeTables exchanges_;
};

/// As "problems" of schema "marvane.errors/1"; "at" is the place of the line in the page.
std::string ReportReader::ErrorsJson()
{
    std::ranges::stable_sort(facts_.Found, {},
                             [](const Finding& finding) { return std::pair(finding.Session, finding.At); });
    JsonArray errors;
    for (const Finding& finding : facts_.Found) {
        const std::optional<std::uint64_t> at = lines_.IndexOf(finding.At);
        if (!at && !inputs_.Part.Holds(finding.Time))
            continue;
        JsonObject error = FindingJson(finding, inputs_.Files, facts_.BeginOf(finding));
        errors.AddRaw(error.Add("at", at ? static_cast<std::int64_t>(*at) : report::None).Text());
    }
    return errors.Text();
}

void ReportReader::DescribeFiles(const RawCopy* raw)
{
    for (std::size_t i = 0; i < inputs_.Files.size(); ++i) {
        const LineBlock::Stretch stretch = lines_.StretchOf(static_cast<std::uint32_t>(i));
        model_.Files.push_back({inputs_.Files[i].Begin.Name, stretch.First, stretch.Count});
        if (raw)
            model_.Files.back().Bytes = i < raw->Bytes.size() ? raw->Bytes[i] : 0;
    }
}

void ReportReader::DescribeLinks()
{
    for (const LinkFacts& facts : facts_.Links) {
        const std::int64_t number = records_.LinkNumber(facts.What);
        if (number == report::None)
            continue;
        report::LinkRow& row = model_.Links[static_cast<std::size_t>(number)];
        row.Connected = facts.Connected;
        row.Disconnected = facts.Disconnected;
    }
}

void ReportReader::DescribeFacts()
{
    model_.Begin = lines_.Begin();
    model_.Part = inputs_.Part;
    model_.IsRedacted = inputs_.Redaction != nullptr;
    model_.RedactedKinds = inputs_.RedactedKinds;
    model_.RedactedLines = inputs_.Redaction ? inputs_.Redaction->ChangedLines() : 0;
    model_.Summary = SummaryJson(facts_, inputs_.Files);
    model_.Errors = ErrorsJson();
    model_.Normal = JsonObject()
                        .Add("empty_queue", facts_.Count(FindingKind::EmptyQueue))
                        .Add("pending", facts_.Count(FindingKind::Pending))
                        .Text();
    model_.Hints = facts_.Hints().ForAll();
}

std::string ReportReader::Title() const
{
    const std::string first = inputs_.Files.front().Begin.Name;
    const std::size_t more = inputs_.Files.size() - 1;
    return more == 0 ? first : first + " and " + std::to_string(more) + " more";
}

Report ReportReader::Finish(RawCopy* raw)
{
    FinishConversation();
    facts_.Finish();
    DescribeFiles(raw);
    DescribeLinks();
    DescribeFacts();
    Report report;
    report.HasSession = !facts_.Sessions.empty();
    report.Lines = lines_.Count();
    report.Content.Title = Title();
    report.Content.Lines = lines_.Finish();
    report.Content.Model = report::PackedModel(model_);
    if (raw)
        report.Content.Raw = raw->Finish();
    return report;
}

} // namespace

Report MakeReport(const ReportInputs& inputs)
{
    ReportReader report(inputs);
    read::LogReader reader(report, read::Wants::All);
    std::optional<RawCopy> raw;
    if (inputs.HasRaw)
        raw.emplace(inputs.Redaction);
    WatchedBytes watched("reading", inputs.Files,
                         raw ? &*raw : static_cast<read::ByteFilter*>(inputs.Redaction));
    reader.FilterBy(&watched);
    for (const read::LogFile& file : inputs.Files)
        read::ReadLogFile(file, reader);
    reader.Finish();
    return report.Finish(raw ? &*raw : nullptr);
}

} // namespace marvane::tool
