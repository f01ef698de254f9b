// What has to hold before an install writes anything.
#pragma once

#include "tool/setup/install_plan.h"

namespace marvane::tool {

/// Checks that everything a plan is to write can be written, and that the logger library will work with its
/// configuration. Adds the changes of root description files, and notes. Throws InstallRefused.
void CheckPlan(InstallPlan& plan);

} // namespace marvane::tool
