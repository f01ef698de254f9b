#include "tool/setup/delivered_library.h"

#include "platform/child_process.h"
#include "platform/files.h"
#include "platform/library.h"
#include "tool/setup/library_look.h"
#include "tool/setup/setup_files.h"

namespace marvane::tool {

namespace {

/// Where the library of a machine type is delivered: the first of these places that has one. The command is
/// delivered above the folders of both widths and in each of them.
std::vector<std::string> LibraryPlaces(const std::string& from, Machine machine)
{
    const std::string width = machine == Machine::X64 ? "x64" : "x86";
    const std::string own = ParentOf(platform::ProgramPath());
    const std::string separator(1, platform::PathSeparator);
    if (!from.empty())
        return {from + separator + width, from};
    std::vector<std::string> places = {own + separator + width,
                                       ParentOf(own) + separator + "lib" + separator + "marvane",
                                       "/usr/lib/marvane", own, ParentOf(own) + separator + width};
    for (const char* const build : {"native", "windows", "native-x86", "windows-x86"})
        places.push_back(ParentOf(own) + separator + build);
    return places;
}

} // namespace

std::vector<std::string> DeliveredFolders(const std::string& from, Machine machine)
{
    std::vector<std::string> folders = LibraryPlaces(from, machine);
    std::erase_if(folders, [machine](const std::string& folder) {
        const LibraryLook look = LookAtLibrary(folder + platform::PathSeparator + platform::OwnLibraryName);
        return !look.Facts || !look.Facts->IsMarvane || look.Facts->For != machine;
    });
    return folders;
}

std::optional<std::string> DeliveredLibrary(const std::string& from, Machine machine)
{
    const std::vector<std::string> folders = DeliveredFolders(from, machine);
    if (folders.empty())
        return std::nullopt;
    return ReadFileBytes(folders.front() + platform::PathSeparator + platform::OwnLibraryName);
}

} // namespace marvane::tool
