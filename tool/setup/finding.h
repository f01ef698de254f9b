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

struct CheckFinding
{
    FindingLevel Level = FindingLevel::Ok;
    std::string Place;    ///< "target library", "LogFileDir"; of a finding about a line: empty
    std::string Text;     ///< in words; a line feed begins a new line
    std::size_t Line = 0; ///< of the configuration file, 0 if it is about no line
};

using CheckFindings = std::vector<CheckFinding>;

inline void Append(CheckFindings& findings, CheckFindings more)
{
    findings.insert(findings.end(), std::make_move_iterator(more.begin()),
                    std::make_move_iterator(more.end()));
}

/// The screen line or lines of a finding: mark, place, text, wrapped at 100 columns.
std::string ShownFinding(const CheckFinding& finding);

/// "1 error, 3 warnings"
std::string CountedFindings(const CheckFindings& findings);

/// The findings as a JSON array.
std::string FindingsJson(const CheckFindings& findings);

bool HasErrors(const CheckFindings& findings);
bool HasWarnings(const CheckFindings& findings);

} // namespace marvane::tool
