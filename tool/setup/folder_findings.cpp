#include "tool/setup/folder_findings.h"

#include "config/keys.h"
#include "config/paths.h"
#include "platform/files.h"
#include "platform/replace_file.h"
#include "tool/setup/setup_files.h"

namespace marvane::tool {

namespace {

std::string FreeSpace(const std::string& folder)
{
    std::error_code failed;
    const std::filesystem::space_info space = std::filesystem::space(FilePath(folder), failed);
    if (failed)
        return {};
    const std::uintmax_t megabytes = space.available >> 20;
    return ", " +
           (megabytes >= 10240 ? std::to_string(megabytes >> 10) + " GB"
                               : std::to_string(megabytes) + " MB") +
           " free";
}

bool IsScarce(const std::string& folder)
{
    std::error_code failed;
    const std::filesystem::space_info space = std::filesystem::space(FilePath(folder), failed);
    return !failed && space.available < (std::uintmax_t{100} << 20);
}

} // namespace

FolderCheck CheckLogFolder(const std::string& folder, std::size_t line)
{
    FolderCheck check;
    const auto add = [&](FindingLevel level, const std::string& text, std::size_t at = 0) {
        check.All.push_back({level, LogFileDirKey.Name, folder + "\n" + text, at});
        return check;
    };
    const std::string path = folder.substr(0, MadeFolderLimit);
    const std::string existing = ExistingFolder(std::filesystem::path(FilePath(path)).is_relative()
                                                    ? PathText(std::filesystem::absolute(FilePath(path)))
                                                    : path);
    if (existing.empty())
        return add(FindingLevel::Error, "can't be made: there is no such drive.", line);
    // A file where a folder is to be stops the making of those below it.
    for (const std::string& part : FoldersToMake(path, platform::PathSeparator))
        if (IsFile(part))
            return add(FindingLevel::Error, "can't be made: " + part + " is a file.", line);
    if (!platform::CanWriteInFolder(existing))
        return add(FindingLevel::Error,
                   IsFolder(path) ? "can't be written by this user."
                                  : "can't be made by this user: " + existing + " can't be written.",
                   line);
    check.IsUsable = true;
    add(FindingLevel::Ok,
        std::string(IsFolder(path) ? "can be written" : "does not exist yet and can be made") +
            FreeSpace(existing));
    if (IsScarce(existing))
        add(FindingLevel::Warning, "Less than 100 MB are free.");
    if (IsFolder(path) && platform::OthersMayWriteInFolder(path))
        add(FindingLevel::Warning, "Every user may write to this folder, and change or delete logs.");
    return check;
}

} // namespace marvane::tool
