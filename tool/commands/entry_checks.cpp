#include "tool/commands/entry_checks.h"

#include <algorithm>
#include <optional>

#include "platform/files.h"
#include "tool/console/arguments.h"
#include "tool/setup/installed_state.h"
#include "tool/setup/root_sources.h"
#include "tool/setup/setup_files.h"
#include "tool/setup/surrounding_findings.h"

namespace marvane::tool {

namespace {

/// An entry that leads to Marvane, with a finding that says where it is.
CheckReport CheckEntry(const ReadRoot& root, const RootEntry& entry, const std::string& library)
{
    CheckReport report = CheckChain(library, std::nullopt);
    report.Title = entry.ShortName;
    Append(report.All, SpellingFindings(entry));
    Append(report.All, OldProcessFindings(library, ChainOf(library).Target));
    report.All.insert(report.All.begin() + 1, {FindingLevel::Ok, "root file",
                                               root.Source.Path + " (" + root.Source.Origin + ")\nentry \"" +
                                                   entry.ShortName + "\" leads to Marvane",
                                               0});
    return report;
}

/// An entry that does not lead to Marvane: calls work, and nothing is logged.
CheckReport CheckForeignEntry(const ReadRoot& root, const RootEntry& entry, const std::string& library)
{
    CheckReport report = CheckLibrary(library);
    report.Title = entry.ShortName;
    report.All.insert(
        report.All.begin(),
        {FindingLevel::Warning, "root file",
         root.Source.Path + "\nentry \"" + entry.ShortName +
             "\" leads to the vendor's library: Marvane is not called. Run \"marvane install\".",
         0});
    report.HasOutcome = true;
    report.Result = HasErrors(report.All) ? CheckOutcome::NotConstructed : CheckOutcome::NoLog;
    return report;
}

bool IsMarvane(const std::string& library)
{
    const LibraryLook look = LookAtLibrary(library);
    return look.Facts && look.Facts->IsMarvane;
}

/// The given root description files, else those of the machine and those that copies were installed into.
std::vector<ReadRoot> RootsToCheck(const std::vector<std::string>& given,
                                   const std::vector<InstalledCopy>& copies)
{
    std::vector<ReadRoot> roots = ReadRoots(given);
    for (const InstalledCopy& copy : copies) {
        const bool isKnown = std::any_of(roots.begin(), roots.end(), [&](const ReadRoot& root) {
            return IsSameFile(root.Source.Path, copy.Root);
        });
        for (ReadRoot& root : isKnown ? std::vector<ReadRoot>() : ReadRoots({copy.Root})) {
            root.Source.Origin = "installed into it";
            roots.push_back(std::move(root));
        }
    }
    return roots;
}

/// A copy that its root description file no longer leads to.
CheckReport CheckRemoved(const InstalledCopy& copy, const std::string& trouble)
{
    CheckReport report = CheckChain(LibraryOfCopy(copy), std::nullopt);
    report.Title = copy.Entry;
    report.Result = CheckOutcome::NoLog;
    report.All.insert(report.All.begin() + 1,
                      {FindingLevel::Warning, "root file",
                       copy.Root + "\n" + trouble + "\nMarvane is not called. Run \"marvane install\" again.",
                       0});
    return report;
}

/// Whether an entry is the one that a copy was installed for.
bool IsOf(const InstalledCopy& copy, const ReadRoot& root, const RootEntry& entry)
{
    return copy.Entry == entry.ShortName && IsSameFile(copy.Root, root.Source.Path);
}

/// What an entry leads to; none without a name for one that never led to Marvane.
std::optional<CheckReport> CheckAny(const ReadRoot& root, const RootEntry& entry,
                                    const std::vector<InstalledCopy>& copies, bool isNamed)
{
    const EntryLibrary library = LibraryOf(entry);
    if (IsMarvane(library.Path))
        return CheckEntry(root, entry, library.Path);
    for (const InstalledCopy& copy : copies)
        if (IsOf(copy, root, entry))
            return CheckRemoved(copy, TroubleOf(copy));
    if (!isNamed)
        return std::nullopt;
    if (library.Path.empty())
        throw Trouble("entry '" + entry.ShortName + "' in " + root.Source.Path + ": " + library.Fault);
    return CheckForeignEntry(root, entry, library.Path);
}

/// Whether two log folders are one, whatever their spelling, and even if it does not exist yet.
bool IsSameFolder(const std::string& one, const std::string& other)
{
    const auto plain = [](const std::string& folder) { return (FilePath(folder) / "").lexically_normal(); };
    return plain(one) == plain(other) || IsSameFile(one, other);
}

} // namespace

std::vector<CheckReport> CheckEntries(const std::vector<std::string>& rootFiles, const std::string& name,
                                      const std::string& to)
{
    const std::vector<InstalledCopy> copies = InstalledInto(rootFiles, to);
    std::vector<CheckReport> reports;
    for (const ReadRoot& root : RootsToCheck(rootFiles, copies)) {
        if (!root.File) {
            CheckReport report;
            report.All.push_back({FindingLevel::Error, "root file", root.Source.Path + "\n" + root.Fault, 0});
            report.HasOutcome = false;
            reports.push_back(std::move(report));
            continue;
        }
        for (const RootEntry& entry : root.File->Entries)
            if (name.empty() || entry.ShortName == name)
                if (auto report = CheckAny(root, entry, copies, !name.empty()))
                    reports.push_back(std::move(*report));
    }
    // Those whose entry is gone altogether.
    for (const InstalledCopy& copy : copies) {
        const bool isReported = std::any_of(reports.begin(), reports.end(), [&](const CheckReport& report) {
            return report.Title == copy.Entry;
        });
        if (!isReported && (name.empty() || copy.Entry == name))
            reports.push_back(CheckRemoved(copy, TroubleOf(copy)));
    }
    return reports;
}

void AddSharedFolders(std::vector<CheckReport>& reports, const std::vector<CheckReport>& others)
{
    for (CheckReport& report : reports)
        for (const CheckReport& other : others)
            if (report.Marvane != other.Marvane && !report.LogFolder.empty() && !other.LogFolder.empty() &&
                IsSameFolder(report.LogFolder, other.LogFolder))
                report.All.push_back({FindingLevel::Warning, "LogFileDir",
                                      report.LogFolder + "\nis the log folder of entry \"" + other.Title +
                                          "\" too: their logs are mixed, and each deletes the other's.",
                                      0});
}

} // namespace marvane::tool
