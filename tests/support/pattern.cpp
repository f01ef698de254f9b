#include "tests/support/pattern.h"

#include <map>
#include <regex>

namespace marvane::testing {

namespace {

/// Tests apply one pattern to each line of a log, and compiling it is the slow part.
const std::regex& Compiled(const std::string& pattern)
{
    thread_local std::map<std::string, std::regex> known;
    return known.try_emplace(pattern, pattern).first->second;
}

PatternMatch Groups(const std::smatch& match)
{
    return {match.begin(), match.end()};
}

} // namespace

bool HasForm(const std::string& text, const std::string& pattern)
{
    return std::regex_match(text, Compiled(pattern));
}

std::vector<PatternMatch> Matches(const std::string& text, const std::string& pattern)
{
    std::vector<PatternMatch> matches;
    for (std::sregex_iterator match(text.begin(), text.end(), Compiled(pattern)), end; match != end; ++match)
        matches.push_back(Groups(*match));
    return matches;
}

PatternMatch FirstMatch(const std::string& text, const std::string& pattern)
{
    std::smatch match;
    return std::regex_search(text, match, Compiled(pattern)) ? Groups(match) : PatternMatch();
}

std::string ReplaceMatches(const std::string& text, const std::string& pattern,
                           const std::string& replacement)
{
    return std::regex_replace(text, Compiled(pattern), replacement);
}

} // namespace marvane::testing
