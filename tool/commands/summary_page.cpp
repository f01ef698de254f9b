#include "tool/commands/summary_page.h"

#include <algorithm>

#include "tool/analysis/talk_rows.h"
#include "tool/console/row_text.h"

namespace marvane::tool {

namespace {

constexpr std::size_t TextColumn = 10; // columns where a field begins
constexpr std::size_t NameColumn = 13;
constexpr std::size_t DetailColumn = 45;

// Of lists no more than so many rows are shown without --all.
constexpr std::size_t UsualRows = 12;

class Page
{
public:
    /// `log` is what to add to a command that reads the same log.
    Page(Console& console, const SummaryFacts& facts, bool isAll, std::string log)
        : console_(console), facts_(facts), mostRows_(isAll ? SIZE_MAX : UsualRows), log_(std::move(log))
    {
    }

    void Write()
    {
        WriteSession();
        WriteLibrary();
        WriteModules();
        WriteLinks();
        Line("", "");
        WriteRequests();
        WriteCalls();
        WriteTime();
        WriteSlow();
        Line("items",
             Grouped(facts_.ItemsGiven()) + " given out, " + Grouped(facts_.ItemsDestroyed()) + " destroyed");
        WriteParams();
        WriteCut();
        WriteTable();
        WriteErrors();
        for (const std::string& hint : facts_.Hints().ForAll())
            console_.Write(hint + "\n");
    }

private:
    void Line(std::string_view label, std::string_view text)
    {
        std::string row(label);
        if (!text.empty())
            PutAt(row, TextColumn, text);
        console_.Write(Finished(std::move(row)));
    }

    void WriteSession()
    {
        const read::Session& first = facts_.Sessions.front();
        const read::Session& last = facts_.Sessions.back();
        std::string row = DateText(first.BeginTime) + "  " + ClockText(first.BeginTime) + "   " +
                          SecondsText(first.BeginTime, last.LastTime) + " s   " +
                          Counted(facts_.Threads.size(), "thread") + "   " +
                          Counted(facts_.Processes, "process", "processes");
        if (facts_.SessionCount > 1)
            row += "   " + Counted(facts_.SessionCount, "session") + ", " + Grouped(facts_.EndedSessions) +
                   " ended with PDUDestruct";
        else
            row += last.IsEnded ? "   ended with PDUDestruct" : "   without PDUDestruct";
        console_.Write(row + "\n");
    }

    void WriteLibrary()
    {
        const read::Session& session = facts_.Sessions.back();
        if (session.Target.empty())
            return;
        const std::string loaded = session.IsLoaded       ? "   loaded"
                                   : session.HasNotLoaded ? "   X not loaded"
                                                          : "";
        const std::string version =
            session.TargetVersion.empty() ? "" : "   " + Printable(session.TargetVersion);
        Line("library", Printable(session.Target) + version + loaded);
    }

    void WriteModules()
    {
        for (const ModuleFacts& module : facts_.Modules) {
            std::string row = &module == &facts_.Modules.front() ? "module" : "";
            PutAt(row, TextColumn, std::to_string(module.Handle));
            PutAt(row, NameColumn, Printable(module.Name));
            if (!module.Serial.empty())
                row += ", serial number " + module.Serial;
            if (!module.Software.empty())
                PutAt(row, DetailColumn + 5, Printable(module.Software));
            console_.Write(Finished(std::move(row)));
        }
    }

    read::LogTime BeginOf(std::uint32_t session) const
    {
        const auto found = std::ranges::find(facts_.Sessions, session, &read::Session::Number);
        return (found == facts_.Sessions.end() ? facts_.Sessions.front() : *found).BeginTime;
    }

    std::string TimesOf(const LinkFacts& link) const
    {
        if (!link.Connected)
            return "not connected";
        const read::LogTime begin = BeginOf(link.What.Session);
        std::string text = "+" + SecondsText(begin, *link.Connected) + " ..";
        return link.Disconnected ? text + " " + SecondsText(begin, *link.Disconnected) : text;
    }

    static void AddCount(std::string& text, std::uint64_t count, std::string_view word)
    {
        if (count > 0)
            text.append(text.empty() ? "" : ", ").append(Grouped(count)).append(" ").append(word);
    }

    static std::string OutcomesText(const std::uint64_t (&counts)[read::OutcomeCount])
    {
        std::string text;
        constexpr std::string_view words[] = {
            "ok",   "refused",     "silent",        "cancelled", "not answered on purpose",
            "open", "not started", "never returned"};
        for (std::size_t i = 0; i < std::size(words); ++i)
            AddCount(text, counts[i], words[i]);
        return text;
    }

    void WriteLinks()
    {
        for (std::size_t i = 0; i < std::min(facts_.Links.size(), mostRows_); ++i) {
            const LinkFacts& link = facts_.Links[i];
            std::string row = i == 0 ? "links" : "";
            PutAt(row, TextColumn, std::to_string(link.What.Handle));
            PutAt(row, NameColumn, Printable(link.What.Name()));
            PutAt(row, DetailColumn - 3, TimesOf(link));
            std::string requests;
            if (link.Requests > 0)
                requests = Counted(link.Requests, "request") + ": " + OutcomesText(link.ByOutcome);
            console_.Write(Wrapped(std::move(row), DetailColumn + 16, requests, console_.Columns()));
        }
        if (facts_.Links.size() > mostRows_)
            Line("", "and " + Grouped(facts_.Links.size() - mostRows_) + " more (--all)");
    }

    void WriteRequests()
    {
        if (facts_.Requests == 0)
            return;
        const auto ms = [](std::uint64_t us) { return MillisecondsText({us, false}); };
        std::string row = Grouped(facts_.Requests) + ": " + OutcomesText(facts_.ByOutcome);
        if (facts_.LatencyUs.Count() > 0)
            row += "   ms: p50 " + ms(facts_.LatencyUs.Percentile(50)) + ", p95 " +
                   ms(facts_.LatencyUs.Percentile(95)) + ", max " + ms(facts_.LatencyUs.Max());
        Line("requests", row);
    }

    void WriteCalls()
    {
        const std::uint64_t functions = facts_.Functions.size() - facts_.Functions.count("PDUCallbackTrap");
        std::string row = Grouped(facts_.Calls) + " in " + Counted(functions, "function") + ", " +
                          Counted(facts_.Events, "callback");
        const std::uint64_t failed = facts_.Count(FindingKind::FailedCall);
        const std::uint64_t empty = facts_.Count(FindingKind::EmptyQueue);
        if (failed > 0)
            row += "     " + Grouped(failed) + " failed";
        if (empty > 0)
            row += (failed > 0 ? ", " : "     ") + (empty == 1 ? "once" : Grouped(empty) + " times") +
                   " an empty queue (normal)";
        Line("calls", row);
    }

    void WriteTime()
    {
        const auto seconds = [](std::int64_t ms) { return SecondsText({}, {ms}) + " s "; };
        const TimeShares& shares = facts_.Shares;
        if (facts_.Requests > 0 && shares.AreKnown())
            Line("time", seconds(shares.ControlUnitMs()) + "waiting for answers, " +
                             seconds(shares.InCallsMs()) + "in calls, " + seconds(shares.ApplicationMs()) +
                             "in the application");
    }

    void WriteSlow()
    {
        for (const SlowFacts& slow : facts_.Slow) {
            std::string row = &slow == &facts_.Slow.front() ? "slow" : "";
            PutBefore(row, TextColumn + 5, Grouped(static_cast<std::uint64_t>(slow.Ms)));
            row += " ms  " + Printable(slow.What);
            PutBefore(row, 92, "line " + PositionText(slow.At));
            console_.Write(Finished(std::move(row)));
        }
    }

    void WriteParams()
    {
        if (facts_.ParamsSet == 0)
            return;
        std::string text = Grouped(facts_.ParamsSet) + " set, " + Grouped(facts_.Changes.size()) + " changed";
        for (std::size_t i = 0; i < std::min<std::size_t>(facts_.Changes.size(), 3); ++i)
            text += (i == 0 ? ": " : ", ") + ChangeText(facts_.Changes[i]);
        if (facts_.Changes.size() > 3)
            text += " ... (marvane params)";
        console_.Write(Wrapped("params", TextColumn, text, console_.Columns()));
    }

    void WriteCut()
    {
        if (facts_.CutPayloads() > 0)
            Line("cut", Counted(facts_.CutPayloads(), "payload") + ": LogMaxPduBuff " +
                            facts_.Hints().PayloadLimitText());
    }

    void WriteTable()
    {
        std::vector<const FunctionFacts*> functions;
        for (const auto& [name, facts] : facts_.Functions)
            functions.push_back(&facts);
        std::ranges::stable_sort(functions, [](const FunctionFacts* one, const FunctionFacts* other) {
            return std::pair(one->Ms.Total(), one->Ms.Count()) >
                   std::pair(other->Ms.Total(), other->Ms.Count());
        });
        console_.Write("\n   count   total ms    p50    p95    max   failed   call\n");
        for (std::size_t i = 0; i < std::min(functions.size(), mostRows_); ++i) {
            const FunctionFacts& facts = *functions[i];
            std::string row;
            PutBefore(row, 8, Grouped(facts.Ms.Count()));
            PutBefore(row, 19, Grouped(facts.Ms.Total()));
            PutBefore(row, 26, Grouped(facts.Ms.Percentile(50)));
            PutBefore(row, 33, Grouped(facts.Ms.Percentile(95)));
            PutBefore(row, 40, Grouped(facts.Ms.Max()));
            PutBefore(row, 49, facts.Failed == 0 ? "-" : Grouped(facts.Failed));
            PutAt(row, 52, Printable(facts.Name));
            console_.Write(Finished(std::move(row)));
        }
        if (functions.size() > mostRows_)
            console_.Write("     and " + Counted(functions.size() - mostRows_, "more function") +
                           " that took less (--all)\n");
    }

    void WriteErrors()
    {
        std::string text;
        const auto add = [&](FindingKind kind, std::string_view one, std::string_view many) {
            if (facts_.Count(kind) > 0)
                text += (text.empty() ? "" : ", ") + Counted(facts_.Count(kind), one, many);
        };
        add(FindingKind::FailedCall, "failed call", "failed calls");
        add(FindingKind::NotLoaded, "call without library", "calls without library");
        add(FindingKind::Refused, "refused request", "refused requests");
        add(FindingKind::Silent, "without answer", "without answer");
        add(FindingKind::Late, "late answer", "late answers");
        add(FindingKind::DataLost, "loss of events", "losses of events");
        add(FindingKind::InFlight, "call that never returned", "calls that never returned");
        add(FindingKind::Cut, "cut call", "cut calls");
        add(FindingKind::ItemLeak, "leak of items", "leaks of items");
        add(FindingKind::Damaged, "damaged line", "damaged lines");
        if (text.empty())
            return console_.Write("\n     no errors\n");
        console_.Write("\n   " + console_.Coloured(Colour::Red, "X") + " " + text + "        marvane errors" +
                       log_ + "\n");
    }

    Console& console_;
    const SummaryFacts& facts_;
    std::size_t mostRows_;
    std::string log_;
};

} // namespace

void WriteSummaryPage(const SummaryFacts& facts, bool isAll, const std::string& log, Console& console)
{
    Page(console, facts, isAll, log).Write();
}

} // namespace marvane::tool
