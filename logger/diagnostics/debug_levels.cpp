// The debug levels: their names, and the configuration keys that put levels in force for a start of the
// logger.
#include <array>
#include <string>

#include "logger/diagnostics/CLog.h"
#include "logger/state/CConfigData.h"

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

/// The configuration key of a subsystem is its name behind "Dbg".
constexpr std::array<const char*, SubsystemCount> SubsystemNames = {
    "GENERAL", "APP",   "MODULE",   "CLL",        "COP",      "TSTRPRS", "COMPARAM", "COMMS", "VCI",  "VEHTX",
    "VEHRX",   "PRTCL", "PRTCLPHY", "PRTCLTRANS", "PRTCLAPP", "USER1",   "EXCEPT",   "DATA",  "TIMER"};

/// Number of the level of that name, or -1.
std::int32_t LevelNumber(const std::string& name)
{
    for (std::size_t level = 0; level < LevelLabels.size(); ++level)
        if (name == LevelLabels[level].Name)
            return static_cast<std::int32_t>(level);
    return -1;
}

DiagnosticSource FromLevels(DebugLevel level, std::uint32_t line = __builtin_LINE())
{
    return {level, Subsystem::DATA, "class CConfigData", "CConfigData::ProcessLogLevels", line};
}

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

void CConfigData::ProcessLogLevels()
{
    Diagnose(FromLevels(DebugLevel::Debug));
    std::uint32_t accepted = 0;
    for (std::size_t subsystem = 0; subsystem < SubsystemCount; ++subsystem) {
        const char* const name = SubsystemNames[subsystem];
        const std::string key = std::string("Dbg") + name;
        Diagnose(FromLevels(DebugLevel::Debug1), "Getting level for Subsys=", name, ", using XML=`", key,
                 "`");
        const auto found = StringValues.find(key);
        std::int32_t level = found == StringValues.end() ? -1 : LevelNumber(found->second);
        if (level >= 0) {
            ++accepted;
            Diagnose(FromLevels(DebugLevel::Debug1), "Config setting for `", name, "`=", LevelLabel(level),
                     "(", found->second, ")");
        } else
            level = static_cast<std::int32_t>(DebugLevel::Warn);
        LevelTable[subsystem] = level;
        Diagnose(FromLevels(DebugLevel::Debug), "Set level for Subsys=", name, ", to=", LevelLabel(level));
    }
    // One valid key is enough, and then it is all of this table and nothing of the shared one.
    if (accepted == 0)
        return;
    UsingConfigLevels = true;
    CLog::UseConfiguredLevels(LevelTable);
    Diagnose(FromLevels(DebugLevel::Info), "Switched to config file log levls");
}

} // namespace marvane
