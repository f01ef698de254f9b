// Regular expressions for tests. Compiled once, in pattern.cpp: the templates of <regex> take the
// compiler 1.5 s in each source that uses them, in every preset.
#pragma once

#include <string>
#include <vector>

namespace marvane::testing {

/// A match: the whole of it, then its groups; a group that took no part is empty.
using PatternMatch = std::vector<std::string>;

/// True if all of the text has the form of an ECMAScript pattern.
bool HasForm(const std::string& text, const std::string& pattern);

/// Each match in the text, from left to right.
std::vector<PatternMatch> Matches(const std::string& text, const std::string& pattern);

/// The first match, or nothing at all.
PatternMatch FirstMatch(const std::string& text, const std::string& pattern);

/// The text with each match replaced; "$1" in the replacement is the first group.
std::string ReplaceMatches(const std::string& text, const std::string& pattern,
                           const std::string& replacement);

} // namespace marvane::testing
