// Draws a scene: a column a thread, a bar where a call is open.
#pragma once

#include "tool/commands/around_scene.h"
#include "tool/console/console.h"

namespace marvane::tool {

/// Writes the scene, folded if not all is wanted. Threads that do not fit are named at the end; those with
/// the most rows go first.
void DrawScene(const Scene& scene, bool isAll, Console& console);

} // namespace marvane::tool
