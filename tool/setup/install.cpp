#include "tool/setup/install.h"

#include <algorithm>
#include <map>

#include "config/paths.h"
#include "platform/files.h"
#include "platform/library.h"
#include "platform/narrow_text.h"
#include "tool/setup/configuration.h"
#include "tool/setup/file_changes.h"
#include "tool/setup/install_plan.h"
#include "tool/setup/library_findings.h"
#include "tool/setup/setup_files.h"

namespace marvane::tool {

namespace {

class Installer
{
public:
    explicit Installer(const InstallOptions& options) : options_(options), plan_(PlanInstall(options)) {}

    std::string Run() { return options_.DryRun ? DryReport() : Perform(); }

private:
    std::string Perform()
    {
        FileChanges changes;
        std::string report;
        for (const EntryPlan& plan : plan_.Entries)
            WriteCopy(changes, plan);
        for (const EntryPlan& plan : plan_.Entries)
            TryChain(plan);
        for (const auto& [root, change] : plan_.Changes)
            WriteRoot(changes, root, change);
        changes.Keep();
        for (const EntryPlan& plan : plan_.Entries) {
            RemoveOldFiles(plan.Record.Folder);
            report += Report(plan);
        }
        RemoveLeftCopies(CopyFolders(options_.To));
        return report + plan_.Notes;
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
                plan_.Notes += "   note          " + path + " was not tried: there is no " +
                               MachineText(machine) + " command to load it\n";
            else if (!failure->empty())
                throw InstallRefused("everything was taken back: " + path + " " + *failure);
        }
    }

    void WriteRoot(FileChanges& changes, std::size_t root, const RootChange& change)
    {
        const RootFile& file = *plan_.Roots[root].File;
        const std::string& path = change.Target;
        backups_[root] = path + ".marvane-" + StampNow() + ".bak";
        if (!IsFile(backups_[root]))
            changes.Create(backups_[root], file.Bytes);
        changes.Replace(path, file.Bytes, change.Bytes);
    }

    // Words.
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
            add("changed",
                "LIBRARY_FILE of " + Quoted(plan.Name) + " in " + plan_.Changes.at(plan.Root).Target);
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
        for (const EntryPlan& plan : plan_.Entries) {
            if (plan.WritesLibrary)
                report += "would copy " + std::string(platform::OwnLibraryName) + " " + plan.Record.Version +
                          " to " + plan.Copy + "\n";
            if (plan.WritesConfiguration)
                report += "would write " + ConfigurationBeside(plan.Copy, platform::PathSeparator) + "\n";
        }
        for (const auto& [root, change] : plan_.Changes) {
            const XmlText before(plan_.Roots[root].File->Bytes);
            const RootFile after = ParseRootFile(change.Bytes);
            report += "--- " + change.Target + "\n+++ " + change.Target + "\n";
            for (const EntryPlan& plan : plan_.Entries)
                if (plan.ChangesUri && plan.Root == root)
                    report += Difference(*plan_.Roots[root].File, after, plan.Entry);
        }
        return report.empty() ? "nothing to do\n" : report + plan_.Notes;
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
    InstallPlan plan_;
    std::map<std::size_t, std::string> backups_; ///< by the index of the root description file
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
    return {WholePath(to)};
}

} // namespace marvane::tool
