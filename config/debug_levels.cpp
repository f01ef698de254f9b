#include "config/debug_levels.h"

#include <array>

namespace marvane {

namespace {

struct LevelText
{
    const char* Name;  ///< in the configuration
    const char* Label; ///< in a record, blanks included
};

constexpr std::array<LevelText, 8> LevelLabels = {{
    {"ERROR", " ERROR  "},
    {"WARN", " WARN   "},
    {"NOTICE", " NOTICE "},
    {"INFO", " INFO   "},
    {"DEBUG", " DEBUG  "},
    {"DEBUG1", " DEBUG1 "},
    {"DEBUG2", " DEBUG2 "},
    {"DEBUG3", " DEBUG3 "},
}};

constexpr std::array<const char*, SubsystemCount> SubsystemNames = {
    "GENERAL", "APP",   "MODULE",   "CLL",        "COP",      "TSTRPRS", "COMPARAM", "COMMS", "VCI",  "VEHTX",
    "VEHRX",   "PRTCL", "PRTCLPHY", "PRTCLTRANS", "PRTCLAPP", "USER1",   "EXCEPT",   "DATA",  "TIMER"};

} // namespace

const char* LevelLabel(std::int32_t level)
{
    const auto index = static_cast<std::size_t>(level);
    return index < LevelLabels.size() ? LevelLabels[index].Label : "Invalid Level";
}

const char* SubsystemName(std::uint32_t subsystem)
{
    return subsystem < SubsystemNames.size() ? SubsystemNames[subsystem] : "Invalid SubSys";
}

std::int32_t LevelNumber(const std::string_view name)
{
    for (std::size_t level = 0; level < LevelLabels.size(); ++level)
        if (name == LevelLabels[level].Name)
            return static_cast<std::int32_t>(level);
    return -1;
}

std::string LevelFileFolder(char separator)
{
    return std::string("%APPDATA%") + separator + "Kestrix" + separator + "PDUAPI" + separator;
}

} // namespace marvane
