#include "platform/files.h"

#include <algorithm>
#include <cerrno>
#include <optional>

#include <dirent.h>
#include <fcntl.h>
#include <fnmatch.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <unistd.h>

#include "platform/descriptor_linux.h"
#include "platform/file_size_signal_linux.h"
#include "platform/uninterrupted.h"

namespace marvane::platform {

const char PathSeparator = '/';

namespace {

std::FILE* StreamOf(int descriptor, const char* mode)
{
    std::FILE* const stream = fdopen(descriptor, mode);
    if (!stream)
        close(descriptor);
    return stream;
}

/// The descriptor, or -1, and it is closed, if its file does not pass the check.
template <class Check> int Checked(int descriptor, Check check)
{
    struct stat status;
    if (descriptor == -1 || (fstat(descriptor, &status) == 0 && check(status)))
        return descriptor;
    close(descriptor);
    return -1;
}

DIR* OpenDirectory(const std::string& path)
{
    const int descriptor = OpenDescriptor(path, O_RDONLY | O_DIRECTORY);
    DIR* const directory = descriptor == -1 ? nullptr : fdopendir(descriptor);
    if (!directory && descriptor != -1)
        close(descriptor);
    return directory;
}

FolderWriters WritersOfOpen(DIR* directory)
{
    struct stat status;
    return fstat(dirfd(directory), &status) == 0 ? WritersOf(status) : FolderWriters::Others;
}

} // namespace

bool PathExists(const std::string& path)
{
    // The root: the part before the first separator of an absolute path.
    return path.empty() || access(path.c_str(), F_OK) == 0;
}

bool MakeDirectory(const std::string& path)
{
    return mkdir(path.c_str(), 0777) == 0 || errno == EEXIST;
}

void MakeDirectoryChain(const std::string& path)
{
    for (std::size_t end = path.find('/', 1); end != std::string::npos; end = path.find('/', end + 1))
        MakeDirectory(path.substr(0, end));
    MakeDirectory(path);
}

std::optional<std::vector<std::string>> FindFiles(const std::string& pattern)
{
    const std::size_t slash = pattern.rfind('/');
    const std::string folder = slash == std::string::npos ? "." : pattern.substr(0, slash + 1);
    const std::string name = pattern.substr(slash + 1);
    DIR* const directory = OpenDirectory(folder);
    if (!directory)
        return std::nullopt;
    const FolderWriters writers = WritersOfOpen(directory);
    bool matched = false;
    std::vector<std::string> files;
    while (const dirent* entry = readdir(directory)) {
        if (fnmatch(name.c_str(), entry->d_name, FNM_NOESCAPE | FNM_PERIOD) != 0)
            continue;
        matched = true;
        struct stat status;
        if (fstatat(dirfd(directory), entry->d_name, &status, AT_SYMLINK_NOFOLLOW) == 0 &&
            IsOwnFile(status, writers))
            files.emplace_back(entry->d_name);
    }
    closedir(directory);
    return matched ? std::optional(std::move(files)) : std::nullopt;
}

void RemoveFile(const std::string& path)
{
    std::remove(path.c_str());
}

File OpenLogFile(const std::string& path)
{
    const int file = OpenDescriptor(path, O_WRONLY | O_CREAT | O_APPEND | O_NOFOLLOW, 0666);
    const auto isOwn = [&](const struct stat& status) { return IsOwnFile(status, WritersOfParent(path)); };
    if (Checked(file, isOwn) == -1)
        return NoFile;
    BeginFileSizeSignal();
    return file;
}

namespace {

/// One write that no signal interrupts; negative on failure. By plain system calls: write and writev are
/// cancellation points, and to defer cancellation costs 16 ns.
long WriteOnce(File file, std::string_view first, std::string_view second)
{
    const iovec parts[] = {{const_cast<char*>(first.data()), first.size()},
                           {const_cast<char*>(second.data()), second.size()}};
    const iovec& sole = first.empty() ? parts[1] : parts[0];
    const bool isOne = first.empty() || second.empty();
    for (;;) {
        const long written = isOne ? syscall(SYS_write, file, sole.iov_base, sole.iov_len)
                                   : syscall(SYS_writev, file, parts, 2);
        if (written >= 0 || errno != EINTR)
            return written;
    }
}

/// Writes what follows the first `written` characters, as far as that is possible, and returns what is
/// written then. Kept out of line: the usual way does not need it.
[[gnu::noinline]] Written WriteRest(File file, std::string_view first, std::string_view second,
                                    std::size_t written)
{
    std::optional<WriteSignalsHeld> held;
    if (!FileSizeSignalIsHandled())
        held.emplace();
    const std::size_t all = first.size() + second.size();
    std::size_t done = written;
    while (done < all) {
        const std::size_t ofFirst = std::min(first.size(), done);
        const long more = WriteOnce(file, first.substr(ofFirst), second.substr(done - ofFirst));
        if (more <= 0)
            break;
        done += static_cast<std::size_t>(more);
    }
    return {done, done};
}

} // namespace

Written WriteToFile(File file, std::string_view first, std::string_view second)
{
    const std::size_t all = first.size() + second.size();
    if (all == 0)
        return {};
    const OwnWrite own;
    if (!FileSizeSignalIsHandled())
        return WriteRest(file, first, second, 0);
    const long written = WriteOnce(file, first, second);
    if (written == static_cast<long>(all))
        return {all, all};
    // A short write may be the first sign of the limit: the next one raises the signal, which the application
    // may have taken over since the file was opened.
    ReadFileSizeSignal();
    return written > 0 ? WriteRest(file, first, second, static_cast<std::size_t>(written)) : Written();
}

std::uint64_t FileSize(File file)
{
    const off_t end = lseek(file, 0, SEEK_END);
    return end < 0 ? 0 : static_cast<std::uint64_t>(end);
}

void CloseFile(File file)
{
    const CancellationDeferred deferred;
    close(file);
    EndFileSizeSignal();
}

namespace {

/// A file of our own under a fixed name, or -1. Emptied only once it is known to be one.
int OpenTemporaryFile(const std::string& path, bool append)
{
    const int flags = O_WRONLY | O_CREAT | O_NOFOLLOW | (append ? O_APPEND : 0);
    const int file = Checked(OpenDescriptor(path, flags, 0600), [](const struct stat& status) {
        return IsOwnFile(status, FolderWriters::Others);
    });
    if (file != -1 && !append && ftruncate(file, 0) != 0)
        return Checked(file, [](const struct stat&) { return false; });
    return file;
}

bool BelongsToAnotherUser(const std::string& path)
{
    struct stat status;
    return lstat(path.c_str(), &status) == 0 && status.st_uid != geteuid();
}

/// "name.log" becomes "name-1000.log".
std::string NameOfUser(const std::string& path)
{
    const std::size_t dot = path.rfind('.');
    const std::size_t end = dot == std::string::npos || dot < path.rfind('/') + 1 ? path.size() : dot;
    return path.substr(0, end) + "-" + std::to_string(geteuid()) + path.substr(end);
}

} // namespace

std::FILE* OpenTemporaryStream(const std::string& path, const char* mode)
{
    const bool append = *mode == 'a';
    int file = OpenTemporaryFile(path, append);
    if (file == -1 && BelongsToAnotherUser(path))
        file = OpenTemporaryFile(NameOfUser(path), append);
    return file == -1 ? nullptr : StreamOf(file, mode);
}

std::FILE* OpenForReading(const std::string& path)
{
    const int file = Checked(OpenDescriptor(path, O_RDONLY),
                             [](const struct stat& status) { return S_ISREG(status.st_mode); });
    return file == -1 ? nullptr : StreamOf(file, "r");
}

} // namespace marvane::platform
