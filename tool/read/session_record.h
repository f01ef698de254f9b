// A session of a log, as a record.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tool/read/line_records.h"
#include "tool/read/log_time.h"

namespace marvane::read {

struct Setting
{
    std::string Key;
    std::string Text;                    ///< as printed; a string without its quotes
    std::optional<std::uint32_t> Number; ///< of a numeric key
};

/// One run of the logger library from PDUConstruct to PDUDestruct, as far as the log shows.
/// Owned by the reader; the last thousand stay where they are while the reader lives. It grows while its
/// lines are read.
struct Session
{
    std::uint32_t Number = 0;  ///< from 1
    std::uint32_t Process = 0; ///< from 1; sessions of the same process have the same number
    Position Begin;
    LogTime BeginTime;
    bool HasBeginning = false; ///< false: begins with a continuation file, or without any header
    bool IsDateCertain = true; ///< false: several days may have passed since the date in the file's name
    std::string Marvane;       ///< version; empty if unknown
    std::string Target;        ///< path
    std::string TargetVersion; ///< empty if it could not be read
    std::string LoadFailure;   ///< why it could not be loaded; empty if the log does not tell
    bool IsLoaded = false;     ///< a call reached the target library
    bool HasNotLoaded = false; ///< a call found no target library
    bool IsEnded = false;      ///< by PDUDestruct, or ...
    bool IsReplaced = false;   ///< ... by a second PDUConstruct of the same process, or ...
    bool HasDied = false;      ///< ... by the death of the process: another has its thread
    bool IsHeaderComplete = false;
    std::uint64_t Calls = 0;
    std::uint64_t Events = 0;
    LogTime LastTime; ///< of its last line so far
    Position LastAt;
    std::vector<Setting> Settings;

    /// The value of a numeric setting; nothing if the header does not have it.
    std::optional<std::uint32_t> NumberOf(std::string_view key) const;
};

} // namespace marvane::read
