#include "tool/commands/around_grid.h"

#include <algorithm>
#include <cstdio>
#include <map>

#include "tool/commands/around_rows.h"
#include "tool/console/row_text.h"

namespace marvane::tool {

namespace {

constexpr std::size_t TimeWidth = 9;
constexpr std::size_t LeastWidth = 30;
constexpr std::size_t MostBars = 3;

struct Column
{
    std::uint32_t Thread = 0;
    std::size_t Rows = 0;
    bool IsOfTheApplication = false; ///< it makes calls
};

std::vector<Column> ColumnsOf(const Scene& scene, const std::vector<SceneRow>& rows)
{
    std::map<std::uint32_t, Column> byThread;
    for (const Act& act : scene.Acts) {
        Column& column = byThread[act.Thread];
        column.Thread = act.Thread;
        column.IsOfTheApplication |= !act.IsByTheLibrary;
    }
    for (const SceneRow& row : rows)
        ++byThread[row.Of->Thread].Rows;
    std::vector<Column> columns;
    columns.reserve(byThread.size());
    for (const auto& [thread, column] : byThread)
        columns.push_back(column);
    std::ranges::stable_sort(columns, std::ranges::greater(), &Column::Rows);
    return columns;
}

/// The calls that are open at a line, for lines in their order.
class OpenActs
{
public:
    explicit OpenActs(const Scene& scene) : acts_(scene.Acts) {}

    void GoTo(const SceneRow& row)
    {
        for (; next_ < acts_.size() && acts_[next_].Begin <= row.At; ++next_)
            if (!acts_[next_].IsReport)
                open_.push_back(&acts_[next_]);
        std::erase_if(open_, [&](const Act* act) { return act->End && *act->End < row.At; });
    }

    /// How many calls of a thread are open between the row before and this one, or go on after it.
    std::size_t BarsOf(std::uint32_t thread, const SceneRow& row) const
    {
        const auto bars = std::ranges::count_if(
            open_, [&](const Act* act) { return act->Thread == thread && !(row.Of == act && row.IsBoth); });
        return std::min(static_cast<std::size_t>(bars), MostBars);
    }

private:
    const std::vector<Act>& acts_;
    std::size_t next_ = 0;
    std::vector<const Act*> open_;
};

/// Characters that a text may have in a column.
std::size_t RoomIn(std::size_t width)
{
    return width - MostBars - 2;
}

/// A cell: its text, to the right for the end of an act, and its bars at the right edge.
std::string Cell(std::string text, bool toTheRight, std::size_t bars, std::size_t width)
{
    const std::size_t room = RoomIn(width);
    text.insert(toTheRight ? 0 : text.size(), room - text.size(), ' ');
    text.append(1, ' ').append(bars, '|');
    text.append(width - text.size(), ' ');
    return text;
}

std::string Clock(std::int64_t milliseconds)
{
    char text[32];
    std::snprintf(text, sizeof text, "%c%lld.%03d", milliseconds < 0 ? '-' : '+',
                  static_cast<long long>(std::abs(milliseconds) / 1000),
                  static_cast<int>(std::abs(milliseconds) % 1000));
    std::string clock = text;
    clock.append(clock.size() < TimeWidth ? TimeWidth - clock.size() : 1, ' ');
    return clock;
}

std::string Trimmed(std::string line)
{
    line.erase(line.find_last_not_of(' ') + 1);
    return line + "\n";
}

std::string ThreadName(std::uint32_t thread)
{
    char text[32];
    std::snprintf(text, sizeof text, "thread %X", static_cast<unsigned>(thread));
    return text;
}

void DrawHeading(const std::vector<Column>& columns, std::size_t width, Console& console)
{
    std::string line(TimeWidth, ' ');
    for (const Column& column : columns)
        line +=
            Cell(ThreadName(column.Thread) + (column.IsOfTheApplication ? " (application)" : " (library)"),
                 false, 0, width);
    console.Write(console.Coloured(Colour::Bold, Trimmed(std::move(line))));
}

/// "9 calls of PDUDestroyItem are left out, repetitions are folded"
std::string LeftOutText(const FoldedRows& folded)
{
    std::string text;
    if (folded.LeftOut > 0)
        text = Counted(folded.LeftOut, "call") + " of PDUDestroyItem " +
               (folded.LeftOut == 1 ? "is" : "are") + " left out";
    if (folded.HasFolds)
        text += std::string(text.empty() ? "R" : ", r") + "epetitions are folded";
    return text;
}

} // namespace

void DrawScene(const Scene& scene, bool isAll, Console& console)
{
    FoldedRows folded = {.Rows = RowsOf(scene)};
    if (!isAll)
        folded = Folded(scene, folded.Rows);
    const std::vector<SceneRow>& rows = folded.Rows;
    std::vector<Column> columns = ColumnsOf(scene, rows);
    const std::size_t room = console.Columns() - TimeWidth;
    const std::vector<Column> left(
        columns.begin() + static_cast<std::ptrdiff_t>(std::min(columns.size(), room / LeastWidth)),
        columns.end());
    columns.resize(columns.size() - left.size());
    std::ranges::stable_sort(columns, std::ranges::greater(), &Column::IsOfTheApplication);
    const std::size_t width = room / std::max<std::size_t>(columns.size(), 1);
    DrawHeading(columns, width, console);
    OpenActs open(scene);
    for (const SceneRow& row : rows) {
        open.GoTo(row);
        std::string line = Clock(row.Time - scene.Zero);
        bool isShown = false;
        for (const Column& column : columns) {
            const bool isOwn = column.Thread == row.Of->Thread;
            isShown |= isOwn;
            line += Cell(isOwn ? TextOf(row, RoomIn(width)) : "", row.IsEnd && !row.IsBoth,
                         open.BarsOf(column.Thread, row), width);
        }
        const bool isRed = row.Of->HasFailed && (row.IsEnd || row.IsBoth);
        if (isShown)
            console.Write(console.Coloured(isRed ? Colour::Red : Colour::Plain, Trimmed(std::move(line))));
    }
    for (const Column& column : left)
        console.Write("not shown: " + ThreadName(column.Thread) + ", " + std::to_string(column.Rows) +
                      " rows\n");
    if (folded.LeftOut > 0 || folded.HasFolds)
        console.Write("\n" + LeftOutText(folded) + " (--all)\n");
}

} // namespace marvane::tool
