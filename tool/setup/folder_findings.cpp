#include "tool/setup/folder_findings.h"

#include "config/keys.h"
#include "config/paths.h"
#include "platform/files.h"
#include "platform/network_folder.h"
#include "platform/replace_file.h"
#include "tool/setup/setup_files.h"

namespace marvane::tool {

namespace {

constexpr std::uintmax_t LeastFree = std::uintmax_t{100} << 20;

std::string SpaceText(std::uintmax_t bytes)
{
    const std::uintmax_t megabytes = bytes >> 20;
    return megabytes >= 10240 ? std::to_string(megabytes >> 10) + " GB" : std::to_string(megabytes) + " MB";
}

/// What makes a log folder useless; empty if nothing does. `path` is the part of it that would be made, and
/// `existing` the nearest folder above it that exists, or itself.
std::string WhyNoLogFolder(const std::string& folder, const std::string& path, const std::string& existing)
{
    // The folder is made of fewer bytes than files are opened in.
    if (folder.size() > MadeFolderLimit && folder.back() != platform::PathSeparator && !IsFolder(folder))
        return "can't be used: its first 255 bytes would be made, and the log opened in its first 256.";
    if (existing.empty())
        return std::string("can't be made: there is no such ") +
               (path.starts_with("\\\\") ? "share." : "drive.");
    // A file where a folder is to be stops the making of those below it.
    for (const std::string& part : FoldersToMake(path, platform::PathSeparator))
        if (IsFile(part))
            return "can't be made: " + part + " is a file.";
    if (!platform::CanWriteInFolder(existing))
        return IsFolder(path) ? "can't be written by this user."
                              : "can't be made by this user: " + existing + " can't be written.";
    return {};
}

} // namespace

FolderFacts FactsOfFolder(const std::string& folder)
{
    return {.FreeBytes = platform::FreeBytes(folder), .IsOnNetwork = platform::IsOnNetwork(folder)};
}

FolderCheck CheckLogFolder(const std::string& folder, std::size_t line,
                           const std::function<FolderFacts(const std::string&)>& factsOf)
{
    FolderCheck check;
    const auto add = [&](FindingLevel level, const std::string& text, std::size_t at = 0) {
        check.All.push_back({level, LogFileDirKey.Name, folder + "\n" + text, at});
    };
    const std::string path = folder.substr(0, MadeFolderLimit);
    const std::string existing = ExistingFolder(WholePath(path));
    if (const std::string why = WhyNoLogFolder(folder, path, existing); !why.empty()) {
        add(FindingLevel::Error, why, line);
        return check;
    }
    check.IsUsable = true;
    const FolderFacts facts = factsOf(existing);
    const std::optional<std::uintmax_t> space = facts.FreeBytes;
    add(FindingLevel::Ok,
        std::string(IsFolder(path) ? "can be written" : "does not exist yet and can be made") +
            (space ? ", " + SpaceText(*space) + " free" : ""));
    if (space && *space < LeastFree)
        add(FindingLevel::Warning,
            "Only " + SpaceText(*space) + " are free: a log of some hours may fill the disk.");
    // The spelling of a share is a finding of its own.
    if (facts.IsOnNetwork && !path.starts_with("\\\\"))
        add(FindingLevel::Warning, "A folder on the network: each line of the log waits for it.", line);
    if (IsFolder(path) && platform::OthersMayWriteInFolder(path))
        add(FindingLevel::Warning, "Every user may write to this folder, and change or delete logs.");
    return check;
}

} // namespace marvane::tool
