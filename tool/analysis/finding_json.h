// What went wrong as JSON.
#pragma once

#include <vector>

#include "tool/analysis/findings.h"
#include "tool/console/json_text.h"
#include "tool/read/log_files.h"

namespace marvane::tool {

/// An object of "problems" in schema "marvane.errors/1". `begin` is that of the finding's session.
JsonObject FindingJson(const Finding& finding, const std::vector<read::LogFile>& files, read::LogTime begin);

} // namespace marvane::tool
