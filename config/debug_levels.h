// Levels and subsystems of the diagnostic log, and their names.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace marvane {

enum class DebugLevel : std::int32_t
{
    Error,
    Warn,
    Notice,
    Info,
    Debug,
    Debug1,
    Debug2,
    Debug3
};

inline constexpr std::size_t SubsystemCount = 19;

/// Number of a debug subsystem: its place in the level table.
enum class Subsystem : std::uint32_t
{
    GENERAL,
    APP,
    MODULE,
    CLL,
    COP,
    TSTRPRS,
    COMPARAM,
    COMMS,
    VCI,
    VEHTX,
    VEHRX,
    PRTCL,
    PRTCLPHY,
    PRTCLTRANS,
    PRTCLAPP,
    USER1,
    EXCEPT,
    DATA,
    TIMER
};

/// Label of a level in a record, blanks included; "Invalid Level" for a number of 8 or above.
const char* LevelLabel(std::int32_t level);

/// Name of a subsystem; "Invalid SubSys" for a number of 19 or above.
const char* SubsystemName(std::uint32_t subsystem);

/// Number of the level of that name, -1 if there is none.
std::int32_t LevelNumber(std::string_view name);

/// The file of the shared level table: SubsystemCount little-endian 32-bit levels.
inline constexpr const char* LevelFileName = "DEBUG.CFG";

/// Its folder with a separator at the end, before environment references are expanded.
std::string LevelFileFolder(char separator);

} // namespace marvane
