// marvane errors: what went wrong, each with its why.
#include "tool/analysis/finding_json.h"
#include "tool/analysis/mdf_names.h"
#include "tool/analysis/sorted_findings.h"
#include "tool/commands/program.h"
#include "tool/commands/shared_options.h"
#include "tool/console/arguments.h"
#include "tool/console/json_text.h"
#include "tool/console/row_text.h"
#include "tool/input/follow.h"
#include "tool/input/log_source.h"

namespace marvane::tool {

namespace {

constexpr std::size_t LineColumn = 5; // columns where a field ends or begins
constexpr std::size_t TimeColumn = 14;
constexpr std::size_t SubjectColumn = 16;
constexpr std::size_t TextColumn = 49;

class ErrorRows : public SortedFindings
{
public:
    ErrorRows(Console& console, const std::vector<read::LogFile>& files, bool isAll)
        : SortedFindings(console, files, isAll), console_(console)
    {
    }

    void Show(const Finding& finding) override
    {
        if (HasSeveralSessions() && finding.Session != session_) {
            const read::LogTime begin = BeginOf(finding);
            console_.Write((session_ == 0 ? "== session " : "\n== session ") +
                           std::to_string(finding.Session) + "   " + DateText(begin) + "  " +
                           ClockText(begin) + "\n");
        }
        session_ = finding.Session;
        std::string row;
        if (!finding.Subject.empty()) {
            PutBefore(row, LineColumn, PositionText(finding.At));
            PutBefore(row, TimeColumn, "+" + SecondsText(BeginOf(finding), finding.Time));
        }
        PutAt(row, SubjectColumn, finding.Subject);
        if (ColumnsOf(row) + 1 >= TextColumn) {
            console_.Write(Finished(std::move(row)));
            row.clear();
        }
        console_.Write(Wrapped(std::move(row), TextColumn, finding.Text, console_.Columns()));
        for (const std::string& why : finding.Why)
            console_.Write(Wrapped({}, SubjectColumn, why, console_.Columns()));
    }

private:
    Console& console_;
    std::uint32_t session_ = 0;
};

std::string LeftOutText(const SortedFindings& found)
{
    const std::uint64_t queues = found.Count(FindingKind::EmptyQueue);
    const std::uint64_t pending = found.Count(FindingKind::Pending);
    std::string text;
    if (queues > 0)
        text = Counted(queues, "empty queue");
    if (pending > 0)
        text += (text.empty() ? "" : " and ") + Grouped(pending) + " \"response pending\"";
    return text;
}

/// What is good to know even if nothing is wrong with it, as far as the log can say so.
std::string AllClearText(const SortedFindings& found)
{
    std::string text;
    const auto add = [&](FindingKind kind, std::string_view clear) {
        if (found.Count(kind) == 0)
            text.append(text.empty() ? "" : "; ").append(clear);
    };
    if (found.Count(FindingKind::NotLoaded) == 0)
        add(FindingKind::InFlight, "every call has returned");
    const bool isWhole = found.CutPayloads() == 0 && found.Hints().ForTalk().empty();
    add(FindingKind::Cut, isWhole ? "nothing was cut" : "no call was cut");
    if (found.Hints().ShowsEvents())
        add(FindingKind::DataLost, "no event was lost");
    add(FindingKind::Damaged, "no line is damaged");
    if (!text.empty())
        text.front() = static_cast<char>(text.front() - ('a' - 'A'));
    return text.empty() ? text : text + ".";
}

std::string CutPayloadsText(const SortedFindings& found)
{
    return Counted(found.CutPayloads(), "payload is", "payloads are") + " cut: LogMaxPduBuff " +
           found.Hints().PayloadLimitText();
}

void WriteFooter(Console& console, const SortedFindings& found, bool isAll)
{
    std::string line = (found.ErrorCount() == 0 ? "None" : Grouped(found.ErrorCount())) + " found.";
    const std::string normal = LeftOutText(found);
    const bool isOne = found.Count(FindingKind::EmptyQueue) + found.Count(FindingKind::Pending) == 1;
    if (!normal.empty())
        line +=
            "  " + normal + (isOne ? " is normal" : " are normal") + (isAll ? "." : " and left out (--all).");
    console.Write((found.ErrorCount() == 0 && !isAll ? "" : "\n") + line + "\n");
    if (const std::string clear = AllClearText(found); !clear.empty())
        console.Write(clear + "\n");
    if (found.CutPayloads() > 0)
        console.Write(CutPayloadsText(found) + "\n");
    for (const std::string& hint : found.Hints().ForAll())
        console.Write(hint + "\n");
}

class ErrorJson : public SortedFindings
{
public:
    ErrorJson(Console& console, const std::vector<read::LogFile>& files, bool isAll)
        : SortedFindings(console, files, isAll), console_(console), files_(files)
    {
    }

    void Show(const Finding& finding) override
    {
        const JsonObject object = FindingJson(finding, files_, BeginOf(finding));
        if (isFirst_)
            WriteBegin();
        console_.Write((isFirst_ ? "\n" : ",\n") + object.Text());
        isFirst_ = false;
    }

    void WriteEnd()
    {
        if (isFirst_)
            WriteBegin();
        JsonObject normal;
        normal.Add("empty_queue", Count(FindingKind::EmptyQueue)).Add("pending", Count(FindingKind::Pending));
        JsonArray hints;
        for (const std::string& hint : Hints().ForAll())
            hints.Add(hint);
        console_.Write(std::string(isFirst_ ? "" : "\n") + "],\"found\":" + std::to_string(ErrorCount()) +
                       ",\"normal\":" + normal.Text() + ",\"cut_payloads\":" + std::to_string(CutPayloads()) +
                       ",\"hints\":" + hints.Text() + "}\n");
    }

private:
    void WriteBegin()
    {
        JsonArray files;
        for (const read::LogFile& file : files_)
            files.Add(file.Begin.Name);
        console_.Write("{\"schema\":\"marvane.errors/1\",\"files\":" + files.Text() + ",\"problems\":[");
    }

    Console& console_;
    const std::vector<read::LogFile>& files_;
    bool isFirst_ = true;
};

int RunErrors(const Arguments& arguments, Console& console)
{
    const MdfNames names = MdfNames::Of(arguments, console);
    std::vector<read::LogFile> files = FindLogs(arguments, console);
    if (files.empty() && !IsFollowing(arguments))
        return ExitTrouble; // complained about
    const bool isAll = arguments.Has("--all");
    if (arguments.Has("--json")) {
        if (IsFollowing(arguments))
            throw UsageError("--json is one document, and a log that is followed has no end");
        ErrorJson found(console, files, isAll);
        found.UseNames(names);
        read::LogReader reader(found, Findings::Wants);
        ReadLogs(files, reader);
        found.Finish();
        if (!found.HasSession() && console.HasComplained())
            return ExitTrouble;
        found.WriteEnd();
        return found.ErrorCount() == 0 ? 0 : 1;
    }
    ErrorRows found(console, files, isAll);
    found.UseNames(names);
    read::LogReader reader(found, Findings::Wants);
    if (IsFollowing(arguments)) {
        const int status = FollowLogs(arguments, console, files, reader, [&] { found.ShowWaiting(); });
        found.Finish();
        return status;
    }
    console.UsePager();
    ReadLogs(files, reader);
    found.Finish();
    if (!found.HasSession() && console.HasComplained())
        return ExitTrouble;
    WriteFooter(console, found, isAll);
    WriteFileNames(files, console);
    return found.ErrorCount() == 0 ? 0 : 1;
}

constexpr Option ErrorOptionList[] = {
    {"--all", "", "Also what is normal: empty event queues and pending answers"},
    {"--json", "", "As JSON, schema marvane.errors/1"},
};
constexpr OptionGroup ErrorOptions = {"What to show", ErrorOptionList};
constexpr OptionGroup ErrorGroups[] = {ErrorOptions, FollowOptions, NameOptions, LogOptions};

constexpr Example ErrorExamples[] = {
    {"errors", "what failed in the newest session, and why"},
    {"errors -f --until-match RX_TIMEOUT --timeout 600", "live, until a request stays without an answer"},
    {"errors run.LGR --json", "the same for a program"},
    {"errors run.LGR > /dev/null && echo clean", "the exit status tells whether there are any"},
};

} // namespace

extern const Command ErrorsCommand;
constinit const Command ErrorsCommand = {
    .Name = "errors",
    .Purpose = "What went wrong, each with its why: failed calls, refused and silent requests, lost data",
    .Takes = LogOperands,
    .Description =
        "LOG is a file (.gz too), a folder, a pattern or - for standard input. Without it, the newest "
        "session in the log folder of the configuration that applies here.",
    .Examples = ErrorExamples,
    .Groups = ErrorGroups,
    .ExitStatus =
        "0 if nothing is wrong, 1 if something is, 2 for trouble or wrong usage; with -f 0 if matched, 1 at the "
        "time-out",
    .Run = RunErrors,
};

} // namespace marvane::tool
