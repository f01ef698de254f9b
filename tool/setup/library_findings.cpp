#include "tool/setup/library_findings.h"

#include <algorithm>

#include "platform/child_process.h"
#include "platform/files.h"
#include "platform/replace_file.h"
#include "tool/console/nearest.h"
#include "tool/setup/dependencies.h"
#include "tool/setup/setup_files.h"

namespace marvane::tool {

namespace {

constexpr const char* Place = "target library";

CheckFinding About(FindingLevel level, const std::string& path, const std::string& text)
{
    return {level, Place, path + "\n" + text, 0};
}

std::string InLowerCase(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return text;
}

/// What may be meant by a path of no file: its folder, or a file of another case or a similar name in it.
std::string WhatIsThere(const std::string& path)
{
    const std::string folder = ParentOf(path);
    if (IsFolder(path))
        return "is a folder: the name of the library is missing.";
    if (!IsFolder(folder))
        return "does not exist; neither does its folder.";
    const std::vector<std::string> names = NamesIn(folder);
    const std::string wanted = FileNameOf(path);
    for (const std::string& name : names)
        if (name != wanted && InLowerCase(name) == InLowerCase(wanted))
            return "does not exist: upper and lower case matter. Write " + name + ".";
    const std::vector<std::string_view> known(names.begin(), names.end());
    if (const std::string_view near = Nearest(wanted, known); !near.empty())
        return "does not exist. Did you mean " + std::string(near) + "?";
    return "does not exist. Its folder is there.";
}

std::string Joined(const std::vector<std::string>& names)
{
    std::string text;
    for (const std::string& name : names)
        text += (text.empty() ? "" : ", ") + name;
    return text;
}

CheckFinding LacksFinding(const std::string& path, const std::vector<std::string>& missing)
{
    return About(FindingLevel::Error, path,
                 "lacks " + std::to_string(missing.size()) + " of 29 functions: " + Joined(missing) +
                     "\nA call of " + (missing.size() == 1 ? "it" : "one of them") +
                     " ends the application.");
}

bool IsOfOtherSystem(const BinaryFacts& facts)
{
    return (facts.Format == BinaryFormat::Pe) != (platform::PathSeparator == '\\');
}

/// A name without a folder: which file the system finds under it is known to the system alone.
LibraryCheck CheckBareName(const std::string& name, Machine wanted)
{
    LibraryCheck check;
    const std::optional<std::string> failure = TryLoading(name, wanted);
    check.IsUsable = failure && failure->empty();
    if (check.IsUsable)
        check.All.push_back(About(FindingLevel::Ok, name, "is found by the system's search"));
    else if (failure)
        check.All.push_back(
            About(FindingLevel::Error, name, "is not found by the system's search\n" + *failure));
    else
        check.All.push_back(
            About(FindingLevel::Note, name, "not loaded: there is no command here to try it"));
    return check;
}

/// What makes a library useless as target, without loading it; empty if nothing does.
std::string WhyNoTarget(const std::string& path, const LibraryLook& look, Machine wanted)
{
    if (!look.Exists)
        return WhatIsThere(path);
    if (!look.Facts)
        return "is no library.";
    if (look.Facts->IsMarvane)
        return "is Marvane itself. Write the vendor's library.";
    if (IsOfOtherSystem(*look.Facts))
        return "is a library of another system.";
    if (look.Facts->For != wanted)
        return std::string("is ") + MachineText(look.Facts->For) + "; Marvane and the application must be " +
               MachineText(look.Facts->For) + " too, and this Marvane is " + MachineText(wanted) + ".";
    if (MissingFunctions(*look.Facts).size() == 29)
        return "exports none of the 29 functions of the D-PDU API: another library is meant.";
    return {};
}

/// The system's reason why a library can't be loaded, with the libraries that it needs and that are missing.
std::string LoadFailureText(const std::string& reason, const LibraryLook& look)
{
    const std::vector<std::string> needed = MissingDependencies(look);
    return needed.empty() ? reason : reason + "\nNot found, but needed: " + Joined(needed);
}

/// What to know about a library that can be used. `isLoaded`: it was loaded to try it.
void AddRemarks(const std::string& path, const LibraryLook& look, Machine wanted, bool isLoaded,
                CheckFindings& all)
{
    if (!look.Facts->Version)
        all.push_back({FindingLevel::Note, Place,
                       "no version information: \"Failed to load\" in a log's header is harmless then", 0});
    if (!isLoaded)
        all.push_back(
            {FindingLevel::Note, Place,
             std::string("not loaded: there is no ") + MachineText(wanted) + " marvane here to try it", 0});
    if (platform::OthersMayWriteInFolder(ParentOf(path)))
        all.push_back(
            {FindingLevel::Warning, Place, "Every user may write to its folder: " + ParentOf(path), 0});
}

} // namespace

LibraryCheck CheckTarget(const std::string& path, Machine wanted)
{
    if (path.find_first_of(platform::PathSeparator == '/' ? "/" : "/\\:") == std::string::npos)
        return CheckBareName(path, wanted);
    const LibraryLook look = LookAtLibrary(path);
    if (const std::string why = WhyNoTarget(path, look, wanted); !why.empty())
        return {.All = {About(FindingLevel::Error, path, why)}};
    const std::optional<std::string> failure = TryLoading(path, wanted);
    if (failure && !failure->empty())
        return {.All = {About(FindingLevel::Error, path, LoadFailureText(*failure, look))}};
    const std::vector<std::string> missing = MissingFunctions(*look.Facts);
    LibraryCheck check;
    check.IsUsable = true;
    check.LacksFunctions = !missing.empty();
    check.All.push_back(check.LacksFunctions ? LacksFinding(path, missing)
                                             : About(FindingLevel::Ok, path, LibrarySummary(look)));
    AddRemarks(path, look, wanted, failure.has_value(), check.All);
    return check;
}

std::optional<std::string> TryLoading(const std::string& path, Machine machine)
{
    // By its name and not simply this program: one that takes no commands would do something else.
    const std::filesystem::path own = FilePath(platform::ProgramPath());
    std::filesystem::path helper = own.parent_path();
    if (machine != OwnMachine())
        helper /= machine == Machine::X64 ? "x64" : "x86";
    helper /= "marvane";
    helper += own.extension();
    const std::string program = PathText(helper);
    if (!IsFile(program))
        return std::nullopt;
    const platform::ChildResult result = platform::RunChild({program, LoadHelperName, path});
    if (!result.Started)
        return std::nullopt;
    if (!result.Ended)
        return "ends the process that loads it (" + std::to_string(result.Status) + ").";
    if (result.Status == 0)
        return std::string();
    return result.Output.empty() ? "can't be loaded."
                                 : result.Output.substr(0, result.Output.find_last_not_of("\r\n") + 1);
}

} // namespace marvane::tool
