#include "tool/commands/around_rows.h"

#include <algorithm>

namespace marvane::tool {

namespace {

std::string Duration(const Act& act)
{
    const std::int64_t span = act.EndTime - act.BeginTime;
    return act.End && span > 0 ? "  " + std::to_string(span) + " ms" : std::string();
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

std::string TextOf(const SceneRow& row)
{
    if (row.IsBoth)
        return row.Of->Name + (row.Of->Result.empty() ? "" : "  " + row.Of->Result);
    if (!row.IsEnd)
        return row.Of->Name + (row.Of->IsReport ? "" : Duration(*row.Of));
    return row.Of->Result.empty() ? "returns" : row.Of->Result;
}

} // namespace marvane::tool
