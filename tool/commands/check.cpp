// `marvane check`: why there is no log, or not the expected one.
#include "tool/setup/check.h"

#include "config/paths.h"
#include "platform/child_process.h"
#include "platform/files.h"
#include "platform/library.h"
#include "tool/commands/entry_checks.h"
#include "tool/commands/finding_screen.h"
#include "tool/commands/setup_options.h"
#include "tool/commands/unreadable_roots.h"
#include "tool/console/arguments.h"
#include "tool/console/console.h"
#include "tool/console/json_text.h"
#include "tool/setup/root_sources.h"
#include "tool/setup/setup_files.h"

namespace marvane::tool {

namespace {

/// The copy of the logger library that goes with this command.
std::string OwnLibrary()
{
    return FolderOf(platform::ProgramPath(), platform::PathSeparator) + platform::OwnLibraryName;
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
