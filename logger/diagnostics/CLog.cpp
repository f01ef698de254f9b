#include "logger/diagnostics/CLog.h"

#include <chrono>
#include <functional>
#include <iomanip>
#include <string>

#include "logger/base/lasting.h"
#include "logger/diagnostics/CMutexWindows.h"
#include "platform/clock.h"
#include "platform/environment.h"
#include "platform/files.h"
#include "platform/process.h"
#include "platform/shared_words.h"
#include "platform/uninterrupted.h"

namespace marvane {

namespace {

// Guarded by LogMutex. Constant-initialised, since LogMutex itself reports here when it is created.
constinit std::FILE* DiagnosticFile = nullptr;
// The init log, as long as no caller of SetPipe owns it: whoever replaces it closes it.
constinit std::FILE* OwnedInitLog = nullptr;
constinit const volatile std::int32_t* ActiveLevelTable = nullptr;
constinit bool LevelsFromConfig = false;

/// The shared level file. Made on first use, which may come from the static initialisation of another file.
platform::SharedWords& LevelFile()
{
    constinit static Lasting<platform::SharedWords> place;
    static platform::SharedWords& file = place.Make();
    return file;
}

/// Releases the table when the library ends; a thread that still has something to report opens it again.
struct LevelTableEnd
{
    LevelTableEnd() { MakeLogMutex(); }
    ~LevelTableEnd() { CLog::ReleaseLevelTable(); }
};

const LevelTableEnd levelTableEnd;

DiagnosticSource FromCLog(DebugLevel level, const char* function, std::uint32_t line = __builtin_LINE())
{
    return {level, Subsystem::GENERAL, "lib/CLog", function, line};
}

/// Prints and flushes. A write may raise signals and is a cancellation point; the application must notice
/// neither.
void PrintTo(std::FILE* stream, const std::string& text)
{
    const platform::Uninterrupted scope;
    std::fputs(text.c_str(), stream);
    std::fflush(stream);
}

void CloseStream(std::FILE* stream)
{
    const platform::Uninterrupted scope;
    std::fclose(stream);
}

/// Level of a subsystem in the table in effect. Without a table, or with one that can't be read, errors and
/// warnings are written.
std::int32_t ActiveLevel(Subsystem subsystem)
{
    const auto index = static_cast<std::size_t>(subsystem);
    if (ActiveLevelTable && LevelsFromConfig)
        return ActiveLevelTable[index];
    std::int32_t level = 0;
    return ActiveLevelTable && LevelFile().Read(index, level) ? level
                                                              : static_cast<std::int32_t>(DebugLevel::Warn);
}

void InsertTime(std::ostream& record)
{
    using namespace std::chrono;
    const auto now = duration_cast<microseconds>(system_clock::now().time_since_epoch()).count();
    const std::tm calendar = platform::UtcCalendarTime(now / 1000000);
    record << std::put_time(&calendar, "%H:%M:%S.") << std::setw(6) << std::setfill('0') << now % 1000000;
}

/// Once for each path: without a level file each record tries again to open it.
void ReportNoLevelFile(const std::string& error, const std::string& path)
{
    const std::string message = "CLog failed to initialise - " + error + ": " + path + '\n';
    // The hash in place of the string: a static string would be destroyed under threads that still report.
    constinit static std::size_t reported = 0;
    const std::size_t hash = std::hash<std::string>()(message);
    if (hash != reported)
        PrintTo(stderr, message);
    reported = hash;
}

std::string InTemporaryFolder(const char* name)
{
    return platform::ExpandEnvironment(std::string("%TEMP%") + platform::PathSeparator + name);
}

} // namespace

CLog::CLog() = default;

CLog::~CLog()
{
    RecordStream << '\n';
    PrintTo(DiagnosticFile ? DiagnosticFile : stderr, RecordStream.str());
}

std::ostringstream& CLog::Get(DebugLevel level)
{
    if (!ActiveLevelTable) {
        if (LevelsFromConfig || !Initialise())
            return RecordStream;
        SetInitLogFile(true);
    }
    InsertTime(RecordStream);
    RecordStream << LevelLabel(static_cast<std::int32_t>(level));
    return RecordStream;
}

bool CLog::Wanted(DebugLevel level, Subsystem subsystem)
{
    LogMutexHold hold;
    if (!ActiveLevelTable)
        EnsureLevelTable();
    return ActiveLevel(subsystem) >= static_cast<std::int32_t>(level);
}

bool CLog::EnsureLevelTable()
{
    LogMutexHold hold;
    const bool exists = LevelsFromConfig ? ActiveLevelTable != nullptr : Initialise();
    if (exists)
        SetInitLogFile(true);
    return exists;
}

bool CLog::Initialise()
{
    LogMutexHold hold;
    const std::string reference = LevelFileFolder(platform::PathSeparator);
    const std::string folder = platform::ExpandEnvironment(reference);
    const std::string path = folder + LevelFileName;
    std::string error = "No folder for settings";
    // Without a home folder the reference stays as it is, and a folder of that name would be created.
    if (folder != reference) {
        platform::MakeDirectoryChain(folder);
        LevelFile().Open(path, SubsystemCount, static_cast<std::int32_t>(DebugLevel::Warn), error);
    }
    if (!error.empty())
        ReportNoLevelFile(error, path);
    ActiveLevelTable = LevelFile().Words();
    return ActiveLevelTable != nullptr;
}

void CLog::ReleaseLevelTable()
{
    LogMutexHold hold;
    if (LevelsFromConfig)
        return;
    ActiveLevelTable = nullptr;
    LevelFile().Close();
}

void CLog::UseConfiguredLevels(const std::int32_t* table)
{
    LogMutexHold hold;
    if (table)
        ReleaseLevelTable();
    LevelsFromConfig = table != nullptr;
    ActiveLevelTable = table;
}

void CLog::SetInitLogFile(bool truncate)
{
    LogMutexHold hold;
    const char* name = "d-pdu-api_All_x64_init.log";
    std::string path = InTemporaryFolder(name);
    if (!path.empty())
        // Logged on success although it says "Failed": kept, because readers search for this text.
        Diagnose(FromCLog(DebugLevel::Notice, "CLog::SetInitLogFile"),
                 "Failed to re-direct startup to init log file: ", name);
    else {
        name = "d-pdu-api_init.log";
        path = InTemporaryFolder(name);
    }
    DiagnosticFile = platform::OpenTemporaryStream(path, truncate ? "w" : "a");
    if (OwnedInitLog)
        CloseStream(OwnedInitLog);
    OwnedInitLog = DiagnosticFile;
    Diagnose(FromCLog(DebugLevel::Info, "CLog::SetInitLogFile"), "Directed to init log file: ", name);
}

std::FILE* CLog::SetPipe(std::FILE* stream)
{
    LogMutexHold hold;
    std::FILE* const previous = DiagnosticFile;
    if (previous == OwnedInitLog)
        OwnedInitLog = nullptr;
    if (stream) {
        if (previous && previous != stream)
            Diagnose(FromCLog(DebugLevel::Info, "CLog::SetPipe"), "Leaving initial log file");
        DiagnosticFile = stream;
        return previous;
    }
    if (previous)
        Diagnose(FromCLog(DebugLevel::Info, "CLog::SetPipe"), "Returning to initial log file");
    SetInitLogFile(false);
    return previous;
}

void CLog::Shutdown()
{
    LogMutexHold hold;
    ReleaseLevelTable();
    if (!DiagnosticFile)
        return;
    Diagnose(FromCLog(DebugLevel::Info, "CLog::Shutdown"), "Closing log file");
    if (DiagnosticFile && DiagnosticFile != stderr)
        CloseStream(DiagnosticFile);
    DiagnosticFile = nullptr;
    OwnedInitLog = nullptr;
}

namespace clog_detail {

Hold::Hold()
{
    LogMutex.Lock();
}

Hold::~Hold()
{
    LogMutex.Unlock();
}

std::ostream& Begin(CLog& log, const DiagnosticSource& source)
{
    if (!DiagnosticFile)
        DiagnosticFile = stderr;
    std::ostringstream& record = log.Get(source.Level);
    record << std::hex << std::setw(5) << std::setfill(' ') << platform::CurrentThreadId() << ':'
           << source.File << ':' << std::dec << source.Line << ':' << source.Function << ':';
    return record;
}

} // namespace clog_detail

} // namespace marvane
