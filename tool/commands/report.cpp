// marvane report: a log as one page for a browser.
#include "tool/report/report.h"
#include "tool/commands/program.h"
#include "tool/commands/redaction.h"
#include "tool/commands/shared_options.h"
#include "tool/console/row_text.h"
#include "tool/input/log_source.h"

namespace marvane::tool {

namespace {

// Browsers need about a second for a million lines to open such a page.
constexpr std::uint64_t ManyLines = 2'000'000;

/// Where the page goes without -o: the log's name, in the current folder.
std::string UsualPath(const read::LogFile& log)
{
    std::string name = log.IsStandardInput ? "report" : log.Begin.Name;
    for (const std::string_view ending : {".gz", ".LGR", ".lgr"})
        if (name.size() > ending.size() && name.ends_with(ending))
            name.resize(name.size() - ending.size());
    return name + ".html";
}

/// What the page's maker should know.
void WriteNotes(const Report& report, const Arguments& arguments, const std::string& path, Console& console)
{
    if (!arguments.Has("--output"))
        console.Note("written: " + path);
    if (report.Lines > ManyLines)
        console.Note(Grouped(report.Lines) + " lines: a page of more than " + Grouped(ManyLines) +
                     " opens slowly; --since and --until take a part of the log");
}

int RunReport(const Arguments& arguments, Console& console)
{
    const MdfNames names = MdfNames::Of(arguments, console);
    const std::vector<read::LogFile> files = FindLogs(arguments, console);
    if (files.empty())
        return ExitTrouble; // complained about
    const TimeRange part = TimeRangeOf(arguments, files);
    const bool hasRaw = arguments.Has("--raw");
    if (hasRaw && (part.Since || part.Until))
        throw UsageError("--raw is the whole log, which --since and --until exclude");
    const std::string path = arguments.Value("--output").value_or(UsualPath(files.front()));
    if (path == "-" && console.IsTerminal())
        throw UsageError("a page is nothing for a terminal: -o FILE writes it to a file");
    std::optional<Redactor> redactor = RedactorOf(arguments);
    const std::unique_ptr<Sink> sink =
        MakeSink(path, arguments.Has("--force") ? Existing::Replaced : Existing::Refused, console);
    const Report report =
        MakeReport({.Files = files,
                    .Messages = console,
                    .Part = part,
                    .Names = names,
                    .Redaction = redactor ? &*redactor : nullptr,
                    .RedactedKinds = redactor ? RedactedKinds(arguments) : std::vector<std::string_view>(),
                    .HasRaw = hasRaw});
    if (!report.HasSession && console.HasComplained())
        return ExitTrouble;
    if (!report.HasSession)
        throw Trouble("there is no line of a log in what was read");
    WritePage(report.Content, *sink);
    sink->Finish();
    NoteRedaction(arguments, redactor ? redactor->ChangedLines() : 0, console);
    WriteNotes(report, arguments, path, console);
    return 0;
}

constexpr Option ReportOptionList[] = {
    {"-o,--output", "FILE",
     "The file to write, - for standard output. Without it, the name of the log with .html, in the current folder"},
    {"--force", "", "Replace FILE if it exists"},
    {"--raw", "", "Put the log itself into the page too, to be saved from it"},
};
constexpr OptionGroup ReportOptions = {"Output", ReportOptionList};
constexpr OptionGroup ReportGroups[] = {ReportOptions, TimeOptions, RedactOptions, NameOptions, LogOptions};

constexpr Example ReportExamples[] = {
    {"report", "the newest session, as a page beside you"},
    {"report run.LGR -o run.html --redact", "a page to send, without vehicle, keys and serial numbers"},
    {"report run.LGR --since 14:03 --until 14:05", "two minutes of a long log"},
};

} // namespace

extern const Command ReportCommand;
constinit const Command ReportCommand = {
    .Name = "report",
    .Purpose = "A log as one page for a browser: conversation, time line, errors, every line",
    .Takes = LogOperands,
    .Description =
        "LOG is a file (.gz too), a folder, a pattern or - for standard input. Without it, the newest "
        "session in the log folder of the configuration that applies here.\n\n"
        "The page is one file that needs no network and can be sent as it is. It holds every line of the log: --redact "
        "replaces what should not leave the house. A log of more than 2,000,000 lines makes a page that opens "
        "slowly: --since and --until take a part.\n\n"
        "FILE appears when it is complete.",
    .Examples = ReportExamples,
    .Groups = ReportGroups,
    .ExitStatus = "0; 2 for trouble or wrong usage, or if FILE exists",
    .Run = RunReport,
};

} // namespace marvane::tool
