// Changes of files that a power failure can't leave half done, and the rights that they need. Paths are UTF-8
// on Windows. A returned text is the system's reason of a failure; it is empty after success.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace marvane::platform {

/// What the name of a file ends with while its new contents are being written.
inline constexpr std::string_view UnfinishedMark = ".marvane-new";

/// Creates a file with these bytes and flushes it to the disk. Fails if something of that name exists; leaves
/// nothing behind then.
std::string CreateNewFile(const std::string& path, std::string_view bytes);

/// Gives an existing regular file new contents in one step: at every moment the old or the new file is there.
/// Owner, rights, access lists and extended attributes stay. `unchanged` is asked last before the step; if it
/// says false, nothing is changed and the text is "the file was changed by another program".
std::string ReplaceFileContents(const std::string& path, std::string_view bytes,
                                const std::function<bool()>& unchanged);

/// Renames a file within its folder, over another one that exists.
std::string RenameFile(const std::string& from, const std::string& to);

/// Whether files can be created in a folder. Creates none.
bool CanWriteInFolder(const std::string& folder);

/// Whether users other than the owner and administrators can create files in a folder.
bool OthersMayWriteInFolder(const std::string& folder);

} // namespace marvane::platform
