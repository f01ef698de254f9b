// marvane talk: the conversation, a line a request.
#include <algorithm>

#include "pdu/pdu_api.h"
#include "tool/commands/arguments.h"
#include "tool/commands/conversation.h"
#include "tool/commands/ecu_state.h"
#include "tool/commands/follow.h"
#include "tool/commands/link_words.h"
#include "tool/commands/log_source.h"
#include "tool/commands/mdf_names.h"
#include "tool/commands/program.h"
#include "tool/commands/row_text.h"
#include "tool/commands/settings_hints.h"
#include "tool/commands/shared_options.h"
#include "tool/commands/talk_filter.h"
#include "tool/commands/talk_folds.h"
#include "tool/commands/talk_rows.h"

namespace marvane::tool {

namespace {

/// How many requests ended how.
struct TalkCounts
{
    std::uint64_t Requests = 0;
    std::uint64_t ByOutcome[6] = {};
    std::uint64_t Late = 0;
    std::uint64_t Cut = 0; ///< requests or answers of which the log shows a part
    bool HasLogTimes = false;
    bool HasLibraryTimes = false;
};

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

/// ComPrimitives that say nothing to the control unit and show only if something went wrong.
bool IsByTheWay(const read::Exchange& exchange)
{
    const bool isQuiet = exchange.Type == PDU_COPT_UPDATEPARAM || exchange.Type == PDU_COPT_DELAY;
    return isQuiet && exchange.ErrorCode == 0 && exchange.Result != read::Outcome::Cancelled;
}

class Talk : public Conversation
{
public:
    Talk(Console& console, const std::vector<read::LogFile>& files, TalkFilter filter)
        : console_(console), files_(files), filter_(std::move(filter)), layout_(console)
    {
    }

    /// Begins to read anew, and shows the link of this handle alone.
    void Restart(const read::Link& link)
    {
        Conversation::Restart();
        states_ = {};
        only_ = link;
        isAgain_ = true;
    }

    void OnSession(const read::Session& session) override
    {
        begins_[session.Number] = session.BeginTime;
        hints_.OnSession(session);
    }
    void OnProblem(const read::Problem& problem) override
    {
        if (!isAgain_)
            ComplainAbout(problem, files_, console_);
    }

    void OnUtterance(const Utterance& utterance) override
    {
        if (const auto* exchange = std::get_if<read::Exchange>(&utterance))
            Show(*exchange);
        else if (const auto* change = std::get_if<read::ParamChange>(&utterance))
            Show(*change);
        else
            Show(std::get<read::LateAnswer>(utterance));
    }

    void FinishFold() { WriteFold(); }

    const TalkCounts& Counts() const { return counts_; }
    std::uint64_t RowCount() const { return rows_; }
    const SettingsHints& Hints() const { return hints_; }

private:
    bool IsShown(const read::Link& link) const
    {
        const bool isMeant = !only_ || (only_->Session == link.Session && only_->Module == link.Module &&
                                        only_->Handle == link.Handle);
        return isMeant && filter_.Accepts(link);
    }

    read::LogTime BeginOf(std::uint32_t session, read::LogTime otherwise) const
    {
        const auto found = begins_.find(session);
        return found == begins_.end() ? otherwise : found->second;
    }

    void Show(const read::Exchange& exchange)
    {
        if (IsByTheWay(exchange) || !IsShown(*exchange.On))
            return;
        const auto change = states_.Change(exchange);
        if (!filter_.Accepts(exchange))
            return;
        Count(exchange);
        if (!fold_.Takes(exchange)) {
            WriteFold();
            WriteHeadings(*exchange.On, exchange.Session, exchange.Time);
            fold_.Begin(exchange);
        }
        if (!change || filter_.IsForRequests())
            return;
        WriteFold();
        const read::LogTime at = std::max(exchange.EndTime, exchange.Time);
        Write(layout_.Remark(SecondsText(BeginOf(exchange.Session, at), at), *change, ""));
    }

    void Show(const read::ParamChange& change)
    {
        if (filter_.IsForRequests() || !IsShown(*change.On))
            return;
        WriteFold();
        WriteHeadings(*change.On, change.Session, change.Time);
        const std::string text = change.Before
                                     ? Printable(change.Name) + " " + *change.Before + " -> " + change.After
                                     : Printable(change.Name) + " = " + change.After;
        Write(layout_.Remark(SecondsText(BeginOf(change.Session, change.Time), change.Time), text,
                             PositionText(change.At)));
    }

    void Show(const read::LateAnswer& late)
    {
        if (filter_.IsForRequests() || !IsShown(*late.On))
            return;
        WriteFold();
        WriteHeadings(*late.On, late.Session, late.What.Time);
        ++counts_.Late;
        const RequestText request = {"late answer, " + std::to_string(late.AfterEndMs) + " ms after the end",
                                     {}};
        const ResponseRow row = {'!', AnswerText(late.What, DialectOf(*late.On)), {}};
        Write(layout_.Row(SecondsText(BeginOf(late.Session, late.What.Time), late.What.Time),
                          std::to_string(late.Primitive), request, row, PositionText(late.What.At)));
    }

    void Count(const read::Exchange& exchange)
    {
        for (const ResponseRow& row : ResponseRows(exchange))
            if (row.After)
                (row.After->IsByLog ? counts_.HasLogTimes : counts_.HasLibraryTimes) = true;
        const bool isRequestCut = exchange.IsRequestCut && !exchange.Request.empty();
        const bool isAnswerCut = std::ranges::any_of(exchange.Answers, [](const read::Answer& answer) {
            return answer.IsCut && !answer.Data.empty();
        });
        counts_.Cut += isRequestCut || isAnswerCut;
        if (exchange.Type != PDU_COPT_SENDRECV && exchange.Type != 0)
            return;
        ++counts_.Requests;
        ++counts_.ByOutcome[static_cast<std::size_t>(exchange.Result)];
    }

    void WriteFold()
    {
        if (!fold_.IsEmpty())
            Write(fold_.Lines(layout_, BeginOf(fold_.Session(), fold_.Time())));
        fold_.Clear();
    }

    void WriteHeadings(const read::Link& link, std::uint32_t session, read::LogTime time)
    {
        const bool isNewSession = session != session_;
        if (isNewSession && begins_.size() > 1) {
            const read::LogTime begin = BeginOf(session, time);
            Write((session_ == 0 ? "" : "\n") + std::string("== session ") + std::to_string(session) + "   " +
                  DateText(begin) + "  " + ClockText(begin) + "\n");
        }
        const bool isSameLink =
            !isNewSession && link_ && link_->Module == link.Module && link_->Handle == link.Handle;
        session_ = session;
        if (isSameLink)
            return;
        link_ = link;
        std::string heading = LinkText(link).empty() ? std::string("link ?") : LinkText(link);
        if (!link.Name().empty())
            heading += "   " + Printable(link.Name());
        for (std::size_t i = 0; i < link.Pins.size(); ++i)
            heading += (i == 0 ? "   pins " : ", ") + std::to_string(link.Pins[i]);
        PutBefore(heading, console_.Columns() - 2, "+" + SecondsText(BeginOf(session, time), time) + " s");
        Write((hasHeading_ && !isNewSession ? "\n" : "") + heading + "\n" +
              (hasHeading_ ? "" : layout_.Header()));
        hasHeading_ = true;
    }

    void Write(const std::string& lines)
    {
        ++rows_;
        console_.Write(lines);
    }

    Console& console_;
    const std::vector<read::LogFile>& files_;
    TalkFilter filter_;
    TalkLayout layout_;
    TalkFold fold_;
    EcuStates states_;
    std::optional<read::Link> only_;
    bool isAgain_ = false;
    std::map<std::uint32_t, read::LogTime> begins_; ///< by session
    SettingsHints hints_;
    std::uint32_t session_ = 0;
    std::optional<read::Link> link_;
    bool hasHeading_ = false;
    TalkCounts counts_;
    std::uint64_t rows_ = 0;
};

void WriteFooter(Console& console, const Talk& talk)
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

/// The links that have a conversation, in the order of their first request.
class LinkList : public Conversation
{
public:
    LinkList(Console& console, const std::vector<read::LogFile>& files) : console_(console), files_(files) {}

    std::vector<std::shared_ptr<const read::Link>> Found;

    void OnProblem(const read::Problem& problem) override { ComplainAbout(problem, files_, console_); }

    void OnUtterance(const Utterance& utterance) override
    {
        const auto link = std::visit([](const auto& each) { return each.On; }, utterance);
        const bool isKnown = std::ranges::any_of(Found, [&](const auto& each) {
            return each->Session == link->Session && each->Module == link->Module &&
                   each->Handle == link->Handle;
        });
        if (!isKnown)
            Found.push_back(link);
    }

private:
    Console& console_;
    const std::vector<read::LogFile>& files_;
};

void ReadConversation(Conversation& conversation, const std::vector<read::LogFile>& files)
{
    read::LogReader reader(conversation, Conversation::Wants);
    ReadLogs(files, reader);
    conversation.FinishConversation();
}

int Follow(const Arguments& arguments, Console& console, std::vector<read::LogFile>& files, Talk& talk)
{
    read::LogReader reader(talk, Conversation::Wants);
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
        throw UsageError("--by-link reads a log several times, which is no way to follow it");
    std::vector<read::LogFile> files = FindLogs(arguments, console);
    if (files.empty() && !isFollowing)
        return ExitTrouble; // complained about
    Talk talk(console, files, filter);
    talk.UseNames(names.Names());
    if (isFollowing)
        return Follow(arguments, console, files, talk);
    console.UsePager();
    if (!arguments.Has("--by-link")) {
        ReadConversation(talk, files);
        talk.FinishFold();
    } else {
        if (std::ranges::any_of(files, &read::LogFile::IsStandardInput))
            throw UsageError("--by-link reads a log several times, which standard input can't give");
        LinkList links(console, files);
        links.UseNames(names.Names());
        ReadConversation(links, files);
        for (const auto& link : links.Found) {
            talk.Restart(*link);
            ReadConversation(talk, files);
            talk.FinishFold();
        }
    }
    if (talk.RowCount() == 0 && filter.IsSet())
        return 1;
    WriteFooter(console, talk);
    return 0;
}

constexpr Option TalkOptionList[] = {
    {"--link", "LINK", "Only this link: its handle, or a part of its resource's or protocol's name"},
    {"--service", "SERVICE", "Only this service: its number in hexadecimal, or a part of its name"},
    {"--did", "DID", "Only requests with this data identifier or routine, in hexadecimal"},
    {"--nrc", "CODE", "Only requests that were refused with this code, in hexadecimal"},
    {"--slow", "MS", "Only requests that took longer than so many milliseconds"},
    {"--by-link", "", "One link after the other; reads the log once a link"},
};
constexpr OptionGroup TalkOptions = {"Which requests", TalkOptionList};
constexpr OptionGroup TalkGroups[] = {TalkOptions, FollowOptions, NameOptions, LogOptions};

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
        "Marks: X refused or silent, ! remarkable, . by the way, ? not in the log. Times are from the sending of a "
        "request to its answer by the library's own clock where the result has both stamps; those with ~ are from "
        "call to fetch by the log's clock.",
    .Examples = TalkExamples,
    .Groups = TalkGroups,
    .ExitStatus =
        "0; 1 if options chose requests and there are none, or at the time-out of -f; 2 for trouble or wrong usage",
    .Run = RunTalk,
};

} // namespace marvane::tool
