#include "tool/commands/finding_screen.h"

namespace marvane::tool {

std::string ColouredFinding(const Console& console, const CheckFinding& finding)
{
    const std::string shown = ShownFinding(finding);
    if (finding.Level == FindingLevel::Error)
        return console.Coloured(Colour::Red, shown.substr(0, 4)) + shown.substr(4);
    if (finding.Level == FindingLevel::Warning)
        return console.Coloured(Colour::Yellow, shown.substr(0, 4)) + shown.substr(4);
    return shown;
}

} // namespace marvane::tool
