#include "tool/setup/root_sources.h"

#include <algorithm>

#include "platform/files.h"
#include "platform/registry.h"
#include "tool/console/arguments.h"
#include "tool/setup/file_uri.h"
#include "tool/setup/setup_files.h"
#include "tool/setup/short_list.h"

namespace marvane::tool {

namespace {

constexpr const char* RegistryKey = "SOFTWARE\\D-PDU API";
constexpr const char* RegistryValue = "Root File";
constexpr const char* LinuxRootFile = "/etc/pdu_api_root.xml";

std::vector<RootSource> RegisteredSources()
{
    const auto wide =
        platform::MachineRegistryText(platform::RegistryView::Bits64, RegistryKey, RegistryValue);
    const auto narrow =
        platform::MachineRegistryText(platform::RegistryView::Bits32, RegistryKey, RegistryValue);
    const std::string origin = std::string("HKLM\\") + RegistryKey;
    if (wide && narrow && IsSameFile(*wide, *narrow))
        return {{*wide, origin + ", both views", std::nullopt}};
    std::vector<RootSource> sources;
    if (wide)
        sources.push_back({*wide, origin + ", 64-bit view", Machine::X64});
    if (narrow)
        sources.push_back({*narrow, origin + ", 32-bit view", Machine::X86});
    return sources;
}

} // namespace

std::vector<RootSource> RootSources(const std::vector<std::string>& given)
{
    std::vector<RootSource> sources;
    sources.reserve(given.size());
    for (const std::string& path : given)
        sources.push_back({WholePath(path), "--root", {}});
    if (!sources.empty())
        return sources;
    sources = RegisteredSources();
    if (platform::PathSeparator == '/' && IsFile(LinuxRootFile))
        sources.push_back({LinuxRootFile, "the standard place", {}});
    return sources;
}

std::vector<ReadRoot> ReadRoots(const std::vector<std::string>& given)
{
    std::vector<ReadRoot> roots;
    for (RootSource& source : RootSources(given)) {
        ReadRoot root{std::move(source), {}, {}};
        try {
            const auto bytes = ReadFileBytes(root.Source.Path, RootFileLimit);
            if (bytes)
                root.File = ParseRootFile(*bytes);
            else
                root.Fault =
                    IsFile(root.Source.Path) ? "can't be read, or is larger than 16 MB" : "does not exist";
        } catch (const XmlError& error) {
            root.Fault = error.what();
        }
        roots.push_back(std::move(root));
    }
    return roots;
}

namespace {

void RequireReadable(const ReadRoot& root)
{
    if (!root.File)
        throw Trouble(root.Source.Path + " " + root.Fault);
}

} // namespace

void RequireReadable(const std::vector<ReadRoot>& roots)
{
    for (const ReadRoot& root : roots)
        RequireReadable(root);
}

bool FindEntry(const std::vector<std::string>& given, const std::string& name,
               const std::function<bool(const RootSource&, const RootEntry&)>& isTaken)
{
    const std::vector<ReadRoot> roots = ReadRoots(given);
    if (!given.empty())
        RequireReadable(roots);
    for (const ReadRoot& root : roots) {
        RequireReadable(root);
        for (const RootEntry& entry : root.File->Entries)
            if (entry.ShortName == name && isTaken(root.Source, entry))
                return true;
    }
    return false;
}

std::string NoEntryText(const std::vector<ReadRoot>& roots, const std::string& name)
{
    std::vector<std::string> names;
    for (const ReadRoot& root : roots)
        if (root.File)
            for (const RootEntry& entry : root.File->Entries)
                if (const std::string quoted = "\"" + entry.ShortName + "\"";
                    std::find(names.begin(), names.end(), quoted) == names.end())
                    names.push_back(quoted);
    return "no entry \"" + name + "\"" +
           (roots.empty() ? ": " + NoRootText()
            : names.empty()
                ? ", nor any other, in " + roots.front().Source.Path
                : "; there " + std::string(names.size() == 1 ? "is " : "are ") + ShortList(names));
}

std::string NoRootText()
{
    return std::string("this machine names no root description file (") +
           (platform::PathSeparator == '/'
                ? std::string(LinuxRootFile) + " does not exist"
                : std::string("no value \"") + RegistryValue + "\" in HKLM\\" + RegistryKey) +
           "); give one with --root FILE";
}

EntryLibrary LibraryOf(const RootEntry& entry)
{
    if (!entry.HasUri)
        return {{}, "it has no LIBRARY_FILE with a URI"};
    if (!entry.Uri)
        return {{}, "its URI holds an entity other than the five predefined ones"};
    try {
        return {PathOfUri(*entry.Uri, platform::PathSeparator), {}};
    } catch (const UriError& error) {
        return {{}, "its URI \"" + *entry.Uri + "\" " + error.what()};
    }
}

std::string ModuleDescriptionOf(const RootEntry& entry)
{
    try {
        return entry.ModuleDescription ? PathOfUri(*entry.ModuleDescription, platform::PathSeparator)
                                       : std::string();
    } catch (const UriError&) {
        return {};
    }
}

} // namespace marvane::tool
