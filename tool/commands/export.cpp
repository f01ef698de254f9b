// marvane export: a log in the form that another program reads.
#include <algorithm>

#include "platform/environment.h"
#include "tool/commands/follow.h"
#include "tool/commands/log_source.h"
#include "tool/commands/nearest.h"
#include "tool/commands/program.h"
#include "tool/commands/shared_options.h"
#include "tool/export/format.h"

namespace marvane::tool {

namespace {

/// KEY=VALUE of --tag.
std::pair<std::string, std::string> TagOf(const std::string& text)
{
    const std::size_t sign = text.find('=');
    if (sign == std::string::npos || sign == 0)
        throw UsageError("--tag takes KEY=VALUE, not '" + text + "'");
    return {text.substr(0, sign), text.substr(sign + 1)};
}

std::string TableOf(const Arguments& arguments, const Format& format)
{
    const std::optional<std::string> table = arguments.Value("--table");
    if (!table)
        return {};
    const std::vector<std::string_view> known =
        format.Tables.empty() ? std::vector<std::string_view>() : Words(format.Tables);
    if (std::ranges::find(known, *table) == known.end())
        throw UsageError("--format " + std::string(format.Name) + " has no table '" + *table + "'" +
                         DidYouMean(*table, known));
    return *table;
}

/// What the options ask for that this format can't do.
void RefuseWhatDoesNotFit(const Arguments& arguments, const Format& format, const Console& console)
{
    const std::string name = "--format " + std::string(format.Name);
    if (IsFollowing(arguments) && !format.CanFollow)
        throw UsageError("a log can't be followed with " + name);
    const bool isToOutput = arguments.Value("--output").value_or("-") == "-";
    if (isToOutput && format.IsBinary && console.IsTerminal())
        throw UsageError(name + " is nothing for a terminal: -o FILE writes it to a file");
}

std::unique_ptr<Sink> SinkOf(const Arguments& arguments, Console& console)
{
    const std::string path = arguments.Value("--output").value_or("-");
    if (path == "-")
        return MakeOutputSink(console);
    if (IsFollowing(arguments))
        return MakeFileSink(path, Existing::Extended);
    return MakeFileSink(path, arguments.Has("--force") ? Existing::Replaced : Existing::Refused);
}

int RunExport(const Arguments& arguments, Console& console)
{
    const std::optional<std::string> name = arguments.Value("--format");
    if (!name)
        throw UsageError("export needs --format");
    const Format& format = *FindFormat(*name);
    RefuseWhatDoesNotFit(arguments, format, console);

    const MdfNames names = MdfNames::Of(arguments, console);
    std::vector<read::LogFile> files = FindLogs(arguments, console);
    if (files.empty())
        return IsFollowing(arguments) ? 1 : ExitTrouble; // the time-out came first, or complained about
    int status = 0;
    Inputs inputs = {
        .Files = files, .Messages = console, .Range = TimeRangeOf(arguments, files), .Names = names};
    inputs.Host = arguments.Value("--host").value_or(platform::HostName());
    for (const std::string& tag : arguments.Values("--tag"))
        inputs.Tags.push_back(TagOf(tag));
    inputs.Table = TableOf(arguments, format);
    inputs.HasLines = arguments.Has("--lines");
    inputs.IsFollowing = IsFollowing(arguments);
    inputs.Reading = [&](read::LogSink& sink, read::Wants wants, const std::function<void()>& afterBatch) {
        read::LogReader reader(sink, wants);
        if (inputs.IsFollowing)
            status = FollowLogs(arguments, console, files, reader, afterBatch);
        else
            ReadLogs(files, reader);
    };
    const std::unique_ptr<Sink> sink = SinkOf(arguments, console);
    format.Write(inputs, *sink);
    sink->Finish();
    return status;
}

constexpr Option OutputOptionList[] = {
    {"--format", "FORMAT", "What to write", FormatNames},
    {"-o,--output", "FILE", "The file to write, - for standard output, which is the default"},
    {"--force", "", "Replace FILE if it exists"},
};
constexpr OptionGroup OutputOptions = {"Output", OutputOptionList};

constexpr Option ContentOptionList[] = {
    {"--lines", "", "jsonl: the decoded lines of each call too"},
    {"--host", "NAME", "jsonl: the name of the machine that the log is from. Without it, this one's"},
    {"--tag", "KEY=VALUE", "jsonl: goes into the first record", {}, true},
};
constexpr OptionGroup ContentOptions = {"What is in it", ContentOptionList};
constexpr OptionGroup ExportGroups[] = {OutputOptions, ContentOptions, TimeOptions,
                                        FollowOptions, NameOptions,    LogOptions};

constexpr Example ExportExamples[] = {
    {"export --format jsonl -o run.jsonl run.LGR", "every call, item, exchange and problem as a JSON object"},
    {"export --format jsonl -f", "live, on standard output"},
};

} // namespace

extern const Command ExportCommand;
constinit const Command ExportCommand = {
    .Name = "export",
    .Purpose = "A log in the form that another program reads",
    .Takes = LogOperands,
    .Description =
        "LOG is a file (.gz too), a folder, a pattern or - for standard input. Without it, the newest "
        "session in the log folder of the configuration that applies here.\n\n"
        "FILE appears when it is complete. With -f, whole lines are added to it.",
    .Examples = ExportExamples,
    .Groups = ExportGroups,
    .ExitStatus = "0; 1 at the time-out of -f; 2 for trouble or wrong usage, or if FILE exists",
    .Run = RunExport,
};

} // namespace marvane::tool
