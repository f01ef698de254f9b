// `marvane cut`: a part of a log as a log of its own.
#include <algorithm>

#include "tool/commands/program.h"
#include "tool/commands/redaction.h"
#include "tool/commands/shared_options.h"
#include "tool/input/log_source.h"
#include "tool/input/spooled_input.h"
#include "tool/input/time_range.h"

namespace marvane::tool {

namespace {

using read::LineKind;
using read::Position;

/// Lines of one thread from the entry line of an outermost call to its last line.
struct Stretch
{
    std::uint32_t Thread;
    Position Begin;
    Position End;
};

bool Covers(const std::vector<Stretch>& stretches, const read::Line& line)
{
    return std::ranges::any_of(stretches, [&](const Stretch& stretch) {
        return stretch.Thread == line.Thread && line.At >= stretch.Begin && line.At <= stretch.End;
    });
}

/// The first reading: which session is running when the part begins, and which calls are open at its ends.
class CutPlan : public read::LogSink
{
public:
    CutPlan(TimeRange range, const std::vector<read::LogFile>& files, Console& console)
        : range_(range), files_(files), console_(console)
    {
    }

    void OnCall(const read::Call& call) override { Take(call); }
    void OnEvent(const read::Event& event) override { Take(event); }
    void OnSession(const read::Session& session) override
    {
        if (range_.Since && session.BeginTime <= *range_.Since)
            headerBegin_ = session.Begin;
    }
    void OnProblem(const read::Problem& problem) override { ComplainAbout(problem, files_, console_); }

    /// Whether a line is in the part.
    bool Holds(const read::Line& line) const
    {
        if (Covers(openAtEnd_, line))
            return true;
        return range_.Holds(line.Time) && !Covers(openAtBegin_, line);
    }

    /// Where the header of the session is that is running when the part begins; none if the part begins
    /// before all sessions.
    std::optional<Position> HeaderBegin() const { return headerBegin_; }

private:
    void Take(const read::Call& call)
    {
        if (call.Depth > 0)
            return;
        const Stretch stretch = {call.Thread, call.Begin, call.End};
        if (range_.Since && call.BeginTime < *range_.Since && call.EndTime >= *range_.Since)
            openAtBegin_.push_back(stretch);
        else if (range_.Until && call.BeginTime <= *range_.Until && call.EndTime > *range_.Until)
            openAtEnd_.push_back(stretch);
    }

    TimeRange range_;
    const std::vector<read::LogFile>& files_;
    Console& console_;
    std::optional<Position> headerBegin_;
    std::vector<Stretch> openAtBegin_;
    std::vector<Stretch> openAtEnd_;
};

/// What a header is made of, the lines about the target library and the end of LOGGER_Initialise included.
bool IsHeader(const read::Line& line)
{
    switch (line.Kind) {
    case LineKind::Decoded:
    case LineKind::Continuation:
    case LineKind::Initialise:
    case LineKind::Version:
    case LineKind::Header:
    case LineKind::Setting:
        return true;
    case LineKind::CallOut:
    case LineKind::Exit:
        return line.Text.find("LOGGER_Initialise") != std::string_view::npos;
    default:
        return false;
    }
}

/// The second reading: writes the lines, with the line ends that they have.
class CutWriter : public read::LogSink
{
public:
    /// Without a redactor nothing was redacted.
    CutWriter(const CutPlan& plan, const Redactor* redactor, Console& console)
        : plan_(plan), redactor_(redactor), console_(console)
    {
    }

    void OnLine(const read::Line& line) override
    {
        EndLine(line.At);
        const bool isHeader = TakesHeader(line);
        if (!isHeader && !plan_.Holds(line))
            return;
        lines_ += isHeader ? 0 : 1;
        redactedLines_ += redactor_ && redactor_->IsChanged(line.At.File, line.At.Line) ? 1 : 0;
        console_.Write(line.Whole);
        written_ = line.At;
        written_->Offset += line.Whole.size();
        hasEnd_ = line.HasLineEnd;
    }

    /// Ends the last line.
    void Finish() { EndLine({}); }

    std::uint64_t Lines() const { return lines_; }
    std::uint64_t RedactedLines() const { return redactedLines_; }

private:
    /// True for the lines of the header of the session that is running when the part begins.
    bool TakesHeader(const read::Line& line)
    {
        if (plan_.HeaderBegin() == line.At)
            headerThread_ = line.Thread;
        if (headerThread_ != line.Thread)
            return false;
        const bool isHeader = IsHeader(line);
        if (!isHeader)
            headerThread_.reset();
        return isHeader;
    }

    /// Writes the end of the line before: CR LF if the next line begins two bytes after its text.
    void EndLine(Position next)
    {
        if (!written_)
            return;
        if (next.File == written_->File && next.Line == written_->Line + 1)
            hasReturn_ = next.Offset == written_->Offset + 2;
        if (hasEnd_)
            console_.Write(hasReturn_ ? "\r\n" : "\n");
        written_.reset();
    }

    const CutPlan& plan_;
    const Redactor* redactor_;
    Console& console_;
    std::optional<Position> written_; ///< the line whose end is still to be written, and where that is
    std::optional<std::uint32_t> headerThread_;
    bool hasEnd_ = false;
    bool hasReturn_ = false;
    std::uint64_t lines_ = 0;
    std::uint64_t redactedLines_ = 0;
};

int RunCut(const Arguments& arguments, Console& console)
{
    std::vector<read::LogFile> files = FindLogs(arguments, console);
    if (files.empty())
        return ExitTrouble; // complained about
    SpoolInput(files, console);
    const TimeRange range = TimeRangeOf(arguments, files);
    std::optional<Redactor> redactor = RedactorOf(arguments);
    if (!range.Since && !range.Until && !redactor)
        throw UsageError("cut needs --since, --until or --redact");
    Redactor* const used = redactor ? &*redactor : nullptr;
    CutPlan plan(range, files, console);
    read::LogReader planReader(plan, read::Wants::Calls);
    const read::ReadOptions options = {.Since = range.Since, .WholeCalls = true};
    planReader.FilterBy(used);
    ReadLogs(files, planReader, options);

    CutWriter writer(plan, used, console);
    read::LogReader reader(writer, read::Wants::Lines);
    reader.FilterBy(used);
    ReadLogs(files, reader, options);
    writer.Finish();
    NoteRedaction(arguments, writer.RedactedLines(), console);
    return writer.Lines() > 0 ? 0 : 1;
}

constexpr Example Examples[] = {
    {"cut --since 14:03 --until 14:05:30 > part.LGR", "two and a half minutes of the newest log"},
    {"cut --since -10s LOG > end.LGR", "the last ten seconds"},
    {"cut --redact vin LOG > supplier.LGR", "the whole log without the vehicle's identity"},
};

constexpr OptionGroup Groups[] = {TimeOptions, RedactOptions, LogOptions};

} // namespace

extern const Command CutCommand;
constinit const Command CutCommand = {
    .Name = "cut",
    .Purpose = "A part of a log as a log of its own, with its header",
    .Takes = LogOperands,
    .Description =
        "The part goes to standard output byte for byte. Calls are never cut: those that were entered "
        "before the part are left out, those that return after it are whole. Other commands take the date "
        "of a log from its name: keep the form D-PDU_API_Logger_DD-MM-YYYY_HH-MM-SS.LGR if it matters.",
    .Examples = Examples,
    .Groups = Groups,
    .ExitStatus = "0 if the part has lines, 1 if not, 2 for trouble or wrong usage",
    .Run = RunCut,
};

} // namespace marvane::tool
