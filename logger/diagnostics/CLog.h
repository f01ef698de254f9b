// The diagnostic log: what this library reports about itself. It has its own file and its own levels, one
// for each subsystem, and shares nothing with the API log.
#pragma once

#include <cstdint>
#include <cstdio>
#include <sstream>

#include "config/debug_levels.h"

namespace marvane {

/// One record while it is composed; the destructor writes it. Everything except the record's string is static
/// and guarded by LogMutex.
class CLog
{
public:
    CLog();
    virtual ~CLog();
    CLog(const CLog&) = delete;
    CLog& operator=(const CLog&) = delete;

    /// Inserts time and level label. Without a level table it inserts nothing.
    std::ostringstream& Get(DebugLevel level);

    /// True if a record of this level is to be written now. Opens the level table if there is none; if that
    /// fails, only errors and warnings are written.
    static bool Wanted(DebugLevel level, Subsystem subsystem);

    /// Opens the shared level table and the init log. True if a level table exists.
    static bool EnsureLevelTable();

    /// Opens and maps the shared level file. True if a level table exists.
    static bool Initialise();

    /// Unmaps the shared level table, unless the levels come from the configuration.
    static void ReleaseLevelTable();

    /// Makes the init log the output. The stream in use before is not closed.
    static void SetInitLogFile(bool truncate);

    /// Redirects the output to a stream, or with null back to the init log. Returns the stream that was in
    /// use; the caller owns it from now on.
    static std::FILE* SetPipe(std::FILE* stream);

    /// Unmaps the level table, writes the closing record and closes the output.
    static void Shutdown();

    /// Uses a table of SubsystemCount levels from the configuration; null ends that. The caller owns the
    /// table, which must outlive its use.
    static void UseConfiguredLevels(const std::int32_t* table);

private:
    std::ostringstream RecordStream;
};

/// Where a record comes from. `File` is the record's file column.
struct DiagnosticSource
{
    DebugLevel Level;
    Subsystem Of;
    const char* File;
    const char* Function;
    std::uint32_t Line;

    // __builtin_LINE, since not every compiler in use has std::source_location yet.
    DiagnosticSource(DebugLevel level, Subsystem subsystem, const char* file, const char* function,
                     std::uint32_t line = __builtin_LINE())
        : Level(level), Of(subsystem), File(file), Function(function), Line(line)
    {
    }
};

namespace clog_detail {

/// Begins the record: thread, file, line and function, up to the colon before the message.
std::ostream& Begin(CLog& log, const DiagnosticSource& source);

/// Holds LogMutex, whose header this one need not include.
struct Hold
{
    Hold();
    ~Hold();
};

} // namespace clog_detail

/// One statement of the diagnostic log. The level is tested before anything is composed. Numbers print in
/// decimal.
template <class... Parts> void Diagnose(const DiagnosticSource& source, const Parts&... message)
{
    clog_detail::Hold hold;
    if (!CLog::Wanted(source.Level, source.Of))
        return;
    CLog record;
    (clog_detail::Begin(record, source) << ... << message);
}

} // namespace marvane
