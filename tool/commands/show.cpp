// `marvane show`: the log itself, by whole calls.
#include "tool/commands/call_stream.h"
#include "tool/commands/program.h"
#include "tool/commands/shared_options.h"
#include "tool/commands/show_filter.h"
#include "tool/commands/unit_printer.h"
#include "tool/input/follow.h"
#include "tool/input/log_source.h"
#include "tool/read/links.h"

namespace marvane::tool {

namespace {

UnitPrinter::Style StyleOf(const Arguments& arguments)
{
    const std::string time = arguments.Value("--time").value_or("abs");
    const std::optional<std::uint64_t> before = arguments.Number("--before-context");
    const std::uint64_t context = arguments.Number("--context").value_or(0);
    return {.Time = time == "rel"     ? TimeStyle::Relative
                    : time == "delta" ? TimeStyle::Delta
                                      : TimeStyle::Absolute,
            .Before = before.value_or(context),
            .After = arguments.Number("--after-context").value_or(context),
            .Most = arguments.Number("--limit", 1).value_or(UINT64_MAX)};
}

class ShowSink : public CallStream
{
public:
    ShowSink(const ShowFilter& filter, UnitPrinter& printer, const std::vector<read::LogFile>& files,
             Console& console)
        : filter_(filter), printer_(printer), files_(files), console_(console)
    {
    }

    void OnCall(const read::Call& call) override
    {
        if (filter_.AsksForLinks())
            links_.OnCall(call);
        CallStream::OnCall(call);
    }
    void OnSession(const read::Session& session) override { printer_.Begin(session.BeginTime); }
    void OnProblem(const read::Problem& problem) override { ComplainAbout(problem, files_, console_); }
    bool IsEnough() const override { return printer_.IsDone(); }

private:
    bool Select(const read::Call& call, bool isEvent, const Unit& unit) override
    {
        return filter_.Takes(call, isEvent, LinkName(call), unit.Lines);
    }
    bool SelectLoose(const Unit& unit) override { return filter_.TakesLoose(unit.Lines, unit.Thread); }
    bool WantsAll() const override { return printer_.HasContext(); }
    void Give(const Unit& unit) override { printer_.Give(unit); }

    std::string LinkName(const read::Call& call)
    {
        if (!call.Link || !filter_.AsksForLinks())
            return {};
        const std::shared_ptr<const read::Link> link = links_.Find(call);
        return link->Protocol + " " + link->Resource;
    }

    const ShowFilter& filter_;
    UnitPrinter& printer_;
    const std::vector<read::LogFile>& files_;
    Console& console_;
    read::LinkBook links_;
};

int RunShow(const Arguments& arguments, Console& console)
{
    std::vector<read::LogFile> files = FindLogs(arguments, console);
    if (files.empty() && !IsFollowing(arguments))
        return ExitTrouble; // complained about
    const ShowFilter filter(arguments, TimeRangeOf(arguments, files));
    UnitPrinter printer(StyleOf(arguments), console);
    ShowSink sink(filter, printer, files, console);
    read::LogReader reader(sink, read::Wants::Lines | read::Wants::Calls);
    if (IsFollowing(arguments)) {
        const int status = FollowLogs(arguments, console, files, reader, [&] { sink.Release(); });
        sink.Finish();
        return status;
    }
    console.UsePager();
    ReadLogs(files, reader, {.Since = filter.Range().Since, .WholeCalls = true});
    sink.Finish();
    return printer.Shown() > 0 ? 0 : 1;
}

constexpr Example Examples[] = {
    {"show --errors -B 2", "failed calls, each with the two calls before it"},
    {"show --call StartComPrimitive --link 1", "requests on link 1, with their bytes"},
    {"show --calls 120-180 --time delta", "some calls, with the time from line to line"},
    {"show --grep '62 F1 90' --since 14:03 --until 14:05", "calls that show these bytes"},
    {"show -f --until-match PDUDestruct --timeout 60", "wait for the end of a test run"},
};

constexpr Option Filters[] = {
    {"--call",
     "NAME",
     "Calls of this function, with or without its PDU; PDUCallbackTrap for callbacks",
     {},
     true},
    {"--link",
     "LINK",
     "Calls on this link: its number (hCLL), or a part of its resource's or protocol's name",
     {},
     true},
    {"--module", "MODULE", "Calls with this module (hMod)"},
    {"--thread", "THREAD", "Lines of this thread, hexadecimal as in the log"},
    {"--status", "STATUS", "Calls that returned this status, a name or a number", {}, true},
    {"--errors", "", "Calls that failed, did not return or found no library"},
    {"--calls", "FIRST-LAST", "Calls by their number in the log"},
    {"-e,--grep", "TEXT", "Calls with this text in a line; of several texts one is enough", {}, true},
    {"-v,--invert-match", "", "Calls without the text of --grep"},
};

constexpr Option Output[] = {
    {"-n,--limit", "N", "At most N calls"},
    {"-B,--before-context", "N", "The N calls before each one too"},
    {"-A,--after-context", "N", "The N calls after each one too"},
    {"-C,--context", "N", "Both"},
    {"--time", "HOW",
     "The clock of the log (abs), the time since its beginning (rel) or since the last line (delta)",
     "abs,rel,delta"},
};

constexpr OptionGroup Groups[] = {
    {"Which calls", Filters}, TimeOptions, {"Output", Output}, FollowOptions, LogOptions,
};

} // namespace

extern const Command ShowCommand;
constinit const Command ShowCommand = {
    .Name = "show",
    .Purpose = "The log itself, by whole calls: filtered, with context, live",
    .Takes = LogOperands,
    .Description =
        "All lines of a call are shown together, calls in the order in which they were entered. Without "
        "filters everything is shown; headers, marks and comms reports are left out by filters that "
        "only calls can meet. LOG is a file (.gz too), a folder, a pattern or - for standard input; "
        "without it, the newest session in the log folder of the configuration that applies here.",
    .Examples = Examples,
    .Groups = Groups,
    .ExitStatus =
        "0 if something was shown, 1 if not, 2 for trouble or wrong usage; with -f 0 if --until-match was "
        "met, 1 at the time-out",
    .Run = RunShow,
};

} // namespace marvane::tool
