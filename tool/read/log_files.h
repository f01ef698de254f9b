// The files of a log: which there are, in which order they are read, and reading them.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "line/file_names.h"
#include "platform/temporary_file.h"
#include "tool/read/log_reader.h"

namespace marvane::read {

struct LogFile
{
    std::filesystem::path Path;      ///< "-" for standard input
    std::optional<LogFamily> Family; ///< by its name; none if it is named otherwise
    FileBegin Begin;
    LogTime LastChange;
    std::uint64_t Size = 0; ///< in bytes on disk; 0 for standard input
    bool IsCompressed = false;
    bool IsStandardInput = false;
    /// What was standard input and is read more than once; null for all others.
    std::shared_ptr<const platform::TemporaryFile> Spool;
};

/// What a path, folder or pattern led to.
struct FoundFiles
{
    std::vector<LogFile> Files; ///< by time, the API log before the comms log of the same second
    struct Failure
    {
        std::string Path;
        std::string Reason; ///< one line
    };
    std::vector<Failure> Failures;
};

/// The log files that `paths` lead to: files, folders (all logs in them, and comms logs beside them with the
/// folder's name in front), patterns with * and ?, "-". No path is read twice.
FoundFiles FindLogFiles(const std::vector<std::string>& paths);

/// Of files in their order, those of the newest session: from the last file that begins with a session's
/// header to the end, with the comms logs of that time.
std::vector<LogFile> NewestSession(const std::vector<LogFile>& files);

struct ReadOptions
{
    /// Only lines from here on are needed: what lies between the header of a plain file and here may be
    /// skipped. Lines shortly before are read as well.
    std::optional<LogTime> Since;
    /// Calls that were open then are read from their entry lines on; else they have none.
    bool WholeCalls = false;
};

/// Feeds a file to the reader, from its beginning to its present end, .gz unpacked. Trouble is reported to
/// the reader's sink. Returns false if the file could not be read or is no log.
bool ReadLogFile(const LogFile& file, LogReader& reader, const ReadOptions& options = {});

} // namespace marvane::read
