// The form that every text of the log must have, whatever was logged.
#pragma once

#include <string_view>

namespace marvane::testing {

/// True for a line that begins with "{hh:mm:ss.mmm - TTTTTTTT} ".
bool IsStamped(std::string_view line);

/// The first line of a text that neither begins with a stamp nor is a known continuation of the line before
/// it; empty if there is none. `former` is the line before the text. Strings of the application and the
/// target must not contain line breaks.
std::string_view FirstOddLine(std::string_view text, std::string_view former = {});

/// As FirstOddLine for a whole file, some of whose texts were cut: a line may end anywhere, but begins as
/// ever.
std::string_view FirstOddBeginning(std::string_view text);

} // namespace marvane::testing
