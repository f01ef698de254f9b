// Findings about what is around a chain: processes that run without it, and what its diagnostic log says.
#pragma once

#include <string>

#include "tool/setup/finding.h"
#include "tool/setup/root_sources.h"

namespace marvane::tool {

/// Processes that hold the target library and not the copy of Marvane: they were started before.
CheckFindings OldProcessFindings(const std::string& marvane, const std::string& target);

/// The last warnings of the diagnostic log, those about lines without an attribute left out.
CheckFindings DiagnosticLogFindings();

/// A URI that not every application understands.
CheckFindings SpellingFindings(const RootEntry& entry);

} // namespace marvane::tool
