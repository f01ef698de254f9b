// `marvane around`: what all threads did around a line, a ComPrimitive or a time.
#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "tool/commands/around_grid.h"
#include "tool/commands/program.h"
#include "tool/commands/shared_options.h"
#include "tool/console/row_text.h"
#include "tool/input/log_source.h"
#include "tool/input/spooled_input.h"
#include "tool/input/time_range.h"

namespace marvane::tool {

namespace {

using read::LogTime;

struct Window
{
    LogTime Begin;
    LogTime End;
};

/// A sink that also complains about files that can't be read.
template <typename Sink> class Complaining : public Sink
{
public:
    template <typename... Values>
    Complaining(const std::vector<read::LogFile>& files, Console& console, Values... values)
        : Sink(values...), files_(files), console_(console)
    {
    }
    void OnProblem(const read::Problem& problem) override { ComplainAbout(problem, files_, console_); }

private:
    const std::vector<read::LogFile>& files_;
    Console& console_;
};

/// Finds the time of a line.
class LineFinder : public read::LogSink
{
public:
    explicit LineFinder(std::uint64_t line) : line_(line) {}
    void OnLine(const read::Line& line) override
    {
        if (line.At.File == 0 && line.At.Line == line_)
            Found = Window{line.Time, line.Time};
    }
    bool IsEnough() const override { return Found.has_value(); }

    std::optional<Window> Found;

private:
    std::uint64_t line_;
};

/// Finds a ComPrimitive from its start to the last item that was fetched for it. If its number was used
/// again, the last use counts.
class PrimitiveFinder : public read::LogSink
{
public:
    explicit PrimitiveFinder(std::uint32_t number) : number_(number) {}
    void OnCall(const read::Call& call) override
    {
        if (call.Which == read::Function::StartComPrimitive && call.Primitive == number_)
            Found = Window{call.BeginTime, call.EndTime};
    }
    void OnItem(const read::Item& item) override
    {
        if (Found && item.Primitive == number_ && item.Fetch)
            Found->End = std::max(Found->End, item.Fetch->EndTime);
    }

    std::optional<Window> Found;

private:
    std::uint32_t number_;
};

template <typename Finder>
Window Find(Finder& finder, read::Wants wants, const std::vector<read::LogFile>& files,
            const std::string& what)
{
    read::LogReader reader(finder, wants);
    ReadLogs(files, reader);
    if (!finder.Found)
        throw Trouble("the log has no " + what);
    return *finder.Found;
}

/// The line or ComPrimitive that is asked for; none if it is a time.
std::optional<Window> FindCentre(const Arguments& arguments, const std::vector<read::LogFile>& files,
                                 Console& console)
{
    if (const auto line = arguments.Number("--line", 1)) {
        Complaining<LineFinder> finder(files, console, *line);
        return Find(finder, read::Wants::Lines, files, "line " + std::to_string(*line));
    }
    if (const auto number = arguments.Number("--hcop", 0, UINT32_MAX)) {
        Complaining<PrimitiveFinder> finder(files, console, static_cast<std::uint32_t>(*number));
        return Find(finder, read::Wants::Calls | read::Wants::Items, files,
                    "ComPrimitive " + std::to_string(*number));
    }
    return std::nullopt;
}

Scene ReadScene(SceneSink& sink, LogTime begin, const std::vector<read::LogFile>& files, Console& console)
{
    read::LogReader reader(sink, read::Wants::Calls | read::Wants::Items | read::Wants::Comms);
    ReadLogs(files, reader, {.Since = begin, .WholeCalls = true});
    if (sink.IsFull())
        console.Note("more than " + Grouped(SceneSink::MostActs) +
                     " calls and reports: the rest of that time is not shown");
    return sink.Finish();
}

Window AtTime(LogTime time)
{
    return {time, time};
}

/// Milliseconds of an option that takes seconds.
std::int64_t SpanOf(const Arguments& arguments, std::string_view option, std::int64_t otherwise)
{
    const std::optional<std::string> text = arguments.Value(option);
    if (!text)
        return otherwise;
    char* end = nullptr;
    const double seconds = std::strtod(text->c_str(), &end);
    if (text->empty() || *end != 0 || !(seconds >= 0 && seconds <= 1e6))
        throw UsageError(std::string(option) + " takes a number of seconds, not '" + *text + "'");
    return std::llround(seconds * 1000);
}

int RunAround(const Arguments& arguments, Console& console)
{
    const std::int64_t usual = arguments.Has("--hcop") ? 0 : 10; // A ComPrimitive has a length of its own.
    std::vector<read::LogFile> files = FindLogs(arguments, console);
    if (files.empty())
        return ExitTrouble; // complained about
    SpoolInput(files, console);
    const std::int64_t before = SpanOf(arguments, "--before", usual);
    const std::int64_t after = SpanOf(arguments, "--after", usual);
    if (arguments.Has("--line") + arguments.Has("--hcop") + arguments.Has("--at") != 1)
        throw UsageError("around needs one of --line, --hcop and --at");
    const std::optional<Window> found = FindCentre(arguments, files, console);
    const Window centre = found ? *found : AtTime(*TimeOf("--at", arguments, files));
    const LogTime begin = {centre.Begin.Ms - before};
    const LogTime end = {centre.End.Ms + after};
    // What can't be read has been complained about by the first reading, if there was one.
    SceneSink silent(begin, end);
    Complaining<SceneSink> complaining(files, console, begin, end);
    Scene scene = ReadScene(found ? silent : complaining, begin, files, console);
    if (scene.Acts.empty())
        return 1;
    scene.Line = arguments.Number("--line", 1).value_or(0);
    console.UsePager();
    DrawScene(scene, arguments.Has("--all"), console);
    return 0;
}

constexpr Example Examples[] = {
    {"around --line 989", "what all threads did when line 989 was written"},
    {"around --hcop 7", "from the start of ComPrimitive 7 to its last item"},
    {"around --at 14:03:07.250 --after 1", "the second after a time"},
};

constexpr Option Where[] = {
    {"--line", "N", "Around this line of the (first) file"},
    {"--hcop", "N", "Around this ComPrimitive, from its start to its last item"},
    {"--at", "TIME", "Around a time: 14:03:07.250, '2026-11-25 14:03:07', or -5m before the end"},
    {"--before", "SECONDS", "Begin that long before it; without the option 0.01, before a ComPrimitive 0"},
    {"--after", "SECONDS", "End that long after it; without the option the same"},
};

constexpr Option What[] = {
    {"--all", "", "Also calls of PDUDestroyItem, and each repetition on a line of its own"},
};

constexpr OptionGroup Groups[] = {{"Where", Where}, {"What to show", What}, LogOptions};

} // namespace

extern const Command AroundCommand;
constinit const Command AroundCommand = {
    .Name = "around",
    .Purpose = "What all threads did around a line, a ComPrimitive or a time, side by side",
    .Takes = LogOperands,
    .Description =
        "A column a thread, a bar (|) where a call is open. Times count from the beginning of the session.",
    .Examples = Examples,
    .Groups = Groups,
    .ExitStatus = "0 if something was shown, 1 if nothing happened then, 2 for trouble or wrong usage",
    .Run = RunAround,
};

} // namespace marvane::tool
