// The form that every line of a log must have, whatever was logged, as the reader of logs sees it.
#pragma once

#include <string>
#include <string_view>

#include "tool/read/records.h"

namespace marvane::testing {

/// True for a line that neither begins with a stamp nor is a known continuation of `former`, the line before
/// it: one that belongs to nothing, or one that goes on with an open string. Strings of the application and
/// the target must not contain line breaks.
bool IsOdd(const read::Line& line, std::string_view former);

/// The first odd line of a text: of a log, or of the lines that one phase of a call wrote. Empty if there is
/// none.
std::string FirstOddLine(std::string_view text);

/// The first line of a file of a log that belongs to nothing; empty if there is none.
std::string FirstDamagedLine(std::string_view file);

/// As FirstOddLine for a whole file, some of whose texts were cut: a line may end anywhere, but begins as
/// ever.
std::string FirstOddBeginning(std::string_view text);

} // namespace marvane::testing
