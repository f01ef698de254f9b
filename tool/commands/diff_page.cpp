#include "tool/commands/diff_page.h"

#include <algorithm>

#include "tool/console/row_text.h"

namespace marvane::tool {

namespace {

constexpr std::size_t MarkColumn = 6; // columns where a field begins
constexpr std::size_t RequestColumn = 8;
constexpr std::size_t FirstColumn = 32;
constexpr std::size_t SecondColumn = 58;
constexpr std::size_t NoteColumn = 84;

std::uint64_t CallsOf(const Run& run)
{
    std::uint64_t sum = 0;
    for (const auto& [name, count] : run.CallCounts)
        sum += count;
    return sum;
}

class DiffPage
{
public:
    DiffPage(Console& console, const Run& first, const Run& second, const RunDifference& difference)
        : console_(console), first_(first), second_(second), difference_(difference)
    {
    }

    void Write(const std::string& firstName, const std::string& secondName)
    {
        WriteSame();
        for (const std::string& fact : difference_.Facts)
            console_.Write(Wrapped("      X", RequestColumn, fact, console_.Columns()));
        if (!difference_.Requests.empty() || !difference_.CallNames.empty()) {
            std::string row;
            PutAt(row, RequestColumn, "request");
            PutAt(row, FirstColumn, Shortened(firstName, 25));
            PutAt(row, SecondColumn, Shortened(secondName, 25));
            console_.Write(Finished(std::move(row)));
        }
        for (const RequestDifference& each : difference_.Requests)
            WriteRequest(each);
        WriteCalls();
        const std::vector<std::string> first = HintsOf(first_), second = HintsOf(second_);
        WriteHints(first == second ? "both" : firstName, first);
        if (first != second)
            WriteHints(secondName, second);
    }

private:
    void WriteSame()
    {
        const auto isOther = [&](std::string_view what) {
            return std::ranges::any_of(difference_.Facts,
                                       [&](const auto& fact) { return fact.starts_with(what); });
        };
        std::string text;
        const auto add = [&](const std::string& what) { text += (text.empty() ? "" : ", ") + what; };
        if (!isOther("library"))
            add("library");
        if (!isOther("modules") && !first_.Modules.empty())
            add(Counted(first_.Modules.size(), "module"));
        if (!isOther("links"))
            add(Counted(static_cast<std::uint64_t>(std::ranges::count_if(
                            first_.Links, [](const LinkFacts& link) { return link.Connected.has_value(); })),
                        "link"));
        add(Counted(difference_.SameRequests, "request"));
        if (difference_.CallNames.empty())
            add(Counted(CallsOf(first_), "call"));
        console_.Write("same: " + text + "\n");
    }

    /// Bytes that are not in the log were not compared.
    static std::vector<std::string> HintsOf(const Run& run)
    {
        std::vector<std::string> hints = run.Hints().ForTalk();
        if (run.CutPayloads() > 0)
            hints.push_back(Counted(run.CutPayloads(), "payload is", "payloads are") +
                            " cut: LogMaxPduBuff " + run.Hints().PayloadLimitText());
        return hints;
    }

    void WriteHints(const std::string& name, const std::vector<std::string>& hints)
    {
        for (const std::string& hint : hints)
            console_.Write(Wrapped("", 0, name + ": " + hint, console_.Columns()));
    }

    void WriteLink(const RunRequest& request)
    {
        const bool isShown = link_ == request.Link || (link_.empty() && first_.Links.size() <= 1);
        link_ = request.Link;
        if (!isShown && !link_.empty())
            console_.Write(Printable(link_) + "\n");
    }

    void WriteRequest(const RequestDifference& each)
    {
        static const RunRequest none;
        const RunRequest& first = each.First ? first_.RequestList[*each.First] : none;
        const RunRequest& second = each.Second ? second_.RequestList[*each.Second] : none;
        const RunRequest& request = each.First ? first : second;
        WriteLink(request);
        std::string left = first.AnswerText;
        std::string right = second.AnswerText;
        char mark = ' ';
        std::string note;
        switch (each.Kind) {
        case DifferenceKind::OtherOutcome:
            mark = 'X';
            break;
        case DifferenceKind::OtherRequest:
            right = second.Text + ": " + right;
            note = "other request";
            break;
        case DifferenceKind::OtherBytes:
            note = "other bytes";
            break;
        case DifferenceKind::Slower:
            mark = '!';
            left = MillisecondsText(*first.After) + " ms";
            right = MillisecondsText(*second.After) + " ms";
            note = TimesSlower(*first.After, *second.After);
            break;
        case DifferenceKind::OnlyFirst:
            mark = '-';
            right = "not sent";
            break;
        case DifferenceKind::OnlySecond:
            mark = '+';
            left = "not sent";
            break;
        }
        WriteRow(mark, request.Text.empty() ? "?" : request.Text, left, right, note, each.Count);
    }

    void WriteRow(char mark, const std::string& request, const std::string& left, const std::string& right,
                  std::string note, std::uint64_t count)
    {
        if (count > 1)
            note += (note.empty() ? "" : ", ") + Grouped(count) + " times";
        std::string row;
        if (mark != ' ')
            PutAt(row, MarkColumn, std::string(1, mark));
        PutAt(row, RequestColumn, Shortened(request, FirstColumn - RequestColumn - 1));
        PutAt(row, FirstColumn, Shortened(left, SecondColumn - FirstColumn - 1));
        const std::size_t room = (note.empty() ? console_.Columns() : NoteColumn - 1) - SecondColumn;
        PutAt(row, SecondColumn, Shortened(right, room));
        if (!note.empty())
            PutAt(row, NoteColumn, note);
        console_.Write(Finished(std::move(row)));
    }

    void WriteCalls()
    {
        for (const std::string& name : difference_.CallNames) {
            const bool isFirst = &name == &difference_.CallNames.front();
            std::string row = isFirst ? "calls" : "";
            if (isFirst) {
                PutAt(row, RequestColumn, Grouped(CallsOf(first_)));
                PutAt(row, FirstColumn, Grouped(CallsOf(second_)));
            }
            PutAt(row, SecondColumn,
                  name + " " + Grouped(CallCount(first_, name)) + " -> " + Grouped(CallCount(second_, name)));
            console_.Write(Finished(std::move(row)));
        }
    }

    Console& console_;
    const Run& first_;
    const Run& second_;
    const RunDifference& difference_;
    std::string link_;
};

} // namespace

void WriteDiffPage(const Run& first, const Run& second, const RunDifference& difference,
                   const std::string& firstName, const std::string& secondName, Console& console)
{
    DiffPage(console, first, second, difference).Write(firstName, secondName);
}

} // namespace marvane::tool
