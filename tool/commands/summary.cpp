// marvane summary: one page on a log.
#include "tool/analysis/mdf_names.h"
#include "tool/analysis/summary_facts.h"
#include "tool/analysis/summary_json.h"
#include "tool/commands/program.h"
#include "tool/commands/shared_options.h"
#include "tool/commands/summary_page.h"
#include "tool/console/arguments.h"

namespace marvane::tool {

namespace {

int RunSummary(const Arguments& arguments, Console& console)
{
    const std::vector<read::LogFile> files = FindLogs(arguments, console);
    if (files.empty())
        return ExitTrouble; // complained about
    SummaryFacts facts(console, files);
    facts.UseNames(MdfNames::Of(arguments, console));
    read::LogReader reader(facts, SummaryFacts::Wants);
    ReadLogs(files, reader);
    facts.Finish();
    if (facts.Sessions.empty() && console.HasComplained())
        return ExitTrouble;
    if (facts.Sessions.empty())
        throw Trouble("there is no line of a log in what was read");
    if (arguments.Has("--json")) {
        console.Write(SummaryJson(facts, files) + "\n");
    } else {
        WriteSummaryPage(facts, arguments.Has("--all"), arguments.Operands().empty() ? "" : " LOG", console);
        WriteFileNames(files, console);
    }
    return 0;
}

constexpr Option SummaryOptionList[] = {
    {"--all", "", "Every link and every function, however many there are"},
    {"--json", "", "As JSON, schema marvane.summary/1"},
};
constexpr OptionGroup SummaryOptions = {"Form", SummaryOptionList};
constexpr OptionGroup SummaryGroups[] = {SummaryOptions, NameOptions, LogOptions};

constexpr Example SummaryExamples[] = {
    {"summary", "the newest session on one page"},
    {"summary logs/", "all logs of a folder together"},
    {"summary run.LGR --json", "the same for a program"},
};

} // namespace

extern const Command SummaryCommand;
constinit const Command SummaryCommand = {
    .Name = "summary",
    .Purpose = "One page: session, library, links, requests, calls by time, errors, what settings hide",
    .Takes = LogOperands,
    .Description = WhatLogsAre,
    .Examples = SummaryExamples,
    .Groups = SummaryGroups,
    .Run = RunSummary,
};

} // namespace marvane::tool
