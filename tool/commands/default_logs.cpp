#include "tool/commands/default_logs.h"

#include <cstdio>
#include <memory>

#include "config/attribute_line.h"
#include "config/file_rules.h"
#include "config/keys.h"
#include "config/paths.h"
#include "platform/environment.h"
#include "platform/files.h"
#include "platform/library.h"
#include "tool/commands/arguments.h"
#include "tool/read/log_files.h"
#include "tool/setup/configuration_choice.h"
#include "tool/setup/installed_copy.h"

namespace marvane::tool {

namespace {

constexpr std::size_t LongestPath = 32768;

std::string ConfigurationHere()
{
    if (const std::optional<std::string> named = platform::EnvironmentVariable(ConfigurationVariable))
        return *named;
    return ConfigurationBeside(platform::OwnModulePath(LongestPath).Path, platform::PathSeparator);
}

/// The log folder of an entry that install made, wherever its root description file is, else of one that
/// leads to Marvane.
std::string LogFolderOfEntry(const std::string& name, const std::vector<std::string>& roots)
{
    std::string configuration;
    for (const InstalledCopy& copy : InstalledCopies(DefaultCopyFolders()))
        if (roots.empty() && copy.Entry == name)
            configuration = copy.Folder + platform::PathSeparator + ConfigurationFileName;
    if (configuration.empty())
        configuration = ConfigurationOfEntry(roots, name);
    const std::optional<std::string> folder = LogFolderOf(configuration);
    if (!folder || folder->empty())
        throw Trouble(configuration + " names no log folder in LogFileDir");
    return *folder;
}

} // namespace

std::optional<std::string> LogFolderOf(const std::string& configuration)
{
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(platform::OpenForReading(configuration),
                                                               std::fclose);
    if (!file)
        return std::nullopt;
    std::optional<std::string> folder;
    ConfigurationReader reader([&] { return std::fgetc(file.get()); });
    while (reader.Next() == ReadingStep::Body) {
        const AttributeLine line = ScanAttributeLine(reader.Line());
        if (line.Kind == LineKind::String && line.Name.Text == LogFileDirKey.Name)
            folder = LogFolder(line.Value.Text, platform::ExpandEnvironment);
    }
    return folder;
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
