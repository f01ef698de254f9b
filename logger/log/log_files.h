// The API log files: where they are stored, and how they are opened, written, measured and closed.
#pragma once

#include <atomic>
#include <cstdint>
#include <string>
#include <string_view>

#include "logger/log/log_file.h"
#include "logger/log/phase_text.h"

namespace marvane {

/// An open log file, or null. Changed under LogMutex only; whether there is one may be tested without it.
using LogStream = std::atomic<LogFile*>;

/// The log of the calls.
extern LogStream ApiLogFile;
/// Receives comms reports: the same file as ApiLogFile, or one of its own.
extern LogStream CommsLogFile;

/// Creates a folder and its missing parents. False if one of them can't be created; the rest is tried all the
/// same. An empty name is a success.
bool MakeLogDirectory(const std::string& directory);

struct LogPaths
{
    std::string Api;
    std::string Comms; ///< empty if comms reports have no files of their own
};

/// Trims the old files of LogDirectory and composes the paths of the files to open in `directory`.
LogPaths ComposeLogPaths(const std::string& directory, bool withComms);

/// Creates the folder if this process has not done so yet, trims the old files, and opens the log file and,
/// if so configured, the comms file, both for appending. Returns 0 on success, else 1.
int OpenLogFile(const std::string& directory);

/// Opens the log file anew in a rotation. If that fails, a virus scanner may just have it open: it is tried
/// a few times more within some milliseconds, and ReopeningFailed is set if none succeeds. The caller holds
/// LogMutex.
void ReopenLogFile();
/// A rotation could not open its new file. Changed under LogMutex only.
extern std::atomic<bool> ReopeningFailed;

/// Closes the log file and the comms file.
void CloseLogFiles();

/// Size of the API log file in bytes, buffered text included, after flushing it; 0 if none is open.
std::uint32_t GetLogFileSize();

/// Writes text to a log file under LogMutex, and flushes it if LogFlush is 1. Does nothing if there is no
/// file by then. Errors are ignored.
void WriteToLog(const LogStream& stream, std::string_view text);

/// Writes a phase to a log file while logging is active. The text stays as it is. Whether there is a file is
/// tested under LogMutex only: in the middle of a change of the file there is none.
inline void WritePhase(const PhaseText& text, const LogStream& stream)
{
    if (LoggingActive())
        WriteToLog(stream, text.Text());
}

} // namespace marvane
