// `marvane show`: the log itself, by whole calls.
#include <cstdio>

#include "line/stamp.h"
#include "tool/commands/call_stream.h"
#include "tool/commands/follow.h"
#include "tool/commands/log_source.h"
#include "tool/commands/program.h"
#include "tool/commands/shared_options.h"
#include "tool/commands/show_filter.h"
#include "tool/read/links.h"

namespace marvane::tool {

namespace {

using read::LineKind;

enum class TimeStyle
{
    Absolute, ///< the stamp as the log has it
    Relative, ///< since the beginning of the log
    Delta,    ///< since the line that was shown before
};

TimeStyle TimeStyleOf(const Arguments& arguments)
{
    const std::string style = arguments.Value("--time").value_or("abs");
    return style == "rel" ? TimeStyle::Relative : style == "delta" ? TimeStyle::Delta : TimeStyle::Absolute;
}

/// Writes units, with context and separators between those that are apart.
class UnitPrinter
{
public:
    UnitPrinter(const Arguments& arguments, Console& console)
        : console_(console), style_(TimeStyleOf(arguments)),
          before_(arguments.Number("--before-context").value_or(arguments.Number("--context").value_or(0))),
          after_(arguments.Number("--after-context").value_or(arguments.Number("--context").value_or(0))),
          most_(arguments.Number("--limit", 1).value_or(UINT64_MAX))
    {
    }

    bool HasContext() const { return before_ + after_ > 0; }
    bool IsDone() const { return shown_ >= most_ && afterLeft_ == 0; }
    std::uint64_t Shown() const { return shown_; }

    /// The time that the log begins; only the first one counts.
    void Begin(read::LogTime time)
    {
        if (!zero_)
            zero_ = last_ = time;
    }

    void Give(const Unit& unit)
    {
        Begin(unit.Time);
        if (unit.IsSelected && shown_ < most_) {
            WriteContext();
            ++shown_;
            afterLeft_ = after_;
            Write(unit);
        } else if (afterLeft_ > 0) {
            --afterLeft_;
            Write(unit);
        } else {
            Remember(unit);
        }
    }

private:
    void Remember(const Unit& unit)
    {
        if (before_ == 0) {
            hasGap_ = true;
            return;
        }
        if (context_.size() == before_) {
            context_.pop_front();
            hasGap_ = true;
        }
        context_.push_back(unit);
    }

    void WriteContext()
    {
        if (hasGap_ && shown_ > 0 && HasContext())
            console_.Write(console_.Coloured(Colour::Dim, "--") + "\n");
        hasGap_ = false;
        for (const Unit& unit : context_)
            Write(unit);
        context_.clear();
    }

    void Write(const Unit& unit)
    {
        for (const LogLines::Entry& entry : unit.Lines.Entries())
            WriteLine(unit, entry);
    }

    void WriteLine(const Unit& unit, const LogLines::Entry& entry)
    {
        const std::string_view whole = unit.Lines.Whole(entry);
        if (style_ == TimeStyle::Absolute && !console_.HasColour()) {
            console_.Write(whole);
            console_.Write("\n");
            return;
        }
        std::string_view text = whole;
        if (entry.HasStamp) {
            console_.Write(console_.Coloured(Colour::Dim, Stamp(entry, whole)));
            text.remove_prefix(StampLength);
        }
        console_.Write(console_.Coloured(ColourOf(unit, entry.Kind), text) + "\n");
        last_ = entry.Time;
    }

    /// The stamp with its clock replaced by a distance, as wide as before.
    std::string Stamp(const LogLines::Entry& entry, std::string_view whole) const
    {
        constexpr std::size_t clockBegin = 1, clockEnd = 13;
        if (style_ == TimeStyle::Absolute)
            return std::string(whole.substr(0, StampLength));
        const std::int64_t distance = entry.Time - (style_ == TimeStyle::Relative ? *zero_ : *last_);
        char text[32];
        std::snprintf(text, sizeof text, "%c%lld.%03d", distance < 0 ? '-' : '+',
                      static_cast<long long>(std::abs(distance) / 1000),
                      static_cast<int>(std::abs(distance) % 1000));
        std::string clock = text;
        if (clock.size() < clockEnd - clockBegin)
            clock.insert(0, clockEnd - clockBegin - clock.size(), ' ');
        return "{" + clock + std::string(whole.substr(clockEnd, StampLength - clockEnd));
    }

    static Colour ColourOf(const Unit& unit, LineKind kind)
    {
        if (kind == LineKind::Entry)
            return Colour::Bold;
        if (kind == LineKind::Exit || kind == LineKind::NotLoaded)
            return unit.HasFailed ? Colour::Red : Colour::Plain;
        return kind == LineKind::Full || kind == LineKind::Foreign ? Colour::Yellow : Colour::Plain;
    }

    Console& console_;
    TimeStyle style_;
    std::uint64_t before_;
    std::uint64_t after_;
    std::uint64_t most_;
    std::uint64_t shown_ = 0;
    std::uint64_t afterLeft_ = 0;
    bool hasGap_ = false; ///< since the unit that was shown last, some were left out
    std::deque<Unit> context_;
    std::optional<read::LogTime> zero_;
    std::optional<read::LogTime> last_;
};

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
    UnitPrinter printer(arguments, console);
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
