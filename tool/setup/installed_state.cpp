#include "tool/setup/installed_state.h"

#include <algorithm>

#include "config/file_rules.h"
#include "platform/files.h"
#include "platform/library.h"
#include "tool/setup/install.h"
#include "tool/setup/root_file.h"
#include "tool/setup/root_sources.h"
#include "tool/setup/setup_files.h"

namespace marvane::tool {

std::vector<InstalledCopy> InstalledInto(const std::vector<std::string>& roots, const std::string& to)
{
    std::vector<InstalledCopy> copies = InstalledCopies(CopyFolders(to));
    std::erase_if(copies, [&](const InstalledCopy& copy) {
        return !roots.empty() && std::none_of(roots.begin(), roots.end(), [&](const std::string& root) {
            return IsSameFile(root, copy.Root);
        });
    });
    return copies;
}

namespace {

/// What somebody else's path in the root description file leads to.
std::string OtherPathText(const RootEntry& entry)
{
    const std::string library = LibraryOf(entry).Path;
    return "somebody put another path into the root description file: " + entry.Uri.value_or(entry.RawUri) +
           (library.empty() || IsFile(library) ? "" : ", where no file is");
}

} // namespace

std::string TroubleOf(const InstalledCopy& copy)
{
    const auto bytes = ReadFileBytes(copy.Root, RootFileLimit);
    if (!bytes)
        return "the root description file is gone: " + copy.Root;
    try {
        for (const RootEntry& entry : ParseRootFile(*bytes).Entries)
            if (entry.ShortName == copy.Entry)
                return entry.RawUri == copy.NewUri ? std::string() : OtherPathText(entry);
    } catch (const XmlError& error) {
        return copy.Root + " " + error.what();
    }
    return "the entry is gone from " + copy.Root;
}

std::string LibraryOfCopy(const InstalledCopy& copy)
{
    return copy.Folder + platform::PathSeparator + platform::OwnLibraryName;
}

std::string ConfigurationOfCopy(const InstalledCopy& copy)
{
    return copy.Folder + platform::PathSeparator + ConfigurationFileName;
}

} // namespace marvane::tool
