#include "tool/commands/around_rows.h"

#include <algorithm>
#include <span>

namespace marvane::tool {

namespace {

std::string Duration(const Act& act)
{
    const std::int64_t span = act.EndTime - act.BeginTime;
    return act.End && span > 0 ? "  " + std::to_string(span) + " ms" : std::string();
}

std::string WholeText(const SceneRow& row)
{
    if (row.IsBoth)
        return row.Of->Name + (row.Of->Result.empty() ? "" : "  " + row.Of->Result);
    if (!row.IsEnd)
        return row.Of->Name + (row.Of->IsReport ? "" : Duration(*row.Of));
    return row.Of->Result.empty() ? "returns" : row.Of->Result;
}

bool IsAskedFor(const Scene& scene, const Act& act)
{
    const std::uint64_t last = act.End && act.End->File == 0 ? act.End->Line : act.Begin.Line;
    return act.Begin.File == 0 && scene.Line >= act.Begin.Line && scene.Line <= last;
}

bool IsLeftOut(const Scene& scene, const SceneRow& row)
{
    return row.IsBoth && row.Of->Name == "DestroyItem" && row.Of->Result.empty() &&
           !IsAskedFor(scene, *row.Of);
}

bool IsRepetition(const Scene& scene, const SceneRow& row, const SceneRow& first)
{
    return row.IsBoth && first.IsBoth && !row.Of->HasItem && row.Of->Thread == first.Of->Thread &&
           WholeText(row) == WholeText(first) && !IsAskedFor(scene, *row.Of) && !IsAskedFor(scene, *first.Of);
}

/// Adds equal lines: as one, but the last for itself where it has another time.
void Fold(std::span<const SceneRow> equal, FoldedRows& folded)
{
    const bool isOneTime = equal.front().Time == equal.back().Time;
    const std::size_t times = equal.size() - (isOneTime ? 0 : 1);
    folded.Rows.push_back(equal.front());
    folded.Rows.back().Times = times;
    folded.HasFolds |= times > 1;
    if (!isOneTime)
        folded.Rows.push_back(equal.back());
}

} // namespace

std::vector<SceneRow> RowsOf(const Scene& scene)
{
    std::vector<SceneRow> all;
    for (const Act& act : scene.Acts) {
        all.push_back({act.Begin, act.BeginTime, &act});
        if (act.End)
            all.push_back({*act.End, act.EndTime, &act, true});
    }
    std::ranges::stable_sort(all, {}, &SceneRow::At);
    std::vector<SceneRow> rows;
    for (const SceneRow& row : all) {
        const bool isInside = row.Time >= scene.Begin && row.Time <= scene.End;
        if (row.IsEnd && !rows.empty() && rows.back().Of == row.Of && row.Of->BeginTime == row.Of->EndTime)
            rows.back().IsBoth = true;
        else if (isInside)
            rows.push_back(row);
    }
    return rows;
}

FoldedRows Folded(const Scene& scene, const std::vector<SceneRow>& rows)
{
    FoldedRows folded;
    std::vector<SceneRow> equal;
    for (const SceneRow& row : rows) {
        if (IsLeftOut(scene, row)) {
            ++folded.LeftOut;
            continue;
        }
        if (!equal.empty() && !IsRepetition(scene, row, equal.front())) {
            Fold(equal, folded);
            equal.clear();
        }
        equal.push_back(row);
    }
    if (!equal.empty())
        Fold(equal, folded);
    return folded;
}

std::string TextOf(const SceneRow& row, std::size_t most)
{
    const std::string times = row.Times == 1 ? "" : "  " + std::to_string(row.Times) + " times";
    std::string text = WholeText(row);
    if (text.size() + times.size() > most)
        text.replace(most - times.size() - 1, std::string::npos, "~");
    return text + times;
}

} // namespace marvane::tool
