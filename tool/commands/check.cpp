// `marvane check`: why there is no log, or not the expected one.
#include "tool/setup/check.h"

#include "config/paths.h"
#include "platform/child_process.h"
#include "platform/files.h"
#include "platform/library.h"
#include "tool/commands/finding_screen.h"
#include "tool/commands/setup_options.h"
#include "tool/commands/unreadable_roots.h"
#include "tool/console/arguments.h"
#include "tool/console/console.h"
#include "tool/console/json_text.h"
#include "tool/setup/installed_state.h"
#include "tool/setup/root_sources.h"
#include "tool/setup/setup_files.h"
#include "tool/setup/surrounding_findings.h"

namespace marvane::tool {

namespace {

/// The copy of the logger library that goes with this command.
std::string OwnLibrary()
{
    return FolderOf(platform::ProgramPath(), platform::PathSeparator) + platform::OwnLibraryName;
}

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

/// The copy beside the command, where no entry leads to any.
CheckReport CheckOwnCopy()
{
    CheckReport report = CheckChain(OwnLibrary(), std::nullopt);
    report.All.insert(report.All.begin(),
                      {FindingLevel::Note, "root file",
                       "no entry leads to Marvane: applications that look there load the vendor's library "
                       "(\"marvane install\" changes that). Checked is the copy beside this command.",
                       0});
    return report;
}

/// The entries of that name, or without one those that lead to Marvane or led to it.
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

/// Whether two log folders are one, whatever their spelling, and even if it does not exist yet.
bool IsSameFolder(const std::string& one, const std::string& other)
{
    const auto plain = [](const std::string& folder) { return (FilePath(folder) / "").lexically_normal(); };
    return plain(one) == plain(other) || IsSameFile(one, other);
}

/// Entries with one log folder mix their logs and delete each other's.
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

/// A bare name would be searched for elsewhere when it is loaded.
std::optional<std::string> FullPath(const std::optional<std::string>& path)
{
    if (!path)
        return std::nullopt;
    return WholePath(*path);
}

std::vector<CheckReport> Reports(const Arguments& arguments)
{
    const std::string name = arguments.Operands().empty() ? std::string() : arguments.Operands().front();
    const auto configuration = FullPath(arguments.Value("--config"));
    const auto library = FullPath(arguments.Value("--library"));
    if (!name.empty() + configuration.has_value() + library.has_value() > 1)
        throw UsageError("give a NAME, --config or --library, one of them");
    if (library)
        return {CheckLibrary(*library)};
    if (configuration) {
        const std::string beside =
            FolderOf(*configuration, platform::PathSeparator) + platform::OwnLibraryName;
        return {CheckChain(IsFile(beside) ? beside : OwnLibrary(), configuration)};
    }
    const std::vector<std::string>& roots = arguments.Values("--root");
    const std::string to = arguments.Value("--to").value_or("");
    std::vector<CheckReport> reports = CheckEntries(roots, name, to);
    if (reports.empty() && !name.empty())
        throw Trouble(NoEntryText(ReadRoots(roots), name));
    if (reports.empty())
        reports.push_back(CheckOwnCopy());
    AddSharedFolders(reports, name.empty() ? std::vector(reports) : CheckEntries(roots, "", to));
    return reports;
}

void Show(Console& console, const CheckReport& report)
{
    if (!report.Title.empty())
        console.Write(report.Title + "\n\n");
    for (const CheckFinding& finding : report.All)
        console.Write(ColouredFinding(console, finding));
    console.Write("\n" + CountedFindings(report.All) + "\n");
    if (report.HasOutcome)
        console.Write(OutcomeText(report) + "\n");
}

/// Whether what is checked is looked up in root description files.
bool UsesRoots(const Arguments& arguments)
{
    return !arguments.Has("--config") && !arguments.Has("--library");
}

int RunCheck(const Arguments& arguments, Console& console)
{
    const std::vector<CheckReport> reports = Reports(arguments);
    int status = 0;
    JsonArray json;
    for (const CheckReport& report : reports) {
        status = std::max(status, StatusOf(report));
        if (arguments.Has("--json"))
            json.AddRaw(ReportJson(report));
        else {
            if (&report != &reports.front())
                console.Write("\n");
            Show(console, report);
        }
    }
    if (arguments.Has("--json"))
        console.Write(JsonObject().Add("schema", "marvane.check/1").AddRaw("checked", json.Text()).Text() +
                      "\n");
    // One that the machine names is a finding alone.
    if (const std::vector<std::string>& given = arguments.Values("--root");
        !given.empty() && UsesRoots(arguments))
        ComplainOfUnreadable(ReadRoots(given), console);
    return status;
}

constexpr Option CheckOptionList[] = {
    {"--config", "FILE", "This configuration file, whoever uses it"},
    {"--library", "FILE", "This target library alone"},
};

constexpr Example Examples[] = {
    {"check", "every entry that leads to Marvane, else the configuration beside the command"},
    {"check VendorPDU", "one entry of the root description file"},
    {"check --config C:\\Marvane\\D_PDU_API_CFG.xml", "a configuration file"},
};

constexpr OptionGroup Groups[] = {{"What to check", CheckOptionList}, CopyOptions, RootOptions, JsonOptions};

} // namespace

extern const Command CheckCommand;
constinit const Command CheckCommand = {
    .Name = "check",
    .Purpose = "Explain why there is no log, or not the expected one",
    .Takes = {.Text = "[NAME]", .Most = 1, .AreFiles = false},
    .Description =
        "Reads the configuration exactly as the logger library does, without opening a log or making a file, and says "
        "line by line what counts and what does not; then looks at the log folder and loads the target library in a "
        "process of its own. X marks an error, ! a warning, -- a note. The last line says what the application will "
        "see.",
    .Examples = Examples,
    .Groups = Groups,
    .ExitStatus = "0 if nothing was found, 1 if there are errors or warnings, 2 for trouble or wrong usage",
    .Run = RunCheck,
};

} // namespace marvane::tool
