#include "tool/setup/install_plan.h"

#include <algorithm>

#include "config/paths.h"
#include "platform/files.h"
#include "platform/library.h"
#include "platform/replace_file.h"
#include "platform/whole_path.h"
#include "tool/setup/configuration.h"
#include "tool/setup/delivered_library.h"
#include "tool/setup/file_changes.h"
#include "tool/setup/file_uri.h"
#include "tool/setup/install_plan_checks.h"
#include "tool/setup/installed_state.h"
#include "tool/setup/library_look.h"
#include "tool/setup/setup_files.h"

namespace marvane::tool {

namespace {

/// Bytes of the logger library for a machine type.
std::string LibraryFor(const std::string& from, Machine machine, const std::string& entry)
{
    if (auto bytes = DeliveredLibrary(from, machine))
        return std::move(*bytes);
    throw InstallRefused("entry " + Quoted(entry) + ": its library is " + MachineText(machine) +
                         ", and there is no " + MachineText(machine) + " " + platform::OwnLibraryName + " " +
                         (from.empty() ? "beside this command; name its folder with --from" : "in " + from));
}

std::string LogFolderByDefault(const std::string& name)
{
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

class Planner
{
public:
    explicit Planner(const InstallOptions& options) : options_(options) {}

    InstallPlan Run()
    {
        plan_.Roots = ReadRoots(options_.Roots);
        Select();
        CheckPlan(plan_);
        return std::move(plan_);
    }

private:
    [[noreturn]] static void Refuse(const std::string& text) { throw InstallRefused(text); }

    // What is to be done.

    void Select()
    {
        if (plan_.Roots.empty())
            Refuse(NoRootText());
        for (std::size_t i = 0; i < plan_.Roots.size(); ++i) {
            if (!plan_.Roots[i].File)
                Refuse(plan_.Roots[i].Source.Path + " " + plan_.Roots[i].Fault);
            const std::vector<RootEntry>& entries = plan_.Roots[i].File->Entries;
            for (std::size_t k = 0; k < entries.size(); ++k)
                if (options_.Name.empty() || entries[k].ShortName == options_.Name)
                    SelectEntry(i, k);
        }
        if (plan_.Entries.empty())
            Refuse(options_.Name.empty() ? "no entry that Marvane can be put in front of"
                                         : NoEntryText(plan_.Roots, options_.Name));
    }

    void SelectEntry(std::size_t root, std::size_t index)
    {
        const RootFile& file = *plan_.Roots[root].File;
        const RootEntry& entry = file.Entries[index];
        const std::string what =
            "entry " + Quoted(entry.ShortName) + " in " + plan_.Roots[root].Source.Path + ": ";
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
        if (plan_.Roots[root].Source.Width && *plan_.Roots[root].Source.Width != look.Facts->For)
            plan_.Notes += "   note          " + library.Path + " is " + MachineText(look.Facts->For) +
                           ", but the registry names this file to other programs\n";
        look.Facts->IsMarvane ? PlanUpdate(root, index, library.Path, what) : PlanNew(root, index, look);
    }

    void PlanNew(std::size_t root, std::size_t index, const LibraryLook& vendor)
    {
        const RootEntry& entry = plan_.Roots[root].File->Entries[index];
        EntryPlan plan{root,        index, entry.ShortName,
                       vendor.Path, {},    LibraryFor(options_.From, vendor.Facts->For, entry.ShortName),
                       {},          true,  true,
                       true,        true,  {}};
        const std::string base =
            options_.To.empty() ? DefaultCopyFolder(vendor.Facts->For) : WholePath(options_.To);
        plan.Record.Folder = FreeFolder(base, plan_.Roots[root].Source.Path, entry.ShortName);
        plan.Copy = plan.Record.Folder + platform::PathSeparator + platform::OwnLibraryName;
        plan.Record.Root = plan_.Roots[root].Source.Path;
        plan.Record.Entry = entry.ShortName;
        plan.Record.OldUri = entry.RawUri;
        plan.Record.NewUri = EscapeXmlAttribute(UriOfPath(plan.Copy, platform::PathSeparator), entry.Quote);
        FillRecord(plan);
        NewConfiguration values = options_.Configuration;
        values.InstalledPath = FolderOf(vendor.Path, platform::PathSeparator);
        values.TargetName = FileNameOf(vendor.Path);
        values.LogFolder = LogFolderFor(plan.Record);
        PlanConfiguration(plan, values);
        plan.WritesLibrary = ReadFileBytes(plan.Copy) != plan.CopiedBytes;
        plan_.Entries.push_back(std::move(plan));
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
        if (!record || record->Entry != plan_.Roots[root].File->Entries[index].ShortName)
            return options_.Name.empty()
                       ? void(plan_.Notes += "   note          " + what +
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
        plan_.Entries.push_back(std::move(plan));
    }

    /// Each entry needs a log folder of its own, also if the root description files of both widths have
    /// entries of one name: in one folder they would delete each other's logs.
    std::string LogFolderFor(const InstalledCopy& record) const
    {
        const std::string given = options_.LogFolder ? WholeFolder(*options_.LogFolder) : std::string();
        if (options_.LogFolder && !options_.Name.empty() && CountOf(options_.Name) == 1)
            return given;
        for (int number = 1;; ++number) {
            const std::string name =
                FolderName(record.Entry) + (number == 1 ? std::string() : "-" + std::to_string(number));
            std::string folder =
                options_.LogFolder ? given + name + platform::PathSeparator : LogFolderByDefault(name);
            if (!HasOtherLogs(folder, record.Folder))
                return folder;
        }
    }

    /// How many entries have that name.
    std::size_t CountOf(const std::string& name) const
    {
        std::size_t count = 0;
        for (const ReadRoot& root : plan_.Roots)
            if (root.File)
                count += static_cast<std::size_t>(
                    std::count_if(root.File->Entries.begin(), root.File->Entries.end(),
                                  [&](const RootEntry& entry) { return entry.ShortName == name; }));
        return count;
    }

    /// Whether a copy other than the one in `copy`, planned or installed, has this log folder.
    bool HasOtherLogs(const std::string& folder, const std::string& copy) const
    {
        const auto names = [&](const Configuration& configuration) {
            return configuration.Text("LogFileDir").Value == folder;
        };
        for (const EntryPlan& plan : plan_.Entries)
            if (plan.Record.Folder != copy && names(ParseConfiguration(plan.Configuration)))
                return true;
        for (const InstalledCopy& other : InstalledCopies(CopyFolders(options_.To)))
            if (other.Folder != copy && names(ReadConfiguration(ConfigurationOfCopy(other))))
                return true;
        return false;
    }

    /// The folder of this entry from an earlier run, else one that nobody has.
    std::string FreeFolder(const std::string& base, const std::string& root, const std::string& entry) const
    {
        for (int number = 1;; ++number) {
            const std::string folder = base + platform::PathSeparator + FolderName(entry) +
                                       (number == 1 ? std::string() : "-" + std::to_string(number));
            const bool isTaken =
                std::any_of(plan_.Entries.begin(), plan_.Entries.end(),
                            [&](const EntryPlan& plan) { return plan.Record.Folder == folder; });
            if (isTaken)
                continue;
            const auto record = ReadRecord(folder);
            if (record ? record->Entry == entry && IsSameFile(record->Root, root)
                       : HoldsNothingFinished(folder))
                return folder;
        }
    }

    const InstallOptions& options_;
    InstallPlan plan_;
};

} // namespace

std::string Quoted(const std::string& name)
{
    return "\"" + name + "\"";
}

InstallPlan PlanInstall(const InstallOptions& options)
{
    return Planner(options).Run();
}

} // namespace marvane::tool
