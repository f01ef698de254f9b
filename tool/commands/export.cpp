// marvane export: a log in the form that another program reads.
#include <algorithm>

#include "platform/environment.h"
#include "tool/commands/program.h"
#include "tool/commands/redaction.h"
#include "tool/commands/shared_options.h"
#include "tool/console/nearest.h"
#include "tool/export/format.h"
#include "tool/export/zone_time.h"
#include "tool/input/follow.h"
#include "tool/input/log_source.h"
#include "tool/input/watched_bytes.h"

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

std::optional<int> ZoneOf(const Arguments& arguments)
{
    const std::optional<std::string> text = arguments.Value("--zone");
    const std::optional<int> zone = text ? ParseZone(*text) : std::nullopt;
    if (text && !zone)
        throw UsageError("--zone takes an offset such as +01:00 or Z, not '" + *text + "'");
    return zone;
}

/// Gives files without a date in their name that of --date.
void SetDates(const Arguments& arguments, std::vector<read::LogFile>& files)
{
    const std::optional<std::string> text = arguments.Value("--date");
    if (!text)
        return;
    const std::optional<TimeText> time = ParseTime(*text + " 00:00");
    if (!time || !time->Day)
        throw UsageError("--date takes a day such as 2026-11-25, not '" + *text + "'");
    for (read::LogFile& file : files)
        if (!file.Begin.HasNameTime)
            file.Begin.NameTime.Ms = read::DaysOf(*time->Day) * read::MillisecondsPerDay;
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
    if (arguments.Has("--out") && !format.HasDays)
        throw UsageError(name + " is one file: -o FILE");
    if (arguments.Has("--out") && arguments.Has("--output"))
        throw UsageError("--out and -o exclude each other");
    const bool isToOutput = !arguments.Has("--out") && arguments.Value("--output").value_or("-") == "-";
    if (isToOutput && format.IsBinary && console.IsTerminal())
        throw UsageError(name + " is nothing for a terminal: -o FILE writes it to a file");
}

/// A machine's name as the name of a folder.
std::string FolderNameOf(std::string host)
{
    for (char& letter : host)
        if (static_cast<unsigned char>(letter) < 0x20 ||
            std::string_view("/\\:*?\"<>|").find(letter) != std::string_view::npos)
            letter = '_';
    return host.empty() || host.find_first_not_of('.') == std::string::npos ? "_" : host;
}

std::unique_ptr<Sink> SinkOf(const Arguments& arguments, const Format& format, const Inputs& inputs,
                             Console& console)
{
    if (const std::optional<std::string> folder = arguments.Value("--out"))
        return MakeDayFolder(*folder + "/" + FolderNameOf(inputs.Host), "." + std::string(format.Name),
                             inputs.IsFollowing ? Existing::Extended : Existing::Replaced);
    const std::string path = arguments.Value("--output").value_or("-");
    if (inputs.IsFollowing)
        return MakeSink(path, Existing::Extended, console);
    return MakeSink(path, arguments.Has("--force") ? Existing::Replaced : Existing::Refused, console);
}

/// Reads or follows the files, redacted if that is asked for. Returns the status of following, else 0.
int ReadInto(read::LogReader& reader, const Arguments& arguments, Console& console, const Inputs& inputs,
             const std::function<void()>& afterBatch)
{
    if (inputs.IsFollowing) {
        reader.FilterBy(inputs.Redaction);
        return FollowLogs(arguments, console, inputs.Files, reader, afterBatch);
    }
    WatchedBytes watched("exporting", inputs.Files, inputs.Redaction);
    reader.FilterBy(&watched);
    for (const read::LogFile& file : inputs.Files)
        read::ReadLogFile(file, reader);
    reader.Finish();
    reader.FilterBy(nullptr);
    return 0;
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
    SetDates(arguments, files);
    int status = 0;
    std::optional<read::LogReader> reader; // Owns the sessions that the format was given.
    Inputs inputs = {
        .Files = files, .Messages = console, .Range = TimeRangeOf(arguments, files), .Names = names};
    inputs.Zone = ZoneOf(arguments);
    inputs.Host = arguments.Value("--host").value_or(platform::HostName());
    for (const std::string& tag : arguments.Values("--tag"))
        inputs.Tags.push_back(TagOf(tag));
    std::optional<Redactor> redactor = RedactorOf(arguments);
    inputs.Redaction = redactor ? &*redactor : nullptr;
    inputs.Table = TableOf(arguments, format);
    inputs.HasLines = arguments.Has("--lines");
    inputs.IsFollowing = IsFollowing(arguments);
    inputs.Reading = [&](read::LogSink& sink, read::Wants wants, const std::function<void()>& afterBatch) {
        status = ReadInto(reader.emplace(sink, wants), arguments, console, inputs, afterBatch);
    };
    const std::unique_ptr<Sink> sink = SinkOf(arguments, format, inputs, console);
    format.Write(inputs, *sink);
    sink->Finish();
    NoteRedaction(arguments, redactor ? redactor->ChangedLines() : 0, console);
    return status;
}

constexpr Option OutputOptionList[] = {
    {"--format", "FORMAT", "What to write", FormatNames},
    {"-o,--output", "FILE", "The file to write, - for standard output, which is the default"},
    {"--force", "", "Replace FILE if it exists"},
    {"--out", "DIR",
     "jsonl: a compressed file a day, DIR/HOST/DATE.jsonl.gz; a day's file is replaced whole"},
};
constexpr OptionGroup OutputOptions = {"Output", OutputOptionList};

constexpr Option ContentOptionList[] = {
    {"--table", "TABLE",
     "csv: calls, exchanges, params, items, events, comms or problems. Without it, calls"},
    {"--lines", "", "The decoded lines of each call too"},
    {"--host", "NAME", "jsonl: the name of the machine that the log is from. Without it, this one's"},
    {"--zone", "OFFSET", "The log's offset from UTC, such as +01:00 or Z. Without it, that of this machine"},
    {"--date", "DATE", "The day of logs without a date in their name, such as 2026-11-25"},
    {"--tag", "KEY=VALUE", "jsonl: goes into the first record", {}, true},
};
constexpr OptionGroup ContentOptions = {"What is in it", ContentOptionList};
constexpr OptionGroup ExportGroups[] = {OutputOptions, ContentOptions, RedactOptions, TimeOptions,
                                        FollowOptions, NameOptions,    LogOptions};

constexpr Example ExportExamples[] = {
    {"export --format jsonl -o run.jsonl run.LGR", "every call, item, exchange and problem as a JSON object"},
    {"export --format csv --table exchanges -o run.csv run.LGR",
     "each request with its answer, for a spreadsheet"},
    {"export --format sql run.LGR | sqlite3 run.db", "a database with the views slowest and refused"},
    {"export --format pcapng -o run.pcapng run.LGR", "the conversation for Wireshark"},
    {"export --format trace -o run.json run.LGR", "a time line for ui.perfetto.dev or speedscope"},
    {"export --format jsonl -f", "live, on standard output"},
    {"export --format jsonl --out fleet logs", "a compressed file a day, for a database"},
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
        "FILE appears when it is complete. With -f, whole lines are added to it, or to the file of their day.",
    .Examples = ExportExamples,
    .Groups = ExportGroups,
    .ExitStatus = "0; 1 at the time-out of -f; 2 for trouble or wrong usage, or if FILE exists",
    .Run = RunExport,
};

} // namespace marvane::tool
