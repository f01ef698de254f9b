// Texts of a log for programs that take nothing but UTF-8.
#pragma once

#include <string>
#include <string_view>

namespace marvane::tool {

/// Appends a text with U+FFFD in place of NUL and of what is no UTF-8, and `quote` doubled. False if anything
/// was replaced.
bool AppendClean(std::string& out, std::string_view text, char quote);

} // namespace marvane::tool
