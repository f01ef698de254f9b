#include "tool/setup/install.h"

#include <algorithm>
#include <map>

#include "config/paths.h"
#include "platform/child_process.h"
#include "platform/files.h"
#include "platform/library.h"
#include "platform/narrow_text.h"
#include "platform/replace_file.h"
#include "tool/setup/check.h"
#include "tool/setup/delivered_library.h"
#include "tool/setup/file_changes.h"
#include "tool/setup/file_uri.h"
#include "tool/setup/library_findings.h"
#include "tool/setup/library_look.h"
#include "tool/setup/root_sources.h"
#include "tool/setup/setup_files.h"

namespace marvane::tool {

namespace {

/// What is to be done for one entry.
struct EntryPlan
{
    std::size_t Root = 0;
    std::size_t Entry = 0;
    std::string Name;
    std::string Vendor;      ///< path of the vendor's library
    std::string Copy;        ///< path of the copy of the logger library
    std::string CopiedBytes; ///< bytes of the copy
    std::string Configuration;
    bool WritesRecord = true;
    bool WritesLibrary = true;
    bool WritesConfiguration = true;
    bool ChangesUri = true;
    InstalledCopy Record;
};

std::string Quoted(const std::string& name)
{
    return "\"" + name + "\"";
}

/// Bytes of the logger library for a machine type.
std::string LibraryFor(const std::string& from, Machine machine, const std::string& entry)
{
    if (auto bytes = DeliveredLibrary(from, machine))
        return std::move(*bytes);
    throw InstallRefused("entry " + Quoted(entry) + ": its library is " + MachineText(machine) +
                         ", and there is no " + MachineText(machine) + " " + platform::OwnLibraryName + " " +
                         (from.empty() ? "beside this command; name its folder with --from" : "in " + from));
}

std::string LogFolderByDefault(const std::string& entry)
{
    const std::string name = FolderName(entry);
    return platform::PathSeparator == '/' ? "%HOME%/.local/state/marvane/" + name + "/"
                                          : "%LOCALAPPDATA%\\Marvane\\logs\\" + name + "\\";
}

/// True for a folder that is missing, empty, left by a run that was interrupted before its record was there,
/// or left with a library that was in use when it was uninstalled.
bool HoldsNothingFinished(const std::string& folder)
{
    const std::vector<std::string> names = NamesIn(folder);
    return std::all_of(names.begin(), names.end(), [](const std::string& name) {
        return name.ends_with(platform::UnfinishedMark) || name.ends_with(OldMark);
    });
}

class Installer
{
public:
    explicit Installer(const InstallOptions& options) : options_(options) {}

    std::string Run()
    {
        roots_ = ReadRoots(options_.Roots);
        Select();
        CheckAll();
        if (options_.DryRun)
            return DryReport();
        return Perform();
    }

private:
    [[noreturn]] static void Refuse(const std::string& text) { throw InstallRefused(text); }

    // What is to be done.

    void Select()
    {
        if (roots_.empty())
            Refuse("this machine names no root description file; give one with --root FILE");
        for (std::size_t i = 0; i < roots_.size(); ++i) {
            if (!roots_[i].File)
                Refuse(roots_[i].Source.Path + " " + roots_[i].Fault);
            const std::vector<RootEntry>& entries = roots_[i].File->Entries;
            for (std::size_t k = 0; k < entries.size(); ++k)
                if (options_.Name.empty() || entries[k].ShortName == options_.Name)
                    SelectEntry(i, k);
        }
        if (plans_.empty())
            Refuse(options_.Name.empty()
                       ? "no entry that Marvane can be put in front of"
                       : "no entry " + Quoted(options_.Name) + "; 'marvane list' shows them");
    }

    void SelectEntry(std::size_t root, std::size_t index)
    {
        const RootFile& file = *roots_[root].File;
        const RootEntry& entry = file.Entries[index];
        const std::string what =
            "entry " + Quoted(entry.ShortName) + " in " + roots_[root].Source.Path + ": ";
        if (const std::string reason = ReasonNotToChange(file, entry); !reason.empty())
            Refuse(what + reason);
        const EntryLibrary library = LibraryOf(entry);
        if (library.Path.empty())
            Refuse(what + library.Fault);
        const LibraryLook look = LookAtLibrary(library.Path);
        if (!look.Facts)
            Refuse(what + library.Path + " " + LibrarySummary(look));
        if (!IsSupported(look.Facts->For))
            Refuse(what + library.Path + " is " + MachineText(look.Facts->For));
        if (roots_[root].Source.Width && *roots_[root].Source.Width != look.Facts->For)
            notes_ += "   note          " + library.Path + " is " + MachineText(look.Facts->For) +
                      ", but the registry names this file to other programs\n";
        look.Facts->IsMarvane ? PlanUpdate(root, index, library.Path, what) : PlanNew(root, index, look);
    }

    void PlanNew(std::size_t root, std::size_t index, const LibraryLook& vendor)
    {
        const RootEntry& entry = roots_[root].File->Entries[index];
        EntryPlan plan{root,        index, entry.ShortName,
                       vendor.Path, {},    LibraryFor(options_.From, vendor.Facts->For, entry.ShortName),
                       {},          true,  true,
                       true,        true,  {}};
        const std::string base =
            options_.To.empty()
                ? DefaultCopyFolder(vendor.Facts->For)
                : PathText(std::filesystem::absolute(FilePath(options_.To)).lexically_normal());
        plan.Record.Folder = FreeFolder(base, roots_[root].Source.Path, entry.ShortName);
        plan.Copy = plan.Record.Folder + platform::PathSeparator + platform::OwnLibraryName;
        plan.Record.Root = roots_[root].Source.Path;
        plan.Record.Entry = entry.ShortName;
        plan.Record.OldUri = entry.RawUri;
        plan.Record.NewUri = EscapeXmlAttribute(UriOfPath(plan.Copy, platform::PathSeparator), entry.Quote);
        FillRecord(plan);
        NewConfiguration values = options_.Configuration;
        values.InstalledPath = FolderOf(vendor.Path, platform::PathSeparator);
        values.TargetName = FileNameOf(vendor.Path);
        values.LogFolder = LogFolderFor(entry.ShortName);
        PlanConfiguration(plan, values);
        plan.WritesLibrary = ReadFileBytes(plan.Copy) != plan.CopiedBytes;
        plans_.push_back(std::move(plan));
    }

    static void FillRecord(EntryPlan& plan)
    {
        plan.Record.Installed = TimeNow();
        const auto facts = InspectBinary(plan.CopiedBytes);
        plan.Record.Version = facts && facts->Version ? VersionText(*facts->Version) : "unknown";
    }

    /// A copy that is there already keeps its configuration; only the library that it leads to is set again.
    void PlanConfiguration(EntryPlan& plan, const NewConfiguration& values)
    {
        const auto existing = ReadFileBytes(ConfigurationBeside(plan.Copy, platform::PathSeparator));
        try {
            if (existing)
                plan.Configuration = WithValue(WithValue(*existing, "InstalledPath", values.InstalledPath),
                                               "PDUAPILibDll", values.TargetName);
            else
                plan.Configuration = ConfigurationText(values, platform::PathSeparator);
        } catch (const RefusedValue& refused) {
            Refuse("entry " + Quoted(plan.Name) + ": its configuration can't be changed: " + refused.what());
        }
        plan.WritesConfiguration = existing != plan.Configuration;
    }

    /// The entry leads to a copy of ours: at most the library is newer.
    void PlanUpdate(std::size_t root, std::size_t index, const std::string& copy, const std::string& what)
    {
        std::optional<InstalledCopy> record = ReadRecord(ParentOf(copy));
        if (!record || record->Entry != roots_[root].File->Entries[index].ShortName)
            return options_.Name.empty()
                       ? void(notes_ += "   note          " + what +
                                        "leads to a Marvane that was not installed by this command\n")
                       : Refuse(what + "leads to a Marvane that was not installed by this command, " + copy);
        const LibraryLook look = LookAtLibrary(copy);
        EntryPlan plan;
        plan.Root = root;
        plan.Entry = index;
        plan.Name = record->Entry;
        plan.Copy = copy;
        plan.CopiedBytes = LibraryFor(options_.From, look.Facts->For, record->Entry);
        plan.WritesLibrary = ReadFileBytes(copy) != plan.CopiedBytes;
        plan.WritesRecord = plan.WritesLibrary;
        plan.WritesConfiguration = false;
        plan.ChangesUri = false;
        plan.Record = std::move(*record);
        FillRecord(plan);
        plan.Configuration = ReadFileBytes(ConfigurationBeside(copy, platform::PathSeparator)).value_or("");
        plans_.push_back(std::move(plan));
    }

    std::string LogFolderFor(const std::string& entry) const
    {
        if (!options_.LogFolder)
            return LogFolderByDefault(entry);
        const std::string folder = WholeFolder(*options_.LogFolder);
        // Each entry needs a log folder of its own.
        return options_.Name.empty() ? folder + FolderName(entry) + platform::PathSeparator : folder;
    }

    /// The folder of this entry from an earlier run, else one that nobody has.
    std::string FreeFolder(const std::string& base, const std::string& root, const std::string& entry) const
    {
        for (int number = 1;; ++number) {
            const std::string folder = base + platform::PathSeparator + FolderName(entry) +
                                       (number == 1 ? std::string() : "-" + std::to_string(number));
            const bool isTaken = std::any_of(plans_.begin(), plans_.end(), [&](const EntryPlan& plan) {
                return plan.Record.Folder == folder;
            });
            if (isTaken)
                continue;
            const auto record = ReadRecord(folder);
            if (record ? record->Entry == entry && IsSameFile(record->Root, root)
                       : HoldsNothingFinished(folder))
                return folder;
        }
    }

    // What has to hold before anything is written.

    void CheckAll()
    {
        std::map<std::size_t, std::vector<UriChange>> changes;
        for (const EntryPlan& plan : plans_)
            if (plan.ChangesUri)
                changes[plan.Root].push_back({plan.Entry, plan.Record.NewUri});
        for (const auto& [root, uris] : changes)
            CheckRoot(root, uris);
        for (const EntryPlan& plan : plans_)
            CheckPlan(plan);
    }

    void CheckRoot(std::size_t root, const std::vector<UriChange>& uris)
    {
        const std::string& path = roots_[root].Source.Path;
        std::error_code failed;
        targets_[root] = PathText(std::filesystem::canonical(FilePath(path), failed));
        if (failed)
            Refuse(path + ": " + failed.message());
        const std::string folder = ParentOf(targets_[root]);
        if (std::filesystem::is_symlink(FilePath(path)) && platform::OthersMayWriteInFolder(folder))
            Refuse(path + " is a link into a folder that every user may write to: " + folder);
        if (!platform::CanWriteInFolder(folder))
            Refuse(NeedsRights(folder));
        try {
            contents_[root] = WithUris(*roots_[root].File, uris);
        } catch (const XmlError& error) {
            Refuse(path + " " + error.what());
        }
    }

    static std::string NeedsRights(const std::string& folder)
    {
        return "this needs the right to write to " + folder + ": run it as administrator" +
               (platform::PathSeparator == '/' ? " (sudo)" : "");
    }

    void CheckPlan(const EntryPlan& plan)
    {
        const std::string folder = ExistingFolder(plan.Record.Folder);
        if ((plan.WritesLibrary || plan.WritesConfiguration || plan.WritesRecord) &&
            !platform::CanWriteInFolder(folder))
            Refuse(NeedsRights(folder));
        if (platform::OthersMayWriteInFolder(folder) && plan.WritesLibrary)
            notes_ += "   warning       every user may write to " + folder +
                      ", and so replace what the application loads\n";
        if (!plan.ChangesUri)
            return;
        const std::vector<std::string> missing = MissingFunctions(*LookAtLibrary(plan.Vendor).Facts);
        for (const std::string& name : missing)
            notes_ += "   note          " + plan.Vendor + " lacks " + name +
                      ": a call of it ends the application\n";
        const CheckReport report = CheckConfiguration(ParseConfiguration(plan.Configuration), plan.Copy,
                                                      InspectBinary(plan.CopiedBytes)->For);
        for (const CheckFinding& finding : report.All)
            if (finding.Level == FindingLevel::Error &&
                !(finding.Place == "target library" && !missing.empty()))
                Refuse("entry " + Quoted(plan.Name) + ": " + finding.Text);
    }

    // Doing it.

    std::string Perform()
    {
        FileChanges changes;
        std::string report;
        for (const EntryPlan& plan : plans_)
            WriteCopy(changes, plan);
        for (const EntryPlan& plan : plans_)
            TryChain(plan);
        for (const auto& [root, bytes] : contents_)
            WriteRoot(changes, root, bytes);
        changes.Keep();
        for (const EntryPlan& plan : plans_) {
            RemoveOldFiles(plan.Record.Folder);
            report += Report(plan);
        }
        RemoveLeftCopies(CopyFolders(options_.To));
        return report + notes_;
    }

    static void WriteCopy(FileChanges& changes, const EntryPlan& plan)
    {
        changes.MakeFolders(plan.Record.Folder);
        // The record first: whatever is interrupted later is known to be ours.
        if (plan.WritesRecord)
            Write(changes, plan.Record.Folder + platform::PathSeparator + RecordName,
                  RecordText(plan.Record));
        if (plan.WritesLibrary && IsFile(plan.Copy))
            changes.ReplaceInUse(plan.Copy, plan.CopiedBytes);
        else if (plan.WritesLibrary)
            changes.Create(plan.Copy, plan.CopiedBytes);
        if (plan.WritesConfiguration)
            Write(changes, ConfigurationBeside(plan.Copy, platform::PathSeparator), plan.Configuration);
    }

    static void Write(FileChanges& changes, const std::string& path, const std::string& bytes)
    {
        if (const auto old = ReadFileBytes(path))
            changes.Replace(path, *old, bytes);
        else
            changes.Create(path, bytes);
    }

    /// Loads the copy, then the vendor's library, as the application will.
    void TryChain(const EntryPlan& plan)
    {
        if (!options_.Loads || !plan.WritesLibrary)
            return;
        const Machine machine = InspectBinary(plan.CopiedBytes)->For;
        for (const std::string& path : {plan.Copy, plan.Vendor}) {
            if (path.empty())
                continue;
            const std::optional<std::string> failure = TryLoading(path, machine);
            if (!failure)
                notes_ += "   note          " + path + " was not tried: there is no " + MachineText(machine) +
                          " command to load it\n";
            else if (!failure->empty())
                Refuse("everything was taken back: " + path + " " + *failure);
        }
    }

    void WriteRoot(FileChanges& changes, std::size_t root, const std::string& bytes)
    {
        const RootFile& file = *roots_[root].File;
        const std::string& path = targets_[root];
        backups_[root] = path + ".marvane-" + StampNow() + ".bak";
        if (!IsFile(backups_[root]))
            changes.Create(backups_[root], file.Bytes);
        changes.Replace(path, file.Bytes, bytes);
    }

    // Words.

    std::string Report(const EntryPlan& plan) const
    {
        std::string report = plan.Name + "\n";
        const auto add = [&](std::string head, const std::string& text) {
            head.insert(0, 3, ' ');
            head.resize(17, ' ');
            report += head + text + "\n";
        };
        if (!plan.ChangesUri && !plan.WritesLibrary)
            add("unchanged", plan.Copy + " is installed already");
        if (plan.WritesLibrary)
            add(plan.ChangesUri ? "copied" : "updated", plan.Copy + "  " + plan.Record.Version);
        if (plan.WritesConfiguration)
            add("configured", ConfigurationBeside(plan.Copy, platform::PathSeparator));
        if (plan.ChangesUri) {
            add("changed", "LIBRARY_FILE of " + Quoted(plan.Name) + " in " + targets_.at(plan.Root));
            add("backup", backups_.at(plan.Root));
            add("target", plan.Vendor);
            const std::string logs = ParseConfiguration(plan.Configuration).Text("LogFileDir").Value;
            add("logs", logs);
            // Where the copies are elsewhere, the readers of logs do not find them by the entry.
            add("next",
                "restart the application, then: marvane talk " +
                    (options_.To.empty() ? "--entry " + plan.Name : LogFolder(logs, platform::ExpandUtf8)));
        }
        return report;
    }

    static std::string DiffLine(const std::string& bytes, std::size_t at, char mark)
    {
        const std::size_t before = bytes.rfind('\n', at);
        const std::size_t begin = before == std::string::npos ? 0 : before + 1;
        const std::size_t end = std::min(bytes.find_first_of("\r\n", at), bytes.size());
        return mark + bytes.substr(begin, end - begin) + "\n";
    }

    std::string DryReport() const
    {
        std::string report;
        for (const EntryPlan& plan : plans_) {
            if (plan.WritesLibrary)
                report += "would copy " + std::string(platform::OwnLibraryName) + " " + plan.Record.Version +
                          " to " + plan.Copy + "\n";
            if (plan.WritesConfiguration)
                report += "would write " + ConfigurationBeside(plan.Copy, platform::PathSeparator) + "\n";
        }
        for (const auto& [root, bytes] : contents_) {
            const XmlText before(roots_[root].File->Bytes);
            const RootFile after = ParseRootFile(bytes);
            report += "--- " + targets_.at(root) + "\n+++ " + targets_.at(root) + "\n";
            for (const EntryPlan& plan : plans_)
                if (plan.ChangesUri && plan.Root == root)
                    report += Difference(*roots_[root].File, after, plan.Entry);
        }
        return report.empty() ? "nothing to do\n" : report + notes_;
    }

    /// The changed line of both files. In UTF-8, whatever the encoding of the file.
    static std::string Difference(const RootFile& before, const RootFile& after, std::size_t entry)
    {
        const std::size_t at = before.Entries[entry].UriText.Begin;
        const std::string line = std::to_string(LineOf(before.Text.Utf8(), at));
        return "@@ -" + line + " +" + line + " @@\n" + DiffLine(before.Text.Utf8(), at, '-') +
               DiffLine(after.Text.Utf8(), after.Entries[entry].UriText.Begin, '+');
    }

    const InstallOptions& options_;
    std::vector<ReadRoot> roots_;
    std::vector<EntryPlan> plans_;
    std::map<std::size_t, std::string> targets_;  ///< root file without links
    std::map<std::size_t, std::string> contents_; ///< its new bytes
    std::map<std::size_t, std::string> backups_;
    std::string notes_;
};

} // namespace

std::string Install(const InstallOptions& options)
{
    return Installer(options).Run();
}

std::vector<std::string> CopyFolders(const std::string& to)
{
    if (to.empty())
        return DefaultCopyFolders();
    return {PathText(std::filesystem::absolute(FilePath(to)).lexically_normal())};
}

} // namespace marvane::tool
