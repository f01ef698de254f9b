#include "tool/console/nearest.h"

#include <algorithm>

namespace marvane::tool {

namespace {

char Lower(char letter)
{
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter + ('a' - 'A')) : letter;
}

bool Same(char one, char other)
{
    return Lower(one) == Lower(other);
}

} // namespace

std::size_t EditDistance(std::string_view one, std::string_view other)
{
    // Rows of the usual table: the one before the last is needed for swapped neighbours.
    std::vector<std::size_t> before(other.size() + 1), last(other.size() + 1), row(other.size() + 1);
    for (std::size_t j = 0; j <= other.size(); ++j)
        row[j] = j;
    for (std::size_t i = 1; i <= one.size(); ++i) {
        before.swap(last);
        last.swap(row);
        row[0] = i;
        for (std::size_t j = 1; j <= other.size(); ++j) {
            const std::size_t replaced = last[j - 1] + (Same(one[i - 1], other[j - 1]) ? 0 : 1);
            row[j] = std::min({last[j] + 1, row[j - 1] + 1, replaced});
            if (i > 1 && j > 1 && Same(one[i - 1], other[j - 2]) && Same(one[i - 2], other[j - 1]))
                row[j] = std::min(row[j], before[j - 2] + 1);
        }
    }
    return row[other.size()];
}

bool SameWord(std::string_view one, std::string_view other)
{
    return std::ranges::equal(one, other, Same);
}

std::string_view Nearest(std::string_view word, std::span<const std::string_view> known)
{
    std::string_view nearest;
    std::size_t least = std::max<std::size_t>(2, word.size() / 3) + 1;
    for (const std::string_view candidate : known) {
        // A word that is cut short is meant even if much is missing.
        const bool begun = word.size() >= 3 && candidate.starts_with(word);
        const std::size_t distance = begun ? 1 : EditDistance(word, candidate);
        if (distance < least && distance < candidate.size()) {
            least = distance;
            nearest = candidate;
        }
    }
    return nearest;
}

std::string DidYouMean(std::string_view word, std::span<const std::string_view> known)
{
    const std::string_view nearest = Nearest(word, known);
    return nearest.empty() ? std::string() : "; did you mean '" + std::string(nearest) + "'?";
}

std::vector<std::string_view> Words(std::string_view list)
{
    std::vector<std::string_view> words;
    while (!list.empty()) {
        const std::size_t comma = list.find(',');
        words.push_back(list.substr(0, comma));
        list.remove_prefix(comma == std::string_view::npos ? list.size() : comma + 1);
    }
    return words;
}

} // namespace marvane::tool
