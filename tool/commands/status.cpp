// `marvane status`: what is installed, whether it is still in effect, and what it has logged.
#include <algorithm>

#include "config/paths.h"
#include "platform/clock.h"
#include "platform/files.h"
#include "platform/library.h"
#include "platform/narrow_text.h"
#include "tool/commands/setup_options.h"
#include "tool/commands/status_logs.h"
#include "tool/commands/unreadable_roots.h"
#include "tool/console/arguments.h"
#include "tool/console/console.h"
#include "tool/console/json_text.h"
#include "tool/setup/configuration.h"
#include "tool/setup/configuration_text.h"
#include "tool/setup/delivered_library.h"
#include "tool/setup/installed_state.h"
#include "tool/setup/library_look.h"
#include "tool/setup/root_sources.h"
#include "tool/setup/setup_files.h"

namespace marvane::tool {

namespace {

/// A chain application -> Marvane -> library.
struct Installation
{
    std::string Entry;
    std::string Root;
    std::string Copy;      ///< path of the logger library
    std::string Trouble;   ///< why it is not in effect; empty if it is
    std::string Installed; ///< version by the record; empty for one that install did not make
};

std::vector<Installation> Installations(const Arguments& arguments, const std::vector<ReadRoot>& roots)
{
    std::vector<Installation> found;
    for (const InstalledCopy& copy :
         InstalledInto(arguments.Values("--root"), arguments.Value("--to").value_or("")))
        found.push_back({copy.Entry, copy.Root, LibraryOfCopy(copy), TroubleOf(copy), copy.Version});
    // Those that were put there by hand, or into another folder.
    for (const ReadRoot& root : roots)
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

/// Local time of now.
read::LogTime LocalNow()
{
    const std::tm now = platform::LocalCalendarTime();
    const read::Date date = {now.tm_year + 1900, static_cast<unsigned>(now.tm_mon) + 1,
                             static_cast<unsigned>(now.tm_mday)};
    const std::int64_t seconds = now.tm_hour * 3600 + now.tm_min * 60 + now.tm_sec;
    return {read::DaysOf(date) * read::MillisecondsPerDay + seconds * 1000};
}

/// How many log files are kept; 0 if one grows for ever.
std::uint64_t MostFiles(const Configuration& configuration)
{
    const std::uint64_t most = configuration.Number(NumericKey::LogFileMaxNum).Value;
    return most == 0 ? 0 : most + 2;
}

std::string FolderOfConfiguration(const Configuration& configuration)
{
    return LogFolder(configuration.Text(LogFileDirKey.Name).Value, platform::ExpandUtf8);
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
    std::string text = installation.Entry + "   " + installation.Root + "\n   application -> Marvane" +
                       VersionOf(copy) + " -> " + (chain.Target.empty() ? "?" : FileNameOf(chain.Target)) +
                       VersionOf(target) +
                       (chain.HasConfiguration ? "   logging: " + LevelText(configuration) : "") + "\n";
    if (!installation.Trouble.empty())
        text += " ! not used    " + installation.Trouble + "\n";
    if (!copy.Facts)
        text += " X Marvane     " + installation.Copy + " " + LibrarySummary(copy) + "\n";
    if (!chain.HasConfiguration)
        return text + " X config      " + chain.Configuration + " does not exist\n";
    if (!target.Facts)
        text += " X library     " + chain.Target + " " + LibrarySummary(target) + "\n";
    text += OutdatedRow(copy);
    const std::string folder = FolderOfConfiguration(configuration);
    return text + (folder.empty() ? "" : LogRows(LookAtLogs(folder), MostFiles(configuration), LocalNow()));
}

std::string SessionJson(const SessionFacts& session)
{
    return JsonObject()
        .Add("file", session.Path)
        .Add("duration_ms", session.Ms)
        .Add("calls", session.Calls)
        .Add("failed", session.Failed)
        .Add("ended", session.IsEnded)
        .Add("outcome", OutcomeOf(session))
        .Text();
}

std::string InstallationJson(const Installation& installation)
{
    const LibraryLook copy = LookAtLibrary(installation.Copy);
    const Chain chain = ChainOf(installation.Copy);
    const Configuration configuration = ReadConfiguration(chain.Configuration);
    const FolderOfLogs logs = LookAtLogs(FolderOfConfiguration(configuration));
    JsonObject object;
    object.Add("entry", installation.Entry)
        .Add("root_file", installation.Root)
        .Add("marvane", installation.Copy);
    if (copy.Facts && copy.Facts->Version)
        object.Add("version", VersionText(*copy.Facts->Version));
    object.Add("in_effect", installation.Trouble.empty());
    if (!installation.Trouble.empty())
        object.Add("trouble", installation.Trouble);
    object.Add("target", chain.Target)
        .Add("logging", LevelText(configuration))
        .Add("log_folder", logs.Folder);
    object.Add("log_files", logs.Files).Add("log_bytes", logs.Bytes);
    JsonArray sessions;
    for (const SessionFacts& session : logs.Newest)
        sessions.AddRaw(SessionJson(session));
    return object.AddRaw("newest", sessions.Text()).Text();
}

std::string Json(const std::vector<Installation>& installations)
{
    JsonArray json;
    for (const Installation& installation : installations)
        json.AddRaw(InstallationJson(installation));
    return JsonObject().Add("schema", "marvane.status/1").AddRaw("installed", json.Text()).Text() + "\n";
}

std::string Text(const std::vector<Installation>& installations)
{
    std::string text;
    for (const Installation& installation : installations)
        text += (text.empty() ? "" : "\n") + InstallationText(installation);
    return text;
}

int RunStatus(const Arguments& arguments, Console& console)
{
    const std::vector<ReadRoot> roots = ReadRoots(arguments.Values("--root"));
    const std::vector<Installation> installations = Installations(arguments, roots);
    if (arguments.Has("--json"))
        console.Write(Json(installations));
    else if (!installations.empty())
        console.Write(Text(installations));
    else if (std::ranges::all_of(roots, [](const ReadRoot& root) { return root.File.has_value(); }))
        console.Write("Marvane is not installed; 'marvane list' shows the libraries of this machine\n");
    ComplainOfUnreadable(roots, console);
    const bool trouble =
        std::ranges::any_of(installations, [](const Installation& one) { return !one.Trouble.empty(); });
    return trouble ? 1 : 0;
}

constexpr OptionGroup Groups[] = {CopyOptions, RootOptions, JsonOptions};
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
