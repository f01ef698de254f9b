#include "tool/setup/setup_files.h"

#include <algorithm>
#include <fstream>

#include "platform/files.h"
#include "platform/whole_path.h"

namespace marvane::tool {

namespace fs = std::filesystem;

std::optional<std::string> ReadFileBytes(const std::string& path, std::size_t limit)
{
    std::error_code failed;
    const std::uintmax_t size = fs::file_size(FilePath(path), failed);
    if (failed || size > limit || !IsFile(path))
        return std::nullopt;
    std::ifstream file(FilePath(path), std::ios::binary);
    std::string bytes(static_cast<std::size_t>(size), '\0');
    file.read(bytes.data(), static_cast<std::streamsize>(size));
    bytes.resize(static_cast<std::size_t>(file.gcount())); // it may have become shorter
    if (!file.is_open() || file.bad())
        return std::nullopt;
    return bytes;
}

bool IsFile(const std::string& path)
{
    std::error_code failed;
    return fs::is_regular_file(FilePath(path), failed);
}

bool IsFolder(const std::string& path)
{
    std::error_code failed;
    return fs::is_directory(FilePath(path), failed);
}

std::string ParentOf(const std::string& path)
{
    return PathText(FilePath(path).parent_path());
}

std::string FileNameOf(const std::string& path)
{
    return PathText(FilePath(path).filename());
}

namespace {

/// Whether a path is above the root of a share: "\\\\server" is no folder.
bool IsAboveShare(const std::string& path)
{
    return platform::PathSeparator == '\\' && path.starts_with("\\\\") &&
           path.find('\\', 2) == std::string::npos;
}

} // namespace

std::string ExistingFolder(const std::string& path)
{
    for (fs::path folder = FilePath(path); !folder.empty(); folder = folder.parent_path()) {
        if (IsAboveShare(PathText(folder)))
            break;
        if (IsFolder(PathText(folder)))
            return PathText(folder);
        if (folder == folder.parent_path())
            break;
    }
    return {};
}

bool IsSameFile(const std::string& one, const std::string& other)
{
    std::error_code failed;
    return one == other || fs::equivalent(FilePath(one), FilePath(other), failed);
}

std::string WholePath(const std::string& named)
{
    return PathText(platform::WholePath(FilePath(named)));
}

std::string WholeFolder(const std::string& named)
{
    std::string folder =
        named.starts_with('%') ? named : PathText(platform::WholePath(FilePath(named)).make_preferred());
    if (!folder.ends_with(platform::PathSeparator))
        folder += platform::PathSeparator;
    return folder;
}

std::vector<std::string> NamesIn(const std::string& folder)
{
    std::vector<std::string> names;
    std::error_code failed;
    for (fs::directory_iterator at(FilePath(folder), failed); !failed && at != fs::directory_iterator();
         at.increment(failed))
        names.push_back(PathText(at->path().filename()));
    std::sort(names.begin(), names.end());
    return names;
}

} // namespace marvane::tool
