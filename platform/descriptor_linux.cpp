#include "platform/descriptor_linux.h"

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace marvane::platform {

namespace {

constexpr int FirstFree = STDERR_FILENO + 1;

int AboveStandardStreams(int descriptor)
{
    if (descriptor == -1 || descriptor >= FirstFree)
        return descriptor;
    const int moved = fcntl(descriptor, F_DUPFD_CLOEXEC, FirstFree);
    close(descriptor);
    return moved;
}

} // namespace

int OpenDescriptor(const std::string& path, int flags, mode_t permissions)
{
    for (;;) {
        // Regular files ignore O_NONBLOCK.
        const int descriptor = open(path.c_str(), flags | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, permissions);
        if (descriptor != -1 || errno != EINTR)
            return AboveStandardStreams(descriptor);
    }
}

FolderWriters WritersOf(const struct stat& folder)
{
    const bool ownersFolder = folder.st_uid == geteuid() || folder.st_uid == 0;
    return ownersFolder && (folder.st_mode & (S_IWGRP | S_IWOTH)) == 0 ? FolderWriters::OwnUser
                                                                       : FolderWriters::Others;
}

FolderWriters WritersOfParent(const std::string& path)
{
    const std::size_t slash = path.rfind('/');
    const std::string folder = slash == std::string::npos ? "." : path.substr(0, slash + 1);
    struct stat status;
    return stat(folder.c_str(), &status) == 0 ? WritersOf(status) : FolderWriters::Others;
}

bool IsOwnFile(const struct stat& file, FolderWriters writers)
{
    if (!S_ISREG(file.st_mode))
        return false;
    return writers == FolderWriters::OwnUser || (file.st_uid == geteuid() && file.st_nlink == 1);
}

} // namespace marvane::platform
