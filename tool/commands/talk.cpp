// marvane talk: the conversation, a line a request.
#include <algorithm>

#include "tool/analysis/mdf_names.h"
#include "tool/commands/program.h"
#include "tool/commands/redaction.h"
#include "tool/commands/shared_options.h"
#include "tool/commands/talk_filter.h"
#include "tool/commands/talk_screen.h"
#include "tool/console/arguments.h"
#include "tool/console/row_text.h"
#include "tool/input/follow.h"
#include "tool/input/log_source.h"

namespace marvane::tool {

namespace {

void AddCount(std::string& text, std::uint64_t count, std::string_view word, std::string_view mark = {})
{
    if (count > 0)
        text.append(text.ends_with(": ") ? "" : ", ")
            .append(Grouped(count))
            .append(" ")
            .append(word)
            .append(mark);
}

std::string CountsText(const TalkCounts& counts)
{
    const auto of = [&](read::Outcome outcome) {
        return counts.ByOutcome[static_cast<std::size_t>(outcome)];
    };
    std::string text = Counted(counts.Requests, "request") + ": ";
    AddCount(text, of(read::Outcome::Answered), "good");
    AddCount(text, of(read::Outcome::Refused), "refused", " (X)");
    AddCount(text, of(read::Outcome::Silent), "silent", " (X)");
    AddCount(text, of(read::Outcome::Cancelled), "cancelled");
    AddCount(text, of(read::Outcome::Sent), "without answer wanted");
    AddCount(text, of(read::Outcome::Open), "open (?)");
    AddCount(text, of(read::Outcome::NotStarted), "not started", " (X)");
    AddCount(text, of(read::Outcome::NeverReturned), "never returned", " (X)");
    AddCount(text, counts.Late, counts.Late == 1 ? "late answer (!)" : "late answers (!)");
    return text.ends_with(": ") ? text.substr(0, text.size() - 2) : text;
}

std::string TimesText(const TalkCounts& counts)
{
    if (counts.HasLibraryTimes && counts.HasLogTimes)
        return "ms: library's clock, ~ log's clock";
    if (counts.HasLogTimes)
        return "ms: from call to fetch, log's clock (~)";
    return counts.HasLibraryTimes ? "ms: from sending, library's clock" : std::string();
}

void WriteFooter(Console& console, const TalkScreen& talk)
{
    const TalkCounts& counts = talk.Counts();
    std::string line = CountsText(counts);
    const std::string times = TimesText(counts);
    if (!times.empty())
        line += "    " + times;
    console.Write("\n" + line + "\n");
    if (counts.Cut > 0)
        console.Write(Counted(counts.Cut, "exchange is", "exchanges are") + " cut (+N): LogMaxPduBuff " +
                      talk.Hints().PayloadLimitText() + "\n");
    for (const std::string& hint : talk.Hints().ForTalk())
        console.Write(hint + "\n");
}

void ReadConversation(Conversation& conversation, const std::vector<read::LogFile>& files,
                      read::ByteFilter* redactor)
{
    read::LogReader reader(conversation, Conversation::Wants);
    reader.FilterBy(redactor);
    ReadLogs(files, reader);
    conversation.FinishConversation();
}

int Follow(const Arguments& arguments, Console& console, std::vector<read::LogFile>& files, TalkScreen& talk,
           read::ByteFilter* filter)
{
    read::LogReader reader(talk, Conversation::Wants);
    reader.FilterBy(filter);
    const int status = FollowLogs(arguments, console, files, reader, [&] {
        talk.GiveOutComplete();
        talk.FinishFold();
    });
    talk.FinishConversation();
    talk.FinishFold();
    return status;
}

int RunTalk(const Arguments& arguments, Console& console)
{
    const TalkFilter filter = TalkFilter::Of(arguments);
    const MdfNames names = MdfNames::Of(arguments, console);
    const bool isFollowing = IsFollowing(arguments);
    if (isFollowing && arguments.Has("--by-link"))
        throw UsageError("--by-link shows a link when the whole log is read, which is no way to follow it");
    std::vector<read::LogFile> files = FindLogs(arguments, console);
    if (files.empty() && !isFollowing)
        return ExitTrouble; // complained about
    TalkScreen talk(console, files, filter);
    talk.UseNames(names);
    std::optional<Redactor> redactor = RedactorOf(arguments);
    Redactor* const used = redactor ? &*redactor : nullptr;
    if (redactor)
        talk.MarkRedacted(*redactor);
    if (isFollowing)
        return Follow(arguments, console, files, talk, used);
    console.UsePager();
    if (arguments.Has("--by-link"))
        talk.ShowByLink();
    ReadConversation(talk, files, used);
    talk.FinishFold();
    if (!talk.HasSession() && console.HasComplained())
        return ExitTrouble;
    if (talk.RowCount() == 0 && filter.IsSet())
        return 1;
    WriteFooter(console, talk);
    WriteFileNames(files, console);
    return 0;
}

constexpr Option TalkOptionList[] = {
    {"--link", "LINK", "Only this link: its handle, or a part of its resource's or protocol's name"},
    {"--service", "SERVICE", "Only this service: its number in hexadecimal, or a part of its name"},
    {"--did", "DID", "Only requests with this data identifier or routine, in hexadecimal"},
    {"--nrc", "CODE", "Only requests that were refused with this code, in hexadecimal"},
    {"--slow", "MS", "Only requests that took longer than so many milliseconds"},
    {"--by-link", "", "One link after the other"},
};
constexpr OptionGroup TalkOptions = {"Which requests", TalkOptionList};
constexpr OptionGroup TalkGroups[] = {TalkOptions, RedactOptions, FollowOptions, NameOptions, LogOptions};

constexpr Example TalkExamples[] = {
    {"talk", "the conversation of the newest session"},
    {"talk run.LGR --slow 100", "requests that took more than 0.1 s"},
    {"talk run.LGR --service 22 --did F190", "each reading of the VIN"},
    {"talk -f --until-match 67 --timeout 60", "live, until an answer with these characters comes"},
    {"talk run.LGR --nrc 78 --by-link", "requests with pending answers, link by link"},
};

} // namespace

extern const Command TalkCommand;
constinit const Command TalkCommand = {
    .Name = "talk",
    .Purpose = "The conversation: each request with its answer in words and how long it took",
    .Takes = LogOperands,
    .Description =
        "LOG is a file (.gz too), a folder, a pattern or - for standard input. Without it, the newest session in "
        "the log folder of the configuration that applies here.\n\n"
        "Marks: X refused, silent, not started or never returned, ! remarkable, . by the way, ? not in the log. Times are from "
        "the sending of a request to its answer by the library's own clock where the result has both stamps; those "
        "with ~ are from call to fetch by the log's clock.",
    .Examples = TalkExamples,
    .Groups = TalkGroups,
    .ExitStatus =
        "0; 1 if options chose requests and there are none, or at the time-out of -f; 2 for trouble or wrong usage",
    .Run = RunTalk,
};

} // namespace marvane::tool
