// Small questions about files. Paths are UTF-8.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "platform/utf8_path.h"

namespace marvane::tool {

using platform::FilePath;
using platform::PathText;

/// The bytes of a regular file; none if it can't be read or has more than `limit`.
std::optional<std::string> ReadFileBytes(const std::string& path, std::size_t limit = std::size_t{512} << 20);

bool IsFile(const std::string& path);
bool IsFolder(const std::string& path);

/// The folder of a path without the separator at its end, and its file name.
std::string ParentOf(const std::string& path);
std::string FileNameOf(const std::string& path);

/// The nearest folder at or above a path that exists; empty if there is none.
std::string ExistingFolder(const std::string& path);

/// Whether two paths lead to the same file.
bool IsSameFile(const std::string& one, const std::string& other);

/// A path that a user has named, from its root on and in its normal form.
std::string WholePath(const std::string& named);
/// A folder that a user has named, as it belongs into a configuration: a whole path with its final separator.
/// One that begins with a reference to a variable stays as it is.
std::string WholeFolder(const std::string& named);

/// Names in a folder, sorted.
std::vector<std::string> NamesIn(const std::string& folder);

} // namespace marvane::tool
