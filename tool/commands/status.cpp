// `marvane status`: what is installed, whether it is still in effect, and what it has logged.
#include <algorithm>

#include "config/paths.h"
#include "platform/environment.h"
#include "platform/files.h"
#include "platform/library.h"
#include "tool/commands/arguments.h"
#include "tool/commands/console.h"
#include "tool/commands/json_text.h"
#include "tool/commands/setup_options.h"
#include "tool/read/log_files.h"
#include "tool/read/log_reader.h"
#include "tool/setup/configuration.h"
#include "tool/setup/configuration_text.h"
#include "tool/setup/install.h"
#include "tool/setup/library_look.h"
#include "tool/setup/root_sources.h"
#include "tool/setup/setup_files.h"

namespace marvane::tool {

namespace {

constexpr std::size_t MostSessions = 3;

/// A chain application -> Marvane -> library.
struct Installation
{
    std::string Entry;
    std::string Root;
    std::string Copy;      ///< path of the logger library
    std::string Trouble;   ///< why it is not in effect; empty if it is
    std::string Installed; ///< version by the record; empty for one that install did not make
};

/// What became of the root file since the installation; empty if it still leads there.
std::string TroubleOf(const InstalledCopy& copy)
{
    const auto bytes = ReadFileBytes(copy.Root, RootFileLimit);
    if (!bytes)
        return "the root description file is gone: " + copy.Root;
    try {
        for (const RootEntry& entry : ParseRootFile(*bytes).Entries)
            if (entry.ShortName == copy.Entry)
                return entry.RawUri == copy.NewUri
                           ? std::string()
                           : "somebody put another path into the root description file: " +
                                 entry.Uri.value_or(entry.RawUri);
    } catch (const XmlError& error) {
        return copy.Root + " " + error.what();
    }
    return "the entry is gone from " + copy.Root;
}

std::vector<Installation> Installations(const Arguments& arguments)
{
    std::vector<Installation> found;
    const std::vector<std::string>& roots = arguments.Values("--root");
    for (const InstalledCopy& copy : InstalledCopies(CopyFolders(arguments.Value("--to").value_or("")))) {
        const bool isWanted =
            roots.empty() || std::any_of(roots.begin(), roots.end(), [&](const std::string& root) {
                return IsSameFile(root, copy.Root);
            });
        if (isWanted)
            found.push_back({copy.Entry, copy.Root,
                             copy.Folder + platform::PathSeparator + platform::OwnLibraryName,
                             TroubleOf(copy), copy.Version});
    }
    // Those that were put there by hand, or into another folder.
    for (const ReadRoot& root : ReadRoots(roots))
        for (const RootEntry& entry : root.File ? root.File->Entries : std::vector<RootEntry>()) {
            const LibraryLook look = LookAtLibrary(LibraryOf(entry).Path);
            const bool isKnown = std::any_of(found.begin(), found.end(), [&](const Installation& other) {
                return IsSameFile(other.Copy, look.Path);
            });
            if (look.Facts && look.Facts->IsMarvane && !isKnown)
                found.push_back({entry.ShortName, root.Source.Path, look.Path, {}, {}});
        }
    return found;
}

std::string LevelText(const Configuration& configuration)
{
    const auto value = [&](NumericKey key) { return configuration.Number(key).Value; };
    if (!LoggingActive(value(NumericKey::LogEnabled), value(NumericKey::LogNewFileCfg)))
        return "off";
    for (const char* const level : {"calls", "arguments", "decoded", "full"}) {
        const std::vector<KeyValue> keys = LevelKeys(level);
        const bool isIt = std::all_of(keys.begin(), keys.end(), [&](const KeyValue& key) {
            return key.Key == "LogMaxPduBuff" ||
                   std::to_string(configuration.Number(FindNumericKey(key.Key)->Key).Value) == key.Value;
        });
        if (isIt)
            return std::string("on, ") + level;
    }
    return value(NumericKey::LogFnCalls) == 0 ? "on, headers only" : "on";
}

/// Counts what a file of a log holds.
class SessionCount : public read::LogSink
{
public:
    void OnSession(const read::Session& session) override { last_ = session.Number; }
    void OnCall(const read::Call& call) override
    {
        ++calls_;
        failed_ += call.HasFailed() ? 1 : 0;
        if (call.State == read::CallState::InFlight)
            open_ = call.Name;
    }
    std::string Text(const read::LogReader& reader) const
    {
        const read::Session* const session = reader.FindSession(last_);
        std::string text = std::to_string(calls_) + " calls, " + std::to_string(failed_) + " failed";
        if (!session)
            return text;
        const std::int64_t tenths = (session->LastTime - session->BeginTime) / 100;
        text += ", " + std::to_string(tenths / 10) + "." + std::to_string(tenths % 10) + " s";
        if (session->IsEnded)
            return text + ", ended with PDUDestruct";
        return text + (open_.empty() ? ", no PDUDestruct" : ", inside " + open_ + " at the end");
    }

private:
    std::uint32_t last_ = 0;
    std::uint64_t calls_ = 0;
    std::uint64_t failed_ = 0;
    std::string open_;
};

std::string SessionText(const read::LogFile& file)
{
    SessionCount count;
    read::LogReader reader(count, read::Wants::Calls);
    if (!read::ReadLogFile(file, reader))
        return "can't be read";
    reader.Finish();
    return count.Text(reader);
}

std::string SizeText(std::uint64_t bytes)
{
    const std::uint64_t tenths = bytes * 10 / (1u << 20);
    return std::to_string(tenths / 10) + "." + std::to_string(tenths % 10) + " MB";
}

std::vector<read::LogFile> LogsIn(const std::string& folder)
{
    if (!IsFolder(folder))
        return {};
    std::vector<read::LogFile> files = read::FindLogFiles({folder}).Files;
    std::erase_if(files, [](const read::LogFile& file) { return file.Family != LogFamily::Api; });
    return files;
}

/// The rows about the logs of a folder.
std::string LogRows(const std::string& folder)
{
    const std::vector<read::LogFile> files = LogsIn(folder);
    std::uint64_t size = 0;
    for (const read::LogFile& file : files)
        size += file.Size;
    std::string rows = "   logs in     " + folder + "   " + std::to_string(files.size()) +
                       (files.size() == 1 ? " file, " : " files, ") + SizeText(size) + "\n";
    for (std::size_t i = 0; i < std::min(files.size(), MostSessions); ++i) {
        const read::LogFile& file = files[files.size() - 1 - i];
        rows += "               " + PathText(file.Path.filename()) + "   " + SessionText(file) + "\n";
    }
    return rows;
}

std::string VersionOf(const LibraryLook& look)
{
    return look.Facts && look.Facts->Version ? " " + VersionText(*look.Facts->Version) : std::string();
}

/// A note if the delivered library is another than the copy.
std::string OutdatedRow(const LibraryLook& copy)
{
    const auto bytes = copy.Facts ? DeliveredLibrary({}, copy.Facts->For) : std::nullopt;
    const auto own = bytes ? InspectBinary(*bytes) : std::nullopt;
    if (!own || !own->Version || !copy.Facts->Version || *copy.Facts->Version >= *own->Version)
        return {};
    return " ! outdated    this command brings " + VersionText(*own->Version) +
           "; 'marvane install' updates the copy\n";
}

std::string InstallationText(const Installation& installation)
{
    const LibraryLook copy = LookAtLibrary(installation.Copy);
    const Chain chain = ChainOf(installation.Copy);
    const LibraryLook target = LookAtLibrary(chain.Target);
    const Configuration configuration = ReadConfiguration(chain.Configuration);
    std::string text = installation.Entry + "\n   chain       application -> Marvane" + VersionOf(copy) +
                       " -> " + (chain.Target.empty() ? "?" : FileNameOf(chain.Target)) + VersionOf(target) +
                       "\n";
    if (!installation.Trouble.empty())
        text += " ! not used    " + installation.Trouble + "\n";
    if (!copy.Facts)
        text += " X Marvane     " + installation.Copy + " " + LibrarySummary(copy) + "\n";
    if (!chain.HasConfiguration)
        return text + " X config      " + chain.Configuration + " does not exist\n";
    if (!target.Facts)
        text += " X library     " + chain.Target + " " + LibrarySummary(target) + "\n";
    text += OutdatedRow(copy) + "   logging     " + LevelText(configuration) + "\n";
    const std::string folder =
        LogFolder(configuration.Text(LogFileDirKey.Name).Value, platform::ExpandEnvironment);
    return text + (folder.empty() ? std::string() : LogRows(folder));
}

std::string InstallationJson(const Installation& installation)
{
    const LibraryLook copy = LookAtLibrary(installation.Copy);
    const Chain chain = ChainOf(installation.Copy);
    const Configuration configuration = ReadConfiguration(chain.Configuration);
    const std::string folder =
        LogFolder(configuration.Text(LogFileDirKey.Name).Value, platform::ExpandEnvironment);
    const std::vector<read::LogFile> files = LogsIn(folder);
    std::uint64_t size = 0;
    for (const read::LogFile& file : files)
        size += file.Size;
    JsonObject object;
    object.Add("entry", installation.Entry)
        .Add("root_file", installation.Root)
        .Add("marvane", installation.Copy);
    if (copy.Facts && copy.Facts->Version)
        object.Add("version", VersionText(*copy.Facts->Version));
    object.Add("in_effect", installation.Trouble.empty());
    if (!installation.Trouble.empty())
        object.Add("trouble", installation.Trouble);
    object.Add("target", chain.Target).Add("logging", LevelText(configuration)).Add("log_folder", folder);
    object.Add("log_files", files.size()).Add("log_bytes", size);
    JsonArray sessions;
    for (std::size_t i = 0; i < std::min(files.size(), MostSessions); ++i) {
        const read::LogFile& file = files[files.size() - 1 - i];
        sessions.AddRaw(
            JsonObject().Add("file", PathText(file.Path)).Add("outcome", SessionText(file)).Text());
    }
    return object.AddRaw("newest", sessions.Text()).Text();
}

int RunStatus(const Arguments& arguments, Console& console)
{
    const std::vector<Installation> installations = Installations(arguments);
    const bool trouble = std::any_of(installations.begin(), installations.end(),
                                     [](const Installation& one) { return !one.Trouble.empty(); });
    if (arguments.Has("--json")) {
        JsonArray json;
        for (const Installation& installation : installations)
            json.AddRaw(InstallationJson(installation));
        console.Write(JsonObject().Add("schema", "marvane.status/1").AddRaw("installed", json.Text()).Text() +
                      "\n");
        return trouble ? 1 : 0;
    }
    for (const Installation& installation : installations)
        console.Write((&installation == &installations.front() ? "" : "\n") + InstallationText(installation));
    if (installations.empty())
        console.Write("Marvane is not installed; 'marvane list' shows the libraries of this machine\n");
    return trouble ? 1 : 0;
}

constexpr Option StatusOptionList[] = {
    {"--to", "FOLDER", "Where the copies are, if install was told so"},
};
constexpr OptionGroup Groups[] = {{"Which installations", StatusOptionList}, RootOptions, JsonOptions};
constexpr Example Examples[] = {
    {"status", "every chain from application to library, and its newest logs"},
};

} // namespace

extern const Command StatusCommand;
constinit const Command StatusCommand = {
    .Name = "status",
    .Purpose = "Show what is installed, whether it is in effect, and the newest logs",
    .Takes = {.AreFiles = false},
    .Description =
        "For each entry: the chain application -> Marvane -> library, the logging level, the log folder with "
        "count and size of its files, and how the newest sessions ended. Tells if somebody has put another "
        "path into the root description file since.",
    .Examples = Examples,
    .Groups = Groups,
    .ExitStatus =
        "0 if all that is installed is in effect, 1 if something is not, 2 for trouble or wrong usage",
    .Run = RunStatus,
};

} // namespace marvane::tool
