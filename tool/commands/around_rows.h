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
    std::size_t Times = 1; ///< how many equal lines it stands for
};

/// The lines in their order; `scene` outlives them.
std::vector<SceneRow> RowsOf(const Scene& scene);

/// The lines without what only makes them long: calls of PDUDestroyItem that went well are left out, equal
/// lines of a thread that follow each other become one, with the last of them if it is later. Items, reports
/// and what the scene was asked for stay as they are.
struct FoldedRows
{
    std::vector<SceneRow> Rows;
    std::size_t LeftOut = 0; ///< calls of PDUDestroyItem
    bool HasFolds = false;
};
FoldedRows Folded(const Scene& scene, const std::vector<SceneRow>& rows);

/// What a line says in the column of its thread, in at most so many characters.
std::string TextOf(const SceneRow& row, std::size_t most);

} // namespace marvane::tool
