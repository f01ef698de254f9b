// The debug levels that the configuration puts in effect for a start of the logger.
#include <string>

#include "config/debug_levels.h"
#include "logger/state/CConfigData.h"

namespace marvane {

namespace {

DiagnosticSource FromLevels(DebugLevel level, std::uint32_t line = __builtin_LINE())
{
    return {level, Subsystem::DATA, "class CConfigData", "CConfigData::ProcessLogLevels", line};
}

} // namespace

void CConfigData::ProcessLogLevels()
{
    Diagnose(FromLevels(DebugLevel::Debug));
    std::uint32_t accepted = 0;
    for (std::size_t subsystem = 0; subsystem < SubsystemCount; ++subsystem) {
        const char* const name = SubsystemName(static_cast<std::uint32_t>(subsystem));
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
