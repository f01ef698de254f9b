#include "tool/setup/library_look.h"

#include "config/paths.h"
#include "pdu/functions.h"
#include "platform/files.h"
#include "platform/narrow_text.h"
#include "tool/setup/configuration.h"
#include "tool/setup/setup_files.h"
#include "tool/setup/short_list.h"

namespace marvane::tool {

LibraryLook LookAtLibrary(const std::string& path)
{
    LibraryLook look{path, IsFile(path), {}};
    if (const auto bytes = look.Exists ? ReadFileBytes(path) : std::nullopt)
        look.Facts = InspectBinary(*bytes);
    if (look.Facts && !look.Facts->IsLibrary)
        look.Facts.reset();
    return look;
}

std::string LibrarySummary(const LibraryLook& look)
{
    if (!look.Exists)
        return "does not exist";
    if (!look.Facts)
        return "is no library";
    std::string summary = look.Facts->Version ? VersionText(*look.Facts->Version) + ", " : std::string();
    summary += MachineText(look.Facts->For);
    const std::vector<std::string> missing = MissingFunctions(*look.Facts);
    const std::size_t all = FunctionNames.size();
    summary += ", " + std::to_string(all - missing.size()) + " of " + std::to_string(all) + " functions";
    return summary + (missing.empty() ? "" : ", lacks " + ShortList(missing));
}

Chain ChainOf(const std::string& marvane)
{
    Chain chain;
    chain.Configuration = ConfigurationBeside(marvane, platform::PathSeparator);
    const Configuration configuration = ReadConfiguration(chain.Configuration);
    chain.HasConfiguration = configuration.Opened;
    const std::string name = platform::ExpandUtf8(configuration.Text("PDUAPILibDll").Value);
    const std::string folder = platform::ExpandUtf8(configuration.Text("InstalledPath").Value);
    if (!name.empty())
        chain.Target =
            JoinTargetPath(IsStandAlone(folder) ? FolderOf(marvane, platform::PathSeparator) : folder, name);
    return chain;
}

bool IsSupported(Machine machine)
{
    return machine == Machine::X64 || machine == Machine::X86;
}

Machine OwnMachine()
{
    return sizeof(void*) == 8 ? Machine::X64 : Machine::X86;
}

} // namespace marvane::tool
