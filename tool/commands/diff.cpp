// marvane diff: two runs as conversations.
#include <algorithm>

#include "tool/commands/arguments.h"
#include "tool/commands/json_text.h"
#include "tool/commands/log_source.h"
#include "tool/commands/mdf_names.h"
#include "tool/commands/program.h"
#include "tool/commands/row_text.h"
#include "tool/commands/run_difference.h"
#include "tool/commands/shared_options.h"

namespace marvane::tool {

namespace {

constexpr std::size_t MarkColumn = 6; // columns where a field begins
constexpr std::size_t RequestColumn = 8;
constexpr std::size_t FirstColumn = 32;
constexpr std::size_t SecondColumn = 58;
constexpr std::size_t NoteColumn = 84;

std::string RunName(const std::string& path)
{
    const std::size_t end = path.find_last_not_of("/\\");
    const std::string shown = path.substr(0, end + 1);
    return shown.substr(shown.find_last_of("/\\") + 1);
}

std::uint64_t CallCountOf(const Run& run, const std::string& name)
{
    const auto found = run.CallCounts.find(name);
    return found == run.CallCounts.end() ? 0 : found->second;
}

std::uint64_t CallsOf(const Run& run)
{
    std::uint64_t sum = 0;
    for (const auto& [name, count] : run.CallCounts)
        sum += count;
    return sum;
}

class DiffPage
{
public:
    DiffPage(Console& console, const Run& first, const Run& second, const RunDifference& difference)
        : console_(console), first_(first), second_(second), difference_(difference)
    {
    }

    void Write(const std::string& firstName, const std::string& secondName)
    {
        WriteSame();
        for (const std::string& fact : difference_.Facts)
            console_.Write(Wrapped("      X", RequestColumn, fact, console_.Columns()));
        if (!difference_.Requests.empty() || !difference_.CallNames.empty()) {
            std::string row;
            PutAt(row, RequestColumn, "request");
            PutAt(row, FirstColumn, Shortened(firstName, 25));
            PutAt(row, SecondColumn, Shortened(secondName, 25));
            console_.Write(Finished(std::move(row)));
        }
        for (const RequestDifference& each : difference_.Requests)
            WriteRequest(each);
        WriteCalls();
        const std::vector<std::string> first = HintsOf(first_), second = HintsOf(second_);
        WriteHints(first == second ? "both" : firstName, first);
        if (first != second)
            WriteHints(secondName, second);
    }

private:
    void WriteSame()
    {
        const auto isOther = [&](std::string_view what) {
            return std::ranges::any_of(difference_.Facts,
                                       [&](const auto& fact) { return fact.starts_with(what); });
        };
        std::string text;
        const auto add = [&](const std::string& what) { text += (text.empty() ? "" : ", ") + what; };
        if (!isOther("library"))
            add("library");
        if (!isOther("modules") && !first_.Modules.empty())
            add(Counted(first_.Modules.size(), "module"));
        if (!isOther("links"))
            add(Counted(static_cast<std::uint64_t>(std::ranges::count_if(
                            first_.Links, [](const LinkFacts& link) { return link.Connected.has_value(); })),
                        "link"));
        add(Counted(difference_.SameRequests, "request"));
        if (difference_.CallNames.empty())
            add(Counted(CallsOf(first_), "call"));
        console_.Write("same: " + text + "\n");
    }

    /// Bytes that are not in the log were not compared.
    static std::vector<std::string> HintsOf(const Run& run)
    {
        std::vector<std::string> hints = run.Hints().ForTalk();
        if (run.CutPayloads() > 0)
            hints.push_back(Counted(run.CutPayloads(), "payload is", "payloads are") +
                            " cut: LogMaxPduBuff " + run.Hints().PayloadLimitText());
        return hints;
    }

    void WriteHints(const std::string& name, const std::vector<std::string>& hints)
    {
        for (const std::string& hint : hints)
            console_.Write(Wrapped("", 0, name + ": " + hint, console_.Columns()));
    }

    void WriteLink(const RunRequest& request)
    {
        const bool isShown = link_ == request.Link || (link_.empty() && first_.Links.size() <= 1);
        link_ = request.Link;
        if (!isShown && !link_.empty())
            console_.Write(Printable(link_) + "\n");
    }

    void WriteRequest(const RequestDifference& each)
    {
        static const RunRequest none;
        const RunRequest& first = each.First ? first_.RequestList[*each.First] : none;
        const RunRequest& second = each.Second ? second_.RequestList[*each.Second] : none;
        const RunRequest& request = each.First ? first : second;
        WriteLink(request);
        std::string left = first.AnswerText;
        std::string right = second.AnswerText;
        char mark = ' ';
        std::string note;
        switch (each.Kind) {
        case DifferenceKind::OtherOutcome:
            mark = 'X';
            break;
        case DifferenceKind::OtherRequest:
            right = second.Text + ": " + right;
            note = "other request";
            break;
        case DifferenceKind::OtherBytes:
            note = "other bytes";
            break;
        case DifferenceKind::Slower:
            mark = '!';
            left = MillisecondsText(*first.After) + " ms";
            right = MillisecondsText(*second.After) + " ms";
            note = TimesSlower(*first.After, *second.After);
            break;
        case DifferenceKind::OnlyFirst:
            mark = '-';
            right = "not sent";
            break;
        case DifferenceKind::OnlySecond:
            mark = '+';
            left = "not sent";
            break;
        }
        WriteRow(mark, request.Text.empty() ? "?" : request.Text, left, right, note, each.Count);
    }

    void WriteRow(char mark, const std::string& request, const std::string& left, const std::string& right,
                  std::string note, std::uint64_t count)
    {
        if (count > 1)
            note += (note.empty() ? "" : ", ") + Grouped(count) + " times";
        std::string row;
        if (mark != ' ')
            PutAt(row, MarkColumn, std::string(1, mark));
        PutAt(row, RequestColumn, Shortened(request, FirstColumn - RequestColumn - 1));
        PutAt(row, FirstColumn, Shortened(left, SecondColumn - FirstColumn - 1));
        const std::size_t room = (note.empty() ? console_.Columns() : NoteColumn - 1) - SecondColumn;
        PutAt(row, SecondColumn, Shortened(right, room));
        if (!note.empty())
            PutAt(row, NoteColumn, note);
        console_.Write(Finished(std::move(row)));
    }

    void WriteCalls()
    {
        for (const std::string& name : difference_.CallNames) {
            const bool isFirst = &name == &difference_.CallNames.front();
            std::string row = isFirst ? "calls" : "";
            if (isFirst) {
                PutAt(row, RequestColumn, Grouped(CallsOf(first_)));
                PutAt(row, FirstColumn, Grouped(CallsOf(second_)));
            }
            PutAt(row, SecondColumn,
                  name + " " + Grouped(CallCountOf(first_, name)) + " -> " +
                      Grouped(CallCountOf(second_, name)));
            console_.Write(Finished(std::move(row)));
        }
    }

    Console& console_;
    const Run& first_;
    const Run& second_;
    const RunDifference& difference_;
    std::string link_;
};

std::string RequestJson(const RunRequest& request)
{
    JsonObject object;
    object.Add("outcome", read::OutcomeName(request.Result)).Add("text", request.AnswerText);
    if (request.After)
        object.Add("latency_us", request.After->Us)
            .Add("latency_by", request.After->IsByLog ? "log" : "library");
    return object.Add("line", request.At.Line).Text();
}

std::string DifferenceJson(const RequestDifference& each, const Run& first, const Run& second)
{
    const RunRequest& request =
        each.First ? first.RequestList[*each.First] : second.RequestList[*each.Second];
    JsonObject object;
    object.Add("kind", DifferenceName(each.Kind)).Add("link", request.Link).Add("request", request.Text);
    if (!request.Words.empty())
        object.Add("summary", request.Words);
    object.Add("count", each.Count);
    if (each.First)
        object.AddRaw("first", RequestJson(first.RequestList[*each.First]));
    if (each.Second)
        object.AddRaw("second", RequestJson(second.RequestList[*each.Second]));
    return object.Text();
}

std::string DiffJson(const Run& first, const Run& second, const RunDifference& difference)
{
    JsonArray facts;
    for (const std::string& fact : difference.Facts)
        facts.Add(fact);
    JsonArray requests;
    for (const RequestDifference& each : difference.Requests)
        requests.AddRaw(DifferenceJson(each, first, second));
    JsonArray calls;
    for (const std::string& name : difference.CallNames)
        calls.AddRaw(JsonObject()
                         .Add("call", name)
                         .Add("first", CallCountOf(first, name))
                         .Add("second", CallCountOf(second, name))
                         .Text());
    return JsonObject()
        .Add("schema", "marvane.diff/1")
        .Add("different", !difference.IsEmpty())
        .Add("same_requests", difference.SameRequests)
        .AddRaw("facts", facts.Text())
        .AddRaw("requests", requests.Text())
        .AddRaw("calls", calls.Text())
        .Text();
}

void ReadRun(Run& run, const std::vector<read::LogFile>& files)
{
    read::LogReader reader(run, Run::Wants);
    ReadLogs(files, reader);
    run.FinishRun();
}

int RunDiff(const Arguments& arguments, Console& console)
{
    const std::string& firstPath = arguments.Operands().at(0);
    const std::string& secondPath = arguments.Operands().at(1);
    const std::vector<read::LogFile> firstFiles = FindLogs(std::vector{firstPath}, console);
    const std::vector<read::LogFile> secondFiles = FindLogs(std::vector{secondPath}, console);
    if (firstFiles.empty() || secondFiles.empty())
        return ExitTrouble; // complained about
    Run first(console, firstFiles);
    Run second(console, secondFiles);
    const MdfNames names = MdfNames::Of(arguments, console);
    first.UseNames(names);
    second.UseNames(names.ForAnotherLog());
    ReadRun(first, firstFiles);
    ReadRun(second, secondFiles);
    if ((first.Sessions.empty() || second.Sessions.empty()) && console.HasComplained())
        return ExitTrouble;
    if (first.Sessions.empty() || second.Sessions.empty())
        throw Trouble((first.Sessions.empty() ? firstPath : secondPath) +
                      ": there is no line of a log in it");
    const RunDifference difference = Compare(first, second);
    if (arguments.Has("--json"))
        console.Write(DiffJson(first, second, difference) + "\n");
    else
        DiffPage(console, first, second, difference).Write(RunName(firstPath), RunName(secondPath));
    return difference.IsEmpty() ? 0 : 1;
}

constexpr Option DiffOptionList[] = {
    {"--json", "", "As JSON, schema marvane.diff/1"},
};
constexpr OptionGroup DiffOptions = {"Form", DiffOptionList};
constexpr OptionGroup DiffGroups[] = {DiffOptions, NameOptions};

constexpr Example DiffExamples[] = {
    {"diff yesterday.LGR today.LGR", "what became of the same requests"},
    {"diff good/ bad/ --json", "two folders, for a program"},
};

} // namespace

extern const Command DiffCommand;
constinit const Command DiffCommand = {
    .Name = "diff",
    .Purpose = "Two runs as conversations: other outcomes, other bytes, slower answers, other calls",
    .Takes = {.Text = "FIRST SECOND", .Least = 2, .Most = 2},
    .Description =
        "FIRST and SECOND are logs, folders of logs or patterns. Handles, addresses, times of day and "
        "interleaving do not count, nor do fetches from an empty event queue. An answer is slower from "
        "twice the time and five milliseconds on.\n\n"
        "Marks: X other outcome, ! slower, - in the first run alone, + in the second alone.",
    .Examples = DiffExamples,
    .Groups = DiffGroups,
    .ExitStatus = "0 if the runs are the same, 1 if they differ, 2 for trouble or wrong usage",
    .Run = RunDiff,
};

} // namespace marvane::tool
