#include "tool/setup/dependencies.h"

#include <algorithm>

#include "platform/files.h"
#include "platform/narrow_text.h"
#include "tool/setup/setup_files.h"

namespace marvane::tool {

namespace {

void AddParts(std::vector<std::string>& folders, const std::string& list, char mark)
{
    for (std::size_t at = 0; at <= list.size();) {
        const std::size_t end = std::min(list.find(mark, at), list.size());
        if (end > at)
            folders.push_back(list.substr(at, end - at));
        at = end + 1;
    }
}

std::vector<std::string> WindowsFolders(Machine machine)
{
    const std::string system = platform::ExpandUtf8("%SystemRoot%");
    std::vector<std::string> folders = {
        system + (machine != OwnMachine() && machine == Machine::X86 ? "\\SysWOW64" : "\\System32"), system};
    AddParts(folders, platform::Utf8Variable("PATH").value_or(""), ';');
    return folders;
}

std::vector<std::string> LinuxFolders(const LibraryLook& look)
{
    std::vector<std::string> folders;
    for (std::string paths : look.Facts->SearchPaths) {
        const std::string own = ParentOf(look.Path);
        for (const char* const origin : {"$ORIGIN", "${ORIGIN}"})
            for (std::size_t at = paths.find(origin); at != std::string::npos; at = paths.find(origin))
                paths.replace(at, std::string_view(origin).size(), own);
        AddParts(folders, paths, ':');
    }
    AddParts(folders, platform::Utf8Variable("LD_LIBRARY_PATH").value_or(""), ':');
    const bool is64 = look.Facts->For != Machine::X86;
    for (const char* const folder : {"/lib", "/usr/lib", "/usr/local/lib"}) {
        folders.emplace_back(folder);
        folders.push_back(std::string(folder) + (is64 ? "64" : "32"));
        folders.push_back(std::string(folder) + (is64 ? "/x86_64-linux-gnu" : "/i386-linux-gnu"));
    }
    return folders;
}

/// Names of Windows that the loader replaces by others.
bool IsVirtual(std::string name)
{
    std::transform(name.begin(), name.end(), name.begin(),
                   [](char c) { return static_cast<char>(c | 0x20); });
    return name.starts_with("api-ms-win-") || name.starts_with("ext-ms-");
}

} // namespace

std::vector<std::string> MissingDependencies(const LibraryLook& look)
{
    if (!look.Facts)
        return {};
    std::vector<std::string> folders =
        look.Facts->Format == BinaryFormat::Pe ? WindowsFolders(look.Facts->For) : LinuxFolders(look);
    folders.insert(folders.begin(), ParentOf(look.Path));
    std::vector<std::string> missing;
    for (const std::string& name : look.Facts->Needed) {
        const bool found = std::any_of(folders.begin(), folders.end(), [&](const std::string& folder) {
            return IsFile(folder + platform::PathSeparator + name);
        });
        if (!found && !IsVirtual(name))
            missing.push_back(name);
    }
    return missing;
}

} // namespace marvane::tool
