// What `marvane check` has to say: one finding after the other, and how they are shown.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace marvane::tool {

enum class FindingLevel : std::uint8_t
{
    Ok,
    Note,
    Warning,
    Error
};

struct Finding
{
    FindingLevel Level = FindingLevel::Ok;
    std::string Place;    ///< "target library", "LogFileDir"; of a finding about a line: empty
    std::string Text;     ///< in words; a line feed begins a new line
    std::size_t Line = 0; ///< of the configuration file, 0 if it is about no line
};

using Findings = std::vector<Finding>;

inline void Append(Findings& findings, Findings more)
{
    findings.insert(findings.end(), std::make_move_iterator(more.begin()),
                    std::make_move_iterator(more.end()));
}

/// The screen line or lines of a finding: mark, place, text, wrapped at 100 columns.
std::string ShownFinding(const Finding& finding);

/// "1 error, 3 warnings"
std::string CountedFindings(const Findings& findings);

bool HasErrors(const Findings& findings);
bool HasWarnings(const Findings& findings);

} // namespace marvane::tool
