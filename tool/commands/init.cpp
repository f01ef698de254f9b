// `marvane init`: a new configuration.
#include "platform/files.h"
#include "platform/replace_file.h"
#include "tool/commands/setup_options.h"
#include "tool/console/arguments.h"
#include "tool/console/console.h"
#include "tool/setup/configuration_text.h"
#include "tool/setup/library_look.h"
#include "tool/setup/root_sources.h"
#include "tool/setup/setup_files.h"

namespace marvane::tool {

namespace {

/// The vendor's library of an entry, whether or not Marvane is in front of it.
std::string LibraryOfEntry(const std::vector<std::string>& roots, const std::string& name)
{
    std::string library;
    const auto take = [&](const RootSource& root, const RootEntry& entry) {
        const EntryLibrary there = LibraryOf(entry);
        if (there.Path.empty())
            throw Trouble("entry '" + name + "' in " + root.Path + ": " + there.Fault);
        const LibraryLook look = LookAtLibrary(there.Path);
        library = look.Facts && look.Facts->IsMarvane ? ChainOf(look.Path).Target : look.Path;
        return true;
    };
    if (!FindEntry(roots, name, take))
        throw Trouble(NoEntryText(ReadRoots(roots), name));
    return library;
}

int RunInit(const Arguments& arguments, Console& console)
{
    const std::string path = arguments.Operands().front();
    const bool isWindows = platform::PathSeparator == '\\';
    NewConfiguration configuration;
    std::string library = arguments.Value("--library").value_or("");
    if (const auto entry = arguments.Value("--entry")) {
        if (!library.empty())
            throw UsageError("give --library or --entry, not both");
        library = LibraryOfEntry(arguments.Values("--root"), *entry);
    } else if (!library.empty())
        library = WholePath(library);
    configuration.InstalledPath = library.empty() ? "." : ParentOf(library) + platform::PathSeparator;
    configuration.TargetName =
        library.empty() ? (isWindows ? "VendorPDU.dll" : "libVendorPDU.so") : FileNameOf(library);
    configuration.LogFolder = WholeFolder(
        arguments.Value("--log-dir")
            .value_or(isWindows ? "%LOCALAPPDATA%\\Marvane\\logs\\" : "%HOME%/.local/state/marvane/"));
    configuration.Level = arguments.Value("--level").value_or("decoded");
    const std::string failure =
        platform::CreateNewFile(path, ConfigurationText(configuration, platform::PathSeparator));
    if (!failure.empty())
        throw Trouble(path + ": " + failure);
    console.Write("written: " + path + "\n");
    if (library.empty())
        console.Note("set InstalledPath and PDUAPILibDll to the library that Marvane stands in front of");
    return 0;
}

constexpr Option InitOptionList[] = {
    {"--library", "FILE", "The target library"},
    {"--entry", "NAME", "The target library is that of this entry of the root description file"},
    {"--log-dir", "FOLDER", "Folder of the logs"},
    {"--level", "LEVEL", "calls, arguments, decoded (the default) or full", LevelNames},
};
constexpr OptionGroup InitGroups[] = {{"What it says", InitOptionList}, RootOptions};
constexpr Example InitExamples[] = {
    {"init D_PDU_API_CFG.xml", "a configuration to fill in"},
    {"init D_PDU_API_CFG.xml --entry VendorPDU", "for the library of an entry"},
    {"init D_PDU_API_CFG.xml --library /opt/vendor/libpdu.so --log-dir /var/log/marvane/", "one that works"},
};

} // namespace

extern const Command InitCommand;
constinit const Command InitCommand = {
    .Name = "init",
    .Purpose = "Write a commented configuration",
    .Takes = {.Text = "FILE", .Least = 1, .Most = 1},
    .Description = "Never overwrites a file.",
    .Examples = InitExamples,
    .Groups = InitGroups,
    .Run = RunInit,
};

} // namespace marvane::tool
