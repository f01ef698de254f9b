#include "tool/input/default_logs.h"

#include "config/file_rules.h"
#include "config/keys.h"
#include "config/paths.h"
#include "platform/child_process.h"
#include "platform/files.h"
#include "platform/narrow_text.h"
#include "tool/console/arguments.h"
#include "tool/read/log_files.h"
#include "tool/setup/configuration.h"
#include "tool/setup/configuration_choice.h"
#include "tool/setup/installed_copy.h"
#include "tool/setup/installed_state.h"

namespace marvane::tool {

namespace {

std::string ConfigurationHere()
{
    if (const std::optional<std::string> named = platform::Utf8Variable(ConfigurationVariable))
        return *named;
    return ConfigurationBeside(platform::ProgramPath(), platform::PathSeparator);
}

/// The log folder of an entry that install made, wherever its root description file is, else of one that
/// leads to Marvane. Of several of that name, of 64 and 32 bits, the one with the newest log.
std::string LogFolderOfEntry(const std::string& name, const std::vector<std::string>& roots)
{
    std::vector<InstalledCopy> copies = InstalledInto(roots, "");
    std::erase_if(copies, [&](const InstalledCopy& copy) { return copy.Entry != name; });
    if (const auto newest = NewestLogFolder(copies))
        return *newest;
    const std::string configuration =
        copies.empty() ? ConfigurationsOfEntry(roots, name).front() : ConfigurationOfCopy(copies.back());
    const std::optional<std::string> folder = LogFolderOf(configuration);
    if (!folder || folder->empty())
        throw Trouble(configuration + " names no log folder in LogFileDir");
    return *folder;
}

} // namespace

std::optional<std::string> LogFolderOf(const std::string& configuration)
{
    const Configuration file = ReadConfiguration(configuration);
    if (!file.Opened)
        return std::nullopt;
    const std::string value = platform::Utf8FromNarrow(file.Text(std::string(LogFileDirKey.Name)).Value);
    return value.empty() ? value : LogFolder(value, platform::ExpandUtf8);
}

std::optional<std::string> NewestLogFolder(const std::vector<InstalledCopy>& copies)
{
    std::optional<std::string> newest;
    read::LogTime newestTime;
    for (const InstalledCopy& copy : copies) {
        const std::optional<std::string> folder =
            LogFolderOf(copy.Folder + platform::PathSeparator + ConfigurationFileName);
        const std::vector<read::LogFile> logs =
            folder ? read::FindLogFiles({*folder}).Files : std::vector<read::LogFile>();
        if (!logs.empty() && (!newest || logs.back().Begin.NameTime > newestTime)) {
            newest = folder;
            newestTime = logs.back().Begin.NameTime;
        }
    }
    return newest;
}

std::string DefaultLogFolder(const std::optional<std::string>& entry, const std::vector<std::string>& roots)
{
    if (entry)
        return LogFolderOfEntry(*entry, roots);
    const std::string configuration = ConfigurationHere();
    const std::optional<std::string> folder = LogFolderOf(configuration);
    if (folder && !folder->empty())
        return *folder;
    if (const auto newest = NewestLogFolder(InstalledCopies(DefaultCopyFolders())))
        return *newest;
    throw Trouble("no LOG given, and no log folder found: " + configuration +
                  (folder ? " names none in LogFileDir" : " is no configuration that can be read") +
                  ", and no installed entry has a log");
}

} // namespace marvane::tool
