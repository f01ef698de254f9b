#include "tool/setup/configuration_choice.h"

#include "tool/commands/arguments.h"
#include "tool/setup/installed_state.h"
#include "tool/setup/library_look.h"
#include "tool/setup/root_sources.h"

namespace marvane::tool {

namespace {

/// The configuration of the newest copy that was installed for an entry; empty if there is none.
std::string InstalledConfiguration(const std::vector<std::string>& roots, const std::string& name,
                                   const std::string& to)
{
    const InstalledCopy* newest = nullptr;
    const std::vector<InstalledCopy> copies = InstalledInto(roots, to);
    for (const InstalledCopy& copy : copies)
        if (copy.Entry == name && (!newest || copy.Installed > newest->Installed))
            newest = &copy;
    return newest ? ConfigurationOfCopy(*newest) : std::string();
}

} // namespace

std::string ConfigurationOfEntry(const std::vector<std::string>& roots, const std::string& name,
                                 const std::string& to)
{
    bool isEntry = false;
    std::string configuration;
    const auto isInUse = [&](const RootSource&, const RootEntry& entry) {
        isEntry = true;
        const LibraryLook look = LookAtLibrary(LibraryOf(entry).Path);
        const bool isMarvane = look.Facts && look.Facts->IsMarvane;
        if (isMarvane)
            configuration = ChainOf(look.Path).Configuration;
        return isMarvane;
    };
    if (FindEntry(roots, name, isInUse))
        return configuration;
    if (std::string installed = InstalledConfiguration(roots, name, to); !installed.empty())
        return installed;
    if (isEntry)
        throw Trouble("entry '" + name + "' does not lead to Marvane; 'marvane install' puts it there");
    throw Trouble(NoEntryText(ReadRoots(roots), name));
}

} // namespace marvane::tool
