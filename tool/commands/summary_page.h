// The page that marvane summary shows.
#pragma once

#include <string>

#include "tool/analysis/summary_facts.h"
#include "tool/console/console.h"

namespace marvane::tool {

/// `isAll`: every row of its lists. `log` is what a command that reads the same log needs besides its name: "
/// LOG". There is at least one session.
void WriteSummaryPage(const SummaryFacts& facts, bool isAll, const std::string& log, Console& console);

} // namespace marvane::tool
