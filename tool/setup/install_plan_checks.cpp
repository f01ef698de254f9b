#include "tool/setup/install_plan_checks.h"

#include <filesystem>
#include <system_error>

#include "platform/files.h"
#include "platform/library.h"
#include "platform/replace_file.h"
#include "platform/whole_path.h"
#include "tool/setup/check.h"
#include "tool/setup/library_look.h"
#include "tool/setup/root_file.h"
#include "tool/setup/setup_files.h"
#include "tool/setup/short_list.h"

namespace marvane::tool {

namespace {

[[noreturn]] void Refuse(const std::string& text)
{
    throw InstallRefused(text);
}

std::string NeedsRights(const std::string& folder)
{
    return "this needs the right to write to " + folder + ": run it as administrator" +
           (platform::PathSeparator == '/' ? " (sudo)" : "");
}

/// Makes the new bytes of a root description file.
void CheckRoot(InstallPlan& plan, std::size_t root, const std::vector<UriChange>& uris)
{
    const std::string& path = plan.Roots[root].Source.Path;
    std::error_code failed;
    plan.Changes[root].Target = PathText(platform::FollowedPath(FilePath(path), failed));
    if (failed)
        Refuse(path + ": " + failed.message());
    const std::string folder = ParentOf(plan.Changes[root].Target);
    if (std::filesystem::is_symlink(FilePath(path)) && platform::OthersMayWriteInFolder(folder))
        Refuse(path + " is a link into a folder that every user may write to: " + folder);
    if (!platform::CanWriteInFolder(folder))
        Refuse(NeedsRights(folder));
    try {
        plan.Changes[root].Bytes = WithUris(*plan.Roots[root].File, uris);
    } catch (const XmlError& error) {
        Refuse(path + " " + error.what());
    }
}

void CheckEntry(InstallPlan& whole, const EntryPlan& plan)
{
    const std::string folder = ExistingFolder(plan.Record.Folder);
    if ((plan.WritesLibrary || plan.WritesConfiguration || plan.WritesRecord) &&
        !platform::CanWriteInFolder(folder))
        Refuse(NeedsRights(folder));
    if (platform::OthersMayWriteInFolder(folder) && plan.WritesLibrary)
        whole.Notes += "   warning       every user may write to " + folder +
                       ", and so replace what the application loads\n";
    if (!plan.ChangesUri)
        return;
    const std::vector<std::string> missing = MissingFunctions(*LookAtLibrary(plan.Vendor).Facts);
    if (!missing.empty())
        whole.Notes += "   note          " + plan.Vendor + " lacks " + ShortList(missing) + ": a call of " +
                       (missing.size() == 1 ? "it" : "one of them") + " ends the application\n";
    const CheckReport report = CheckConfiguration(ParseConfiguration(plan.Configuration), plan.Copy,
                                                  InspectBinary(plan.CopiedBytes)->For);
    for (const CheckFinding& finding : report.All)
        if (finding.Level == FindingLevel::Error && !(finding.Place == "target library" && !missing.empty()))
            Refuse("entry " + Quoted(plan.Name) + ": " + finding.Text);
}

} // namespace

void CheckPlan(InstallPlan& plan)
{
    std::map<std::size_t, std::vector<UriChange>> changes;
    for (const EntryPlan& entry : plan.Entries)
        if (entry.ChangesUri)
            changes[entry.Root].push_back({entry.Entry, entry.Record.NewUri});
    for (const auto& [root, uris] : changes)
        CheckRoot(plan, root, uris);
    for (const EntryPlan& entry : plan.Entries)
        CheckEntry(plan, entry);
}

} // namespace marvane::tool
