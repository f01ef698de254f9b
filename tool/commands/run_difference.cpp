#include "tool/commands/run_difference.h"

#include <algorithm>
#include <set>
#include <tuple>

#include "pdu/pdu_api.h"
#include "tool/analysis/link_words.h"
#include "tool/analysis/talk_rows.h"
#include "tool/commands/request_pairs.h"
#include "tool/console/row_text.h"
#include "tool/words/describe.h"

namespace marvane::tool {

namespace {

constexpr std::uint64_t SlowerByUs = 5'000;

std::string AnswersText(const read::Exchange& exchange)
{
    std::string text;
    for (const read::Answer& answer : exchange.Answers)
        if (answer.Kind != read::AnswerKind::Pending)
            text += BytesText(answer.Data, answer.Size, SIZE_MAX, 0) + "\n";
    return text;
}

std::string OutcomeText(const read::Exchange& exchange)
{
    const std::vector<ResponseRow> rows = ResponseRows(exchange);
    // Not a pending answer, if there is more.
    const auto telling = std::ranges::find_if(rows, [](const ResponseRow& row) { return row.Mark != '.'; });
    const std::string& text = (telling == rows.end() ? rows.front() : *telling).Text;
    return text.empty() ? std::string(read::OutcomeName(exchange.Result)) : text;
}

/// Service and identifier, or the byte after the service.
std::string SimilarText(const read::Exchange& exchange)
{
    const words::RequestWords request = words::DescribeRequest(DialectOf(*exchange.On), exchange.Request);
    const std::size_t wanted = request.Routine ? 4 : request.Identifier ? 3 : 2;
    const std::size_t head = std::min(exchange.Request.size(), wanted);
    return BytesText(read::Bytes(exchange.Request).first(head), head, SIZE_MAX, 0);
}

bool IsSlower(const RunRequest& first, const RunRequest& second)
{
    return first.After && second.After && second.After->Us >= 2 * first.After->Us &&
           second.After->Us >= first.After->Us + SlowerByUs;
}

std::optional<DifferenceKind> KindOf(const RunRequest& first, const RunRequest& second)
{
    if (first.Result != second.Result || first.StartError != second.StartError)
        return DifferenceKind::OtherOutcome;
    if (first.Bytes != second.Bytes)
        return DifferenceKind::OtherRequest;
    if (first.Answers != second.Answers)
        return DifferenceKind::OtherBytes;
    return IsSlower(first, second) ? std::optional(DifferenceKind::Slower) : std::nullopt;
}

/// Adds differences, those that look alike once.
class DifferenceList
{
public:
    DifferenceList(const Run& first, const Run& second, std::vector<RequestDifference>& list)
        : first_(first), second_(second), list_(list)
    {
    }

    void Add(const RequestDifference& difference)
    {
        const RunRequest& request = difference.First ? first_.RequestList[*difference.First]
                                                     : second_.RequestList[*difference.Second];
        const std::string answers = difference.Kind == DifferenceKind::Slower ? "" : TextOf(difference);
        const auto [place, isNew] =
            places_.try_emplace({difference.Kind, request.Link, request.Bytes, answers}, list_.size());
        if (isNew)
            list_.push_back(difference);
        else
            ++list_[place->second].Count;
    }

private:
    std::string TextOf(const RequestDifference& difference) const
    {
        std::string text = difference.First ? first_.RequestList[*difference.First].AnswerText : "";
        text += '\n';
        return difference.Second ? text + second_.RequestList[*difference.Second].AnswerText : text;
    }

    const Run& first_;
    const Run& second_;
    std::vector<RequestDifference>& list_;
    std::map<std::tuple<DifferenceKind, std::string, std::string, std::string>, std::size_t> places_;
};

void CompareRequests(const Run& first, const Run& second, RunDifference& difference)
{
    DifferenceList list(first, second, difference.Requests);
    for (const RequestPair& pair : PairRequests(first.RequestList, second.RequestList)) {
        if (!pair.First || !pair.Second) {
            list.Add({pair.First ? DifferenceKind::OnlyFirst : DifferenceKind::OnlySecond, pair.First,
                      pair.Second});
            continue;
        }
        if (const auto kind = KindOf(first.RequestList[*pair.First], second.RequestList[*pair.Second]))
            list.Add({*kind, pair.First, pair.Second});
        else
            ++difference.SameRequests;
    }
}

std::string LibraryOf(const Run& run)
{
    if (run.Sessions.empty())
        return {};
    const read::Session& session = run.Sessions.back();
    const std::string file = session.Target.substr(session.Target.find_last_of("/\\") + 1);
    return Printable(file) + " " + Printable(session.TargetVersion) +
           (session.HasNotLoaded ? " not loaded" : "");
}

std::string ModulesOf(const Run& run)
{
    std::set<std::string> names;
    for (const ModuleFacts& module : run.Modules)
        names.insert(Printable(module.Name + " " + module.Software));
    std::string text;
    for (const std::string& name : names)
        text += (text.empty() ? "" : ", ") + name;
    return text;
}

std::string LinksOf(const Run& run)
{
    std::string text;
    for (const LinkFacts& link : run.Links)
        if (link.Connected)
            text += (text.empty() ? "" : ", ") + Printable(link.What.Name());
    return text;
}

} // namespace

std::string_view DifferenceName(DifferenceKind kind)
{
    constexpr std::string_view names[] = {"other_outcome", "other_request", "other_bytes",
                                          "slower",        "only_first",    "only_second"};
    return names[static_cast<std::size_t>(kind)];
}

void Run::OnCall(const read::Call& call)
{
    SummaryFacts::OnCall(call);
    if (call.Status != PDU_ERR_EVENT_QUEUE_EMPTY && call.Which != read::Function::LoggerUninitialise)
        ++CallCounts[Printable(call.Name)];
}

void Run::OnEnded(const read::Exchange& exchange)
{
    SummaryFacts::OnEnded(exchange);
    if (exchange.Type != PDU_COPT_SENDRECV && exchange.Type != 0)
        return;
    const RequestText text = RequestTextOf(exchange);
    RequestList.push_back({exchange.On->Name(),
                           BytesText(exchange.Request, exchange.RequestSize, SIZE_MAX, 0) + "/" +
                               std::to_string(exchange.RequestSize),
                           SimilarText(exchange), text.Bytes, text.Words, exchange.Result,
                           exchange.StartError, AnswersText(exchange), OutcomeText(exchange),
                           exchange.FirstAnswer() ? exchange.FirstAnswer() : exchange.ErrorAfter,
                           exchange.At});
}

void Run::FinishRun()
{
    Finish();
    std::ranges::sort(RequestList, {}, &RunRequest::At);
}

std::uint64_t CallCount(const Run& run, const std::string& name)
{
    const auto found = run.CallCounts.find(name);
    return found == run.CallCounts.end() ? 0 : found->second;
}

std::string TimesSlower(const read::Latency& first, const read::Latency& second)
{
    return Grouped((second.Us + first.Us / 2) / std::max<std::uint64_t>(first.Us, 1)) + " times slower";
}

RunDifference Compare(const Run& first, const Run& second)
{
    RunDifference difference;
    const auto compare = [&](std::string_view what, const std::string& one, const std::string& other) {
        if (one != other)
            difference.Facts.push_back(std::string(what) + "   " + (one.empty() ? "-" : one) + "  ->  " +
                                       (other.empty() ? "-" : other));
    };
    compare("library", LibraryOf(first), LibraryOf(second));
    compare("modules", ModulesOf(first), ModulesOf(second));
    compare("links", LinksOf(first), LinksOf(second));
    CompareRequests(first, second, difference);
    std::set<std::string> names;
    for (const auto* run : {&first, &second})
        for (const auto& [name, count] : run->CallCounts)
            names.insert(name);
    for (const std::string& name : names)
        if (CallCount(first, name) != CallCount(second, name))
            difference.CallNames.push_back(name);
    return difference;
}

} // namespace marvane::tool
