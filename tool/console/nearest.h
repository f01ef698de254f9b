// The known word that is nearest to a misspelt one.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace marvane::tool {

/// Number of letters to insert, remove, replace or swap with their neighbour to make one word of the other;
/// upper and lower case count as equal.
std::size_t EditDistance(std::string_view one, std::string_view other);

/// True if two words differ in upper and lower case at most.
bool SameWord(std::string_view one, std::string_view other);

/// The nearest of the known words, empty if none is near enough to be meant.
std::string_view Nearest(std::string_view word, std::span<const std::string_view> known);

/// "; did you mean 'WORD'?", or nothing if no known word is near.
std::string DidYouMean(std::string_view word, std::span<const std::string_view> known);

/// The parts of a list that is separated by commas.
std::vector<std::string_view> Words(std::string_view list);

} // namespace marvane::tool
