// File descriptors as all files of this layer get them.
#pragma once

#include <string>
#include <sys/stat.h>

namespace marvane::platform {

/// Opens a path, close-on-exec, and returns its descriptor, or -1 with errno set. Never blocks at a FIFO, and
/// never returns 0 to 2: an application that closed its standard streams would write into the file by printf.
int OpenDescriptor(const std::string& path, int flags, mode_t permissions = 0);

/// Who may change the entries of a folder.
enum class FolderWriters
{
    OwnUser, ///< and the superuser
    Others
};

/// The writers of the folder that holds a path.
FolderWriters WritersOfParent(const std::string& path);
FolderWriters WritersOf(const struct stat& folder);

/// Whether a file may be written to: a regular file and, where others write to the folder, one of our own
/// user with no other name. Elsewhere another user's file or name may be reached under a name that we use.
bool IsOwnFile(const struct stat& file, FolderWriters writers);

} // namespace marvane::platform
