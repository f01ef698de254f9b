// The lines of the drawing of a scene.
#pragma once

#include <string>
#include <vector>

#include "tool/commands/around_scene.h"

namespace marvane::tool {

/// One line of the drawing: the beginning of an act, its end, or both.
struct SceneRow
{
    read::Position At;
    read::LogTime Time;
    const Act* Of;
    bool IsEnd = false;
    bool IsBoth = false;
};

/// The lines in their order; `scene` outlives them.
std::vector<SceneRow> RowsOf(const Scene& scene);

/// What a line says in the column of its thread.
std::string TextOf(const SceneRow& row);

} // namespace marvane::tool
