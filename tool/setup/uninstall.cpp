#include <algorithm>

#include "config/paths.h"
#include "line/file_names.h"
#include "platform/files.h"
#include "platform/library.h"
#include "platform/narrow_text.h"
#include "platform/replace_file.h"
#include "platform/whole_path.h"
#include "tool/setup/configuration.h"
#include "tool/setup/file_changes.h"
#include "tool/setup/install.h"
#include "tool/setup/root_file.h"
#include "tool/setup/setup_files.h"

namespace marvane::tool {

namespace {

class Uninstaller
{
public:
    explicit Uninstaller(const UninstallOptions& options) : options_(options) {}

    std::string Run()
    {
        for (InstalledCopy& copy : InstalledCopies(CopyFolders(options_.To)))
            if (IsWanted(copy))
                copies_.push_back(std::move(copy));
        if (!options_.DryRun)
            for (const std::string& left : RemoveLeftCopies(CopyFolders(options_.To)))
                report_ += "   removed       " + left + ", left while an application still used it\n";
        if (copies_.empty() && !report_.empty())
            return report_;
        if (copies_.empty())
            throw InstallRefused(options_.Name.empty()
                                     ? "nothing is installed"
                                     : "nothing is installed for an entry \"" + options_.Name + "\"");
        for (const InstalledCopy& copy : copies_)
            for (const std::string& folder : {copy.Folder, ParentOf(copy.Root)})
                if (IsFolder(folder) && !platform::CanWriteInFolder(folder))
                    throw InstallRefused("this needs the right to write to " + folder +
                                         ": run it as administrator" +
                                         (platform::PathSeparator == '/' ? " (sudo)" : ""));
        for (const InstalledCopy& copy : copies_)
            Remove(copy);
        return report_;
    }

private:
    bool IsWanted(const InstalledCopy& copy) const
    {
        const bool isOfRoot =
            options_.Roots.empty() ||
            std::any_of(options_.Roots.begin(), options_.Roots.end(),
                        [&](const std::string& root) { return IsSameFile(root, copy.Root); });
        return isOfRoot && (options_.Name.empty() || copy.Entry == options_.Name);
    }

    void Add(std::string head, const std::string& text)
    {
        head.insert(0, 3, ' ');
        head.resize(17, ' ');
        report_ += head + text + "\n";
    }

    void Remove(const InstalledCopy& copy)
    {
        report_ += copy.Entry + "\n";
        Restore(copy);
        HandleLogs(copy);
        RemoveFiles(copy);
    }

    /// Puts the old value back, if ours is still there.
    void Restore(const InstalledCopy& copy)
    {
        if (!IsFile(copy.Root))
            return Add("note", copy.Root + " does not exist any more");
        const auto bytes = ReadFileBytes(copy.Root, RootFileLimit);
        if (!bytes)
            throw InstallRefused(copy.Root + " can't be read");
        std::error_code failed;
        const std::string target = PathText(platform::FollowedPath(FilePath(copy.Root), failed));
        if (failed)
            throw InstallRefused(copy.Root + ": " + failed.message());
        std::string restored;
        try {
            const RootFile file = ParseRootFile(*bytes);
            const auto entry =
                std::find_if(file.Entries.begin(), file.Entries.end(), [&](const RootEntry& candidate) {
                    return candidate.ShortName == copy.Entry && candidate.RawUri == copy.NewUri;
                });
            if (entry == file.Entries.end()) {
                if (!options_.DryRun)
                    RemoveBackups(target, *bytes);
                return Add("note",
                           copy.Root + " no longer leads to this copy: somebody put another path there");
            }
            const UriChange change[] = {
                {static_cast<std::size_t>(entry - file.Entries.begin()), copy.OldUri}};
            restored = WithUris(file, change);
        } catch (const XmlError& error) {
            throw InstallRefused(copy.Root + " " + error.what());
        }
        if (options_.DryRun)
            return Add("would change",
                       "LIBRARY_FILE of \"" + copy.Entry + "\" in " + target + " back to " + copy.OldUri);
        FileChanges changes;
        changes.Replace(target, *bytes, restored);
        changes.Keep();
        Add("restored", "LIBRARY_FILE of \"" + copy.Entry + "\" in " + target);
        RemoveBackups(target, restored);
    }

    void RemoveBackups(const std::string& root, const std::string& restored)
    {
        const std::string begin = FileNameOf(root) + ".marvane-";
        for (const std::string& name : NamesIn(ParentOf(root))) {
            if (!name.starts_with(begin) || !name.ends_with(".bak"))
                continue;
            const std::string path = ParentOf(root) + platform::PathSeparator + name;
            if (ReadFileBytes(path, RootFileLimit) == restored)
                platform::RemoveFile(path);
            else
                Add("kept", path + " differs from the file that is there now");
        }
    }

    /// Deletes the logs if that is wanted, else says where they stay.
    void HandleLogs(const InstalledCopy& copy)
    {
        const Configuration configuration =
            ReadConfiguration(copy.Folder + platform::PathSeparator + ConfigurationFileName);
        const std::string folder = LogFolder(configuration.Text("LogFileDir").Value, platform::ExpandUtf8);
        std::vector<std::string> names = NamesIn(folder);
        std::erase_if(names, [](const std::string& name) { return !ParseLogFileName(name); });
        const std::string what =
            std::to_string(names.size()) + (names.size() == 1 ? " log file in " : " log files in ") + folder;
        if (!options_.Logs) {
            if (!names.empty())
                Add(options_.DryRun ? "would keep" : "kept", what + " (--logs deletes them)");
            return;
        }
        Add(options_.DryRun ? "would delete" : "deleted", what);
        if (options_.DryRun)
            return;
        for (const std::string& name : names)
            platform::RemoveFile(folder + platform::PathSeparator + name);
        std::error_code notEmpty;
        std::filesystem::remove(FilePath(folder), notEmpty);
    }

    void RemoveFiles(const InstalledCopy& copy)
    {
        if (options_.DryRun)
            return Add("would remove", copy.Folder);
        const std::string base = copy.Folder + platform::PathSeparator;
        const std::string library = base + platform::OwnLibraryName;
        RemoveOldFiles(copy.Folder);
        RemoveOrRename(library);
        platform::RemoveFile(base + ConfigurationFileName);
        platform::RemoveFile(base + RecordName);
        for (const std::string& name : NamesIn(copy.Folder))
            if (name.ends_with(platform::UnfinishedMark))
                platform::RemoveFile(base + name);
        std::error_code notEmpty;
        std::filesystem::remove(FilePath(copy.Folder), notEmpty);
        if (!IsFolder(copy.Folder)) {
            Add("removed", copy.Folder);
            if (options_.To.empty())
                RemoveDefaultFolder(ParentOf(copy.Folder));
        } else if (HoldsOldFiles(copy.Folder))
            Add("kept", copy.Folder +
                            ": an application still uses the library there; the next install or uninstall "
                            "removes it");
        else
            Add("kept", copy.Folder + " holds other files");
    }

    /// The default folder of all copies, once it is empty; on Windows it is in a folder that is ours too.
    static void RemoveDefaultFolder(const std::string& folder)
    {
        std::error_code notEmpty;
        if (std::filesystem::remove(FilePath(folder), notEmpty) && FileNameOf(ParentOf(folder)) == "Marvane")
            std::filesystem::remove(FilePath(ParentOf(folder)), notEmpty);
    }

    static bool HoldsOldFiles(const std::string& folder)
    {
        const std::vector<std::string> names = NamesIn(folder);
        return std::any_of(names.begin(), names.end(),
                           [](const std::string& name) { return name.ends_with(OldMark); });
    }

    const UninstallOptions& options_;
    std::vector<InstalledCopy> copies_;
    std::string report_;
};

} // namespace

std::string Uninstall(const UninstallOptions& options)
{
    return Uninstaller(options).Run();
}

} // namespace marvane::tool
