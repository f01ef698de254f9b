#include "platform/files.h"

#include <algorithm>
#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <fnmatch.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

namespace marvane::platform {

const char PathSeparator = '/';

namespace {

std::FILE* OpenStream(const std::string& path, const char* mode, int flags, mode_t permissions)
{
    const int descriptor = open(path.c_str(), flags | O_CLOEXEC, permissions);
    if (descriptor == -1)
        return nullptr;
    std::FILE* const stream = fdopen(descriptor, mode);
    if (!stream)
        close(descriptor);
    return stream;
}

} // namespace

bool PathExists(const std::string& path)
{
    // The root: what stands in front of the first separator of an absolute path.
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
    DIR* const directory = opendir(folder.c_str());
    if (!directory)
        return std::nullopt;
    bool matched = false;
    std::vector<std::string> files;
    while (const dirent* entry = readdir(directory)) {
        if (fnmatch(name.c_str(), entry->d_name, FNM_NOESCAPE | FNM_PERIOD) != 0)
            continue;
        matched = true;
        struct stat status;
        if (fstatat(dirfd(directory), entry->d_name, &status, 0) == 0 && !S_ISDIR(status.st_mode))
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
    return open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0666);
}

std::size_t WriteToFile(File file, std::string_view first, std::string_view second)
{
    const std::size_t all = first.size() + second.size();
    while (!first.empty() || !second.empty()) {
        const iovec parts[] = {{const_cast<char*>(first.data()), first.size()},
                               {const_cast<char*>(second.data()), second.size()}};
        const iovec& sole = first.empty() ? parts[1] : parts[0];
        const ssize_t written = first.empty() || second.empty() ? write(file, sole.iov_base, sole.iov_len)
                                                                : writev(file, parts, 2);
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            break;
        const auto ofFirst = std::min(first.size(), static_cast<std::size_t>(written));
        first.remove_prefix(ofFirst);
        second.remove_prefix(static_cast<std::size_t>(written) - ofFirst);
    }
    return all - first.size() - second.size();
}

std::size_t SizeInFile(std::string_view text)
{
    return text.size();
}

std::uint64_t FileSize(File file)
{
    const off_t end = lseek(file, 0, SEEK_END);
    return end < 0 ? 0 : static_cast<std::uint64_t>(end);
}

void CloseFile(File file)
{
    close(file);
}

std::FILE* OpenTemporaryStream(const std::string& path, const char* mode)
{
    const int placement = *mode == 'a' ? O_APPEND : O_TRUNC;
    // Anybody may have put something there: not to wait at a pipe, O_NONBLOCK; files are the same with it.
    std::FILE* const stream =
        OpenStream(path, mode, O_WRONLY | O_CREAT | O_NOFOLLOW | O_NONBLOCK | placement, 0600);
    struct stat status;
    if (!stream || (fstat(fileno(stream), &status) == 0 && S_ISREG(status.st_mode)))
        return stream;
    std::fclose(stream);
    return nullptr;
}

std::FILE* OpenForReading(const std::string& path)
{
    return OpenStream(path, "r", O_RDONLY, 0);
}

} // namespace marvane::platform
