#include "platform/whole_path.h"

namespace marvane::platform {

namespace fs = std::filesystem;

namespace {

bool IsSeparator(fs::path::value_type character)
{
    return character == '\\' || character == '/';
}

/// Whether a path is one of a share although the standard library sees none.
bool IsUnknownShare(const fs::path& path)
{
    const fs::path::string_type& text = path.native();
    return fs::path::preferred_separator != '/' && !path.has_root_name() && text.size() > 2 &&
           IsSeparator(text[0]) && IsSeparator(text[1]);
}

/// The part after the two separators is normalised alone.
fs::path WholeShare(const fs::path& path)
{
    const fs::path::string_type start(2, fs::path::preferred_separator);
    return start + fs::path(path.native().substr(2)).lexically_normal().make_preferred().native();
}

} // namespace

fs::path WholePath(const fs::path& path)
{
    if (IsUnknownShare(path))
        return WholeShare(path);
    std::error_code failed;
    const fs::path whole = fs::absolute(path, failed);
    return (failed ? path : whole).lexically_normal();
}

fs::path ResolvedPath(const fs::path& path)
{
    if (IsUnknownShare(path))
        return WholeShare(path);
    std::error_code failed;
    const fs::path resolved = fs::weakly_canonical(fs::absolute(path, failed), failed);
    return failed ? WholePath(path) : resolved;
}

fs::path FollowedPath(const fs::path& path, std::error_code& failed)
{
    failed.clear();
    return IsUnknownShare(path) ? WholeShare(path) : fs::canonical(path, failed);
}

} // namespace marvane::platform
