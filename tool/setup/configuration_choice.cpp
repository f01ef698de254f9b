#include "tool/setup/configuration_choice.h"

#include <algorithm>

#include "tool/console/arguments.h"
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

std::vector<std::string> ConfigurationsOfEntry(const std::vector<std::string>& roots, const std::string& name,
                                               const std::string& to)
{
    bool isEntry = false;
    std::vector<std::string> configurations;
    const auto addIfInUse = [&](const RootSource&, const RootEntry& entry) {
        isEntry = true;
        const LibraryLook look = LookAtLibrary(LibraryOf(entry).Path);
        if (!look.Facts || !look.Facts->IsMarvane)
            return false;
        const std::string configuration = ChainOf(look.Path).Configuration;
        if (std::find(configurations.begin(), configurations.end(), configuration) == configurations.end())
            configurations.push_back(configuration);
        return false; // the next one too
    };
    try {
        FindEntry(roots, name, addIfInUse);
    } catch (const Trouble&) {
        if (configurations.empty()) // Else it is the file of the other width, which is not needed.
            throw;
    }
    if (!configurations.empty())
        return configurations;
    if (std::string installed = InstalledConfiguration(roots, name, to); !installed.empty())
        return {installed};
    if (isEntry)
        throw Trouble("entry '" + name + "' does not lead to Marvane; 'marvane install' puts it there");
    throw Trouble(NoEntryText(ReadRoots(roots), name));
}

} // namespace marvane::tool
