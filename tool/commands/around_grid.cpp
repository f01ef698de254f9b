#include "tool/commands/around_grid.h"

#include <algorithm>
#include <cstdio>
#include <map>

namespace marvane::tool {

namespace {

constexpr std::size_t TimeWidth = 9;
constexpr std::size_t LeastWidth = 30;
constexpr std::size_t MostBars = 3;

/// One line of the drawing: the beginning of an act, its end, or both.
struct Row
{
    read::Position At;
    read::LogTime Time;
    const Act* Of;
    bool IsEnd = false;
    bool IsBoth = false;
};

struct Column
{
    std::uint32_t Thread = 0;
    std::size_t Rows = 0;
    bool IsOfTheApplication = false; ///< it makes calls
};

std::vector<Row> RowsOf(const Scene& scene)
{
    std::vector<Row> all;
    for (const Act& act : scene.Acts) {
        all.push_back({act.Begin, act.BeginTime, &act});
        if (act.End)
            all.push_back({*act.End, act.EndTime, &act, true});
    }
    std::ranges::stable_sort(all, {}, &Row::At);
    std::vector<Row> rows;
    for (const Row& row : all) {
        const bool isInside = row.Time >= scene.Begin && row.Time <= scene.End;
        if (row.IsEnd && !rows.empty() && rows.back().Of == row.Of && row.Of->BeginTime == row.Of->EndTime)
            rows.back().IsBoth = true;
        else if (isInside)
            rows.push_back(row);
    }
    return rows;
}

std::vector<Column> ColumnsOf(const Scene& scene, const std::vector<Row>& rows)
{
    std::map<std::uint32_t, Column> byThread;
    for (const Act& act : scene.Acts) {
        Column& column = byThread[act.Thread];
        column.Thread = act.Thread;
        column.IsOfTheApplication |= !act.IsByTheLibrary;
    }
    for (const Row& row : rows)
        ++byThread[row.Of->Thread].Rows;
    std::vector<Column> columns;
    columns.reserve(byThread.size());
    for (const auto& [thread, column] : byThread)
        columns.push_back(column);
    std::ranges::stable_sort(columns, std::ranges::greater(), &Column::Rows);
    return columns;
}

/// How many calls of a thread are open between the row before and this one, or go on after it.
std::size_t BarsAt(const Scene& scene, std::uint32_t thread, const Row& row)
{
    std::size_t bars = 0;
    for (const Act& act : scene.Acts) {
        const bool begun = act.Begin <= row.At;
        const bool open = !act.IsReport && (!act.End || *act.End >= row.At);
        const bool isOneRow = row.Of == &act && row.IsBoth;
        bars += act.Thread == thread && begun && open && !isOneRow ? 1 : 0;
    }
    return std::min(bars, MostBars);
}

std::string Duration(const Act& act)
{
    const std::int64_t span = act.EndTime - act.BeginTime;
    return act.End && span > 0 ? "  " + std::to_string(span) + " ms" : std::string();
}

std::string TextOf(const Row& row)
{
    if (row.IsBoth)
        return row.Of->Name + (row.Of->Result.empty() ? "" : "  " + row.Of->Result);
    if (!row.IsEnd)
        return row.Of->Name + (row.Of->IsReport ? "" : Duration(*row.Of));
    return row.Of->Result.empty() ? "returns" : row.Of->Result;
}

/// A cell: its text, to the right for the end of an act, and its bars at the right edge.
std::string Cell(std::string text, bool toTheRight, std::size_t bars, std::size_t width)
{
    const std::size_t room = width - MostBars - 2;
    if (text.size() > room)
        text.replace(room - 1, std::string::npos, "~");
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

} // namespace

void DrawScene(const Scene& scene, Console& console)
{
    const std::vector<Row> rows = RowsOf(scene);
    std::vector<Column> columns = ColumnsOf(scene, rows);
    const std::size_t room = console.Columns() - TimeWidth;
    const std::vector<Column> left(
        columns.begin() + static_cast<std::ptrdiff_t>(std::min(columns.size(), room / LeastWidth)),
        columns.end());
    columns.resize(columns.size() - left.size());
    std::ranges::stable_sort(columns, std::ranges::greater(), &Column::IsOfTheApplication);
    const std::size_t width = room / std::max<std::size_t>(columns.size(), 1);
    DrawHeading(columns, width, console);
    for (const Row& row : rows) {
        std::string line = Clock(row.Time - scene.Zero);
        bool isShown = false;
        for (const Column& column : columns) {
            const bool isOwn = column.Thread == row.Of->Thread;
            isShown |= isOwn;
            line += Cell(isOwn ? TextOf(row) : "", row.IsEnd && !row.IsBoth,
                         BarsAt(scene, column.Thread, row), width);
        }
        const bool isRed = row.Of->HasFailed && (row.IsEnd || row.IsBoth);
        if (isShown)
            console.Write(console.Coloured(isRed ? Colour::Red : Colour::Plain, Trimmed(std::move(line))));
    }
    for (const Column& column : left)
        console.Write("not shown: " + ThreadName(column.Thread) + ", " + std::to_string(column.Rows) +
                      " rows\n");
}

} // namespace marvane::tool
