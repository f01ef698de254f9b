// A summary as JSON.
#pragma once

#include <string>
#include <vector>

#include "tool/analysis/summary_facts.h"

namespace marvane::tool {

/// One object, schema "marvane.summary/1".
std::string SummaryJson(const SummaryFacts& facts, const std::vector<read::LogFile>& files);

} // namespace marvane::tool
