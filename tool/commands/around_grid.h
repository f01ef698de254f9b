// Draws a scene: a column a thread, a bar where a call is open.
#pragma once

#include "tool/commands/around_scene.h"
#include "tool/commands/console.h"

namespace marvane::tool {

/// Writes the scene. Threads that do not fit are named at the end; those with the most rows go first.
void DrawScene(const Scene& scene, Console& console);

} // namespace marvane::tool
