#include "config/paths.h"

#include "config/file_rules.h"

namespace marvane {

std::string ConfigurationBeside(std::string libraryPath, char separator)
{
    // Without a separator the whole path is replaced: not found is the largest number and wraps round to 0.
    libraryPath.replace(libraryPath.rfind(separator) + 1, std::string::npos, ConfigurationFileName);
    return libraryPath;
}

std::string FolderOf(const std::string& path, char separator)
{
    return path.substr(0, path.rfind(separator) + 1);
}

bool IsStandAlone(const std::string& installedPath)
{
    return installedPath == ".";
}

std::string JoinTargetPath(const std::string& folder, const std::string& fileName)
{
    std::string path = folder.substr(0, TargetPathLimit);
    path += fileName.substr(0, TargetPathLimit - path.size());
    return path;
}

std::string LogFolder(const std::string& value, const Expander& expand)
{
    return expand(expand(value)).substr(0, LogFolderLimit);
}

namespace {

/// Length of the "\\\\server\\share\\" that a path on a network begins with; 0 without one.
std::size_t ShareLength(const std::string& path)
{
    std::size_t length = path.starts_with("\\\\") ? 2 : 0;
    for (int name = 0; name < 2 && length != 0; ++name) {
        const std::size_t end = path.find('\\', length);
        length = end == std::string::npos ? path.size() : end + 1;
    }
    return length;
}

} // namespace

std::vector<std::string> FoldersToMake(const std::string& logFolder, char separator)
{
    const std::string path = logFolder.substr(0, MadeFolderLimit);
    std::vector<std::string> folders;
    for (std::size_t start = separator == '\\' ? ShareLength(path) : 0; start < path.size();) {
        std::size_t end = path.find(separator, start);
        if (end == std::string::npos)
            end = path.size();
        folders.push_back(path.substr(0, end));
        start = end + 1;
    }
    return folders;
}

} // namespace marvane
