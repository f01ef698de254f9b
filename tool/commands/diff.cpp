// marvane diff: two runs as conversations.
#include "tool/analysis/mdf_names.h"
#include "tool/commands/diff_page.h"
#include "tool/commands/program.h"
#include "tool/commands/run_difference.h"
#include "tool/commands/shared_options.h"
#include "tool/console/arguments.h"
#include "tool/console/json_text.h"
#include "tool/input/log_source.h"

namespace marvane::tool {

namespace {

std::string RunName(const std::string& path)
{
    const std::size_t end = path.find_last_not_of("/\\");
    const std::string shown = path.substr(0, end + 1);
    return shown.substr(shown.find_last_of("/\\") + 1);
}

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
                         .Add("first", CallCount(first, name))
                         .Add("second", CallCount(second, name))
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
        WriteDiffPage(first, second, difference, RunName(firstPath), RunName(secondPath), console);
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
