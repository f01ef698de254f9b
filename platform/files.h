// Folders and files. Paths are narrow strings as narrow_text.h has them; what is read or written are bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace marvane::platform {

/// Separator of folders in the configuration path, the log folder and the search pattern.
extern const char PathSeparator;

bool PathExists(const std::string& path);

/// Creates one folder. True if it was created or something of that name exists.
bool MakeDirectory(const std::string& path);

/// Creates a folder and its missing parents. Errors are ignored.
void MakeDirectoryChain(const std::string& path);

/// Names, without folder, of the log files that match a path whose last part may hold "?" for any one
/// character. On Linux links and special files are left out, and so are, where others may write to the
/// folder, files of other users and files with a second name. None if nothing matches, not even a folder.
std::optional<std::vector<std::string>> FindFiles(const std::string& pattern);

/// Removes a file. Errors are ignored.
void RemoveFile(const std::string& path);

/// An open file without a buffer.
#ifdef _WIN32
using File = std::intptr_t;
#else
using File = int;
#endif
inline constexpr File NoFile = -1;

/// Opens a log file for appending, text mode; others can read and write it meanwhile, child processes do not
/// inherit it. NoFile on failure, and for what FindFiles would leave out. Never blocks.
File OpenLogFile(const std::string& path);

/// What was written of a text: characters of it, and the bytes that they take with the system's line ends.
struct Written
{
    std::size_t Characters;
    std::size_t Bytes;
    bool operator==(const Written&) const = default;
};

/// Writes `first`, then `second`, to the end of the file, in one system call where possible; where it takes
/// several, other processes' text comes in between at the ends of lines only. Fewer than all of their
/// characters are written on an error, such as a full disk. No cancellation point; raises no signal, unless
/// the process lowered its limit for the size of files a few milliseconds ago.
Written WriteToFile(File file, std::string_view first, std::string_view second);

/// Size of a file in bytes, whoever wrote them.
std::uint64_t FileSize(File file);

void CloseFile(File file);

/// Opens a text file of a fixed name in a temporary folder, "w" or "a". Accepts only a regular file of our
/// own user without a second name, follows no symbolic link, does not block; it is readable by its owner
/// alone and not inherited. If the name belongs to another user, the same with the user's number in the name.
/// Null on failure. On Windows a plain open.
std::FILE* OpenTemporaryStream(const std::string& path, const char* mode);

/// Opens a text file for reading, shared with other readers. Null on failure, and for what is no regular
/// file.
std::FILE* OpenForReading(const std::string& path);

} // namespace marvane::platform
