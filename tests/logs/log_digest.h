// What a reader finds in a log, one line a record, in the order of the log's lines: for tests to compare.
#pragma once

#include <string>
#include <vector>

namespace marvane::testing {

/// The logs of this folder, read as one: calls, events, items, reports, ComParams, marks and problems.
std::string LogDigest(const std::vector<std::string>& names);

/// The exchanges alone, in the order of their requests.
std::string ExchangeDigest(const std::vector<std::string>& names);

/// The path of a log of this folder.
std::string HandMadeLog(const std::string& name);

} // namespace marvane::testing
