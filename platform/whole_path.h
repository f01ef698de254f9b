// Whole paths, also of shares (\\server\share): the standard library of some Windows compilers knows none,
// and would take them for folders of the current drive.
#pragma once

#include <filesystem>
#include <system_error>

namespace marvane::platform {

/// The path from its root on, in its normal form.
std::filesystem::path WholePath(const std::filesystem::path& path);

/// The same, links followed where the system's library does so. Where the path can't be followed, its normal
/// form.
std::filesystem::path ResolvedPath(const std::filesystem::path& path);

/// The existing file that a path leads to, links followed, for writing to it. `failed` says if there is none.
/// On a share the path's normal form.
std::filesystem::path FollowedPath(const std::filesystem::path& path, std::error_code& failed);

} // namespace marvane::platform
