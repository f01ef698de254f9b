#include "platform/replace_file.h"

#include <cerrno>
#include <cstring>
#include <memory>
#include <optional>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace marvane::platform {

namespace {

std::string LastError()
{
    return std::strerror(errno);
}

std::string FolderOf(const std::string& path)
{
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? "." : path.substr(0, slash + 1);
}

class Descriptor
{
public:
    explicit Descriptor(int number) : number_(number) {}
    ~Descriptor()
    {
        if (number_ >= 0)
            close(number_);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    int Number() const { return number_; }

private:
    int number_;
};

bool WriteAll(int file, std::string_view bytes)
{
    while (!bytes.empty()) {
        const ssize_t written = write(file, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR)
            continue;
        if (written < 0)
            return false;
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

/// A rename survives a power failure once its folder is flushed.
void FlushFolder(const std::string& path)
{
    const Descriptor folder(open(FolderOf(path).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (folder.Number() >= 0)
        fsync(folder.Number());
}

/// Whether a file without this attribute grants other rights, or lacks what a user has noted on it. The
/// others belong to the system, which gives a new file its own.
bool MustBeKept(const std::string& attribute)
{
    return attribute == "system.posix_acl_access" || attribute.starts_with("user.");
}

/// Gives a file the extended attributes of another one, access lists among them. False if one that must be
/// kept can't be.
bool CopyAttributes(const std::string& from, int to)
{
    const Descriptor source(open(from.c_str(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC));
    const ssize_t size = source.Number() < 0 ? -1 : flistxattr(source.Number(), nullptr, 0);
    if (size <= 0)
        return true; // None, or a file system without them.
    std::vector<char> names(static_cast<std::size_t>(size));
    const ssize_t filled = flistxattr(source.Number(), names.data(), names.size());
    for (const char* name = names.data(); filled > 0 && name < names.data() + filled;
         name += std::strlen(name) + 1) {
        const ssize_t length = fgetxattr(source.Number(), name, nullptr, 0);
        std::vector<char> value(length > 0 ? static_cast<std::size_t>(length) : 0);
        const bool isRead =
            length >= 0 && fgetxattr(source.Number(), name, value.data(), value.size()) == length;
        if ((!isRead || fsetxattr(to, name, value.data(), value.size(), 0) != 0) && MustBeKept(name))
            return false;
    }
    return true;
}

/// A file whose owner, rights and attributes a new one takes over.
struct Model
{
    std::string Path;
    struct stat Status;
};

/// As CreateNewFile; with owner, mode and extended attributes of another file.
std::string Create(const std::string& path, std::string_view bytes, const std::optional<Model>& like)
{
    const mode_t mode = like ? like->Status.st_mode & 07777 : 0644;
    const Descriptor file(open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode));
    if (file.Number() < 0)
        return LastError();
    std::string failure;
    if (like && (fchown(file.Number(), like->Status.st_uid, like->Status.st_gid) != 0 ||
                 fchmod(file.Number(), mode) != 0 || !CopyAttributes(like->Path, file.Number())))
        failure = "owner and rights can't be kept: " + LastError();
    else if (!WriteAll(file.Number(), bytes) || fsync(file.Number()) != 0)
        failure = LastError();
    if (!failure.empty())
        unlink(path.c_str());
    return failure;
}

} // namespace

std::string CreateNewFile(const std::string& path, std::string_view bytes)
{
    const std::string failure = Create(path, bytes, std::nullopt);
    if (failure.empty())
        FlushFolder(path);
    return failure;
}

std::string ReplaceFileContents(const std::string& path, std::string_view bytes,
                                const std::function<bool()>& unchanged)
{
    struct stat old = {};
    if (lstat(path.c_str(), &old) != 0)
        return LastError();
    if (!S_ISREG(old.st_mode))
        return "not a regular file";
    // Left by a run that was interrupted.
    const std::string beside = std::string(path).append(UnfinishedMark);
    unlink(beside.c_str());
    std::string failure = Create(beside, bytes, Model{path, old});
    if (!failure.empty())
        return failure;
    const auto remove = [](const std::string* file) { unlink(file->c_str()); };
    const std::unique_ptr<const std::string, decltype(remove)> removed(&beside, remove);
    if (!unchanged())
        return "the file was changed by another program";
    if (rename(beside.c_str(), path.c_str()) != 0)
        return LastError();
    FlushFolder(path);
    return {};
}

std::string RenameFile(const std::string& from, const std::string& to)
{
    if (rename(from.c_str(), to.c_str()) != 0)
        return LastError();
    FlushFolder(to);
    return {};
}

bool CanWriteInFolder(const std::string& folder)
{
    return faccessat(AT_FDCWD, folder.c_str(), W_OK | X_OK, AT_EACCESS) == 0;
}

bool OthersMayWriteInFolder(const std::string& folder)
{
    struct stat status = {};
    return stat(folder.c_str(), &status) == 0 && (status.st_mode & S_IWOTH) != 0;
}

} // namespace marvane::platform
