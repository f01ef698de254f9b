#include "tool/setup/configuration_choice.h"

#include "tool/commands/arguments.h"
#include "tool/setup/library_look.h"
#include "tool/setup/root_sources.h"

namespace marvane::tool {

std::string ConfigurationOfEntry(const std::vector<std::string>& roots, const std::string& name)
{
    for (const ReadRoot& root : ReadRoots(roots)) {
        if (!root.File)
            throw Trouble(root.Source.Path + " " + root.Fault);
        for (const RootEntry& entry : root.File->Entries) {
            if (entry.ShortName != name)
                continue;
            const LibraryLook look = LookAtLibrary(LibraryOf(entry).Path);
            if (!look.Facts || !look.Facts->IsMarvane)
                throw Trouble("entry '" + name +
                              "' does not lead to Marvane; 'marvane install' puts it there");
            return ChainOf(look.Path).Configuration;
        }
    }
    throw Trouble("no entry '" + name + "' in a root description file; 'marvane list' shows them");
}

} // namespace marvane::tool
