// The logs of an installation, as `marvane status` shows them.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tool/read/log_files.h"

namespace marvane::tool {

/// What the newest file of a session says of it.
struct SessionFacts
{
    std::string File; ///< name without folder
    std::string Path;
    read::LogTime Begin;
    std::int64_t Ms = 0; ///< from its first line to its last
    std::uint64_t Calls = 0;
    std::uint64_t Failed = 0;
    bool IsEnded = false; ///< with PDUDestruct
    std::string Open;     ///< the call that has not returned; empty if all have
    bool IsReadable = true;
};

/// The API logs in a folder and the newest sessions among them, the newest first.
struct FolderOfLogs
{
    std::string Folder;
    std::size_t Files = 0;
    std::uint64_t Bytes = 0;
    std::vector<SessionFacts> Newest;
};
FolderOfLogs LookAtLogs(const std::string& folder);

/// "2 failed", "none failed, no PDUDestruct", "inside PDUModuleConnect at the end".
std::string OutcomeOf(const SessionFacts& session);

/// The rows about a folder: how many files of at most `most` (0: no limit), and a row for each session. `now`
/// is the time that "today" is meant by.
std::string LogRows(const FolderOfLogs& logs, std::uint64_t most, read::LogTime now);

} // namespace marvane::tool
