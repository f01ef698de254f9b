// The API log files: where they lie, how they are opened, written, measured and closed.
#pragma once

#include <atomic>
#include <cstdint>
#include <string>
#include <string_view>

#include "logger/log/log_file.h"
#include "logger/log/phase_text.h"

namespace marvane {

/// An open log stream, or none. Changed under LogMutex only; whether it exists may be looked at without.
using LogStream = std::atomic<LogFile*>;

/// The log of the calls.
extern LogStream ApiLogFile;
/// Where comms records go: ApiLogFile's own stream, or a file beside it.
extern LogStream CommsLogFile;

/// Makes a folder with all that lead to it. False if one of them can't be made; those behind it are tried all
/// the same. An empty name counts as made.
bool MakeLogDirectory(const std::string& directory);

struct LogPaths
{
    std::string Api;
    std::string Comms; ///< empty without a comms family
};

/// Trims the old files and composes the paths of the files to open in a folder.
LogPaths ComposeLogPaths(const std::string& directory, bool withComms);

/// Makes the folder if this process has not done so yet, trims the old files, and opens the log file and,
/// if so configured, the comms file, both for appending. Returns 0 on success, else 1.
int OpenLogFile(const std::string& directory);

/// Closes the log file and the comms file.
void CloseLogFiles();

/// Size of the API log file in bytes, with all that was written to it; 0 if none is open. Leaves the file's
/// contents on the disc.
std::uint32_t GetLogFileSize();

/// Writes a text to a stream and flushes it if LogFlush is 1, under LogMutex. A stream that is gone by then
/// swallows the text.
void WriteToLog(const LogStream& stream, std::string_view text);

/// Writes a phase to a stream while logging is active. The text stays as it is. Whether there is a stream is
/// asked under LogMutex alone: in the middle of a change of the file there is none.
inline void WritePhase(const PhaseText& text, const LogStream& stream)
{
    if (LoggingActive())
        WriteToLog(stream, text.Text());
}

} // namespace marvane
