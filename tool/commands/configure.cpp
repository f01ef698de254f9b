// `marvane get`, `set` and `level`: the keys of a configuration.
#include "platform/files.h"
#include "platform/narrow_text.h"
#include "platform/replace_file.h"
#include "tool/commands/setup_options.h"
#include "tool/console/arguments.h"
#include "tool/console/console.h"
#include "tool/console/json_text.h"
#include "tool/console/nearest.h"
#include "tool/setup/configuration.h"
#include "tool/setup/configuration_choice.h"
#include "tool/setup/configuration_text.h"
#include "tool/setup/library_look.h"
#include "tool/setup/root_sources.h"
#include "tool/setup/setup_files.h"
#include "tool/setup/short_list.h"

namespace marvane::tool {

namespace {

/// The files to work on, more than one only if entries of both widths have the name, and the operands that
/// are left.
struct Chosen
{
    std::vector<std::string> Paths;
    std::vector<std::string> Words;
};

Chosen Choose(const Arguments& arguments)
{
    if (const auto path = arguments.Value("--config"))
        return {{*path}, arguments.Operands()};
    Chosen chosen{{}, arguments.Operands()};
    if (chosen.Words.empty())
        throw UsageError("give the NAME of an entry, or --config FILE");
    chosen.Paths = ConfigurationsOfEntry(arguments.Values("--root"), chosen.Words.front(),
                                         arguments.Value("--to").value_or(""));
    chosen.Words.erase(chosen.Words.begin());
    return chosen;
}

/// A heading for one of several files.
std::string Heading(const Chosen& chosen, const std::string& path)
{
    return chosen.Paths.size() == 1 ? std::string() : path + "\n";
}

std::string BytesOf(const std::string& path)
{
    const auto bytes = ReadFileBytes(path, 1 << 24);
    if (!bytes)
        throw Trouble(path + (IsFile(path) ? " can't be read" : " does not exist"));
    return *bytes;
}

void RequireKey(const std::string& key)
{
    if (!FindNumericKey(key) && !FindStringKey(key))
        throw UsageError("no key '" + key + "'" + DidYouMean(key, AllKeyNames()));
}

struct KeyRow
{
    std::string Key;
    std::string Value;
    std::size_t Line;
    const char* Meaning;
    bool IsNumber;
};

KeyRow RowOf(const Configuration& configuration, const std::string& key)
{
    if (const NumericKeyName* const number = FindNumericKey(key)) {
        const SettingNumber setting = configuration.Number(number->Key);
        return {key, std::to_string(setting.Value), setting.Line, number->Meaning, true};
    }
    const SettingText setting = configuration.Text(key);
    return {key, setting.Value, setting.Line, FindStringKey(key)->Meaning, false};
}

/// Keys that have an effect or stand in the file; each of them, if keys are named.
std::vector<KeyRow> Rows(const Configuration& configuration, const std::vector<std::string>& keys)
{
    std::vector<KeyRow> rows;
    for (const std::string& key : keys) {
        RequireKey(key);
        rows.push_back(RowOf(configuration, key));
    }
    if (!keys.empty())
        return rows;
    for (const std::string_view key : AllKeyNames()) {
        KeyRow row = RowOf(configuration, std::string(key));
        const bool isQuiet = row.Meaning == std::string_view(NoEffect) ||
                             row.Meaning == std::string_view(StartLevel) ||
                             key.find("Tls") != std::string_view::npos;
        if (row.Line != 0 || !isQuiet)
            rows.push_back(std::move(row));
    }
    return rows;
}

std::string Shown(const KeyRow& row)
{
    std::string line = row.Key + "=" + row.Value;
    line.resize(std::max<std::size_t>(line.size() + 1, 40), ' ');
    line += row.Line == 0 ? "default " : "line " + std::to_string(row.Line);
    line.resize(std::max<std::size_t>(line.size() + 1, 50), ' ');
    return line + row.Meaning + "\n";
}

Configuration Opened(const std::string& path)
{
    Configuration configuration = ReadConfiguration(path);
    if (!configuration.Opened)
        throw Trouble(path + " can't be read");
    return configuration;
}

std::string SettingsJson(const std::string& path, const std::vector<KeyRow>& rows)
{
    JsonObject settings;
    for (const KeyRow& row : rows)
        settings.AddRaw(row.Key, row.IsNumber ? row.Value : JsonString(row.Value));
    return JsonObject()
               .Add("schema", "marvane.get/1")
               .Add("configuration", path)
               .AddRaw("settings", settings.Text())
               .Text() +
           "\n";
}

int RunGet(const Arguments& arguments, Console& console)
{
    const Chosen chosen = Choose(arguments);
    const bool isForPrograms = arguments.Has("--json") || chosen.Words.size() == 1;
    if (isForPrograms && chosen.Paths.size() > 1)
        throw Trouble("there are " + std::to_string(chosen.Paths.size()) +
                      " configurations; choose one with --config FILE: " + ShortList(chosen.Paths));
    for (const std::string& path : chosen.Paths) {
        const std::vector<KeyRow> rows = Rows(Opened(path), chosen.Words);
        if (arguments.Has("--json"))
            console.Write(SettingsJson(path, rows));
        else if (chosen.Words.size() == 1)
            console.Write(rows[0].Value + "\n");
        else {
            console.Write(Heading(chosen, path));
            for (const KeyRow& row : rows)
                console.Write(Shown(row));
        }
    }
    return 0;
}

/// A file with its keys changed, and what the user is told about it.
struct ChangedFile
{
    std::string Path;
    std::string Before;
    std::string After;
    std::string Report;
};

/// Changes keys one after the other; writes nothing.
ChangedFile WithChanges(const std::string& path, const std::vector<KeyValue>& changes)
{
    ChangedFile file{path, BytesOf(path), {}, {}};
    file.After = file.Before;
    for (const KeyValue& change : changes) {
        const KeyRow old = RowOf(ParseConfiguration(file.After), change.Key);
        try {
            file.After = WithValue(file.After, change.Key, change.Value);
        } catch (const RefusedValue& refused) {
            throw Trouble(path + ": " + refused.what() + "; nothing was changed");
        }
        if (old.Value != change.Value || old.Line == 0)
            file.Report += change.Key + ": " + (old.Value.empty() ? "(empty)" : old.Value) + " -> " +
                           change.Value + "   " + WhenItCounts(change.Key) + "\n";
    }
    return file;
}

/// Changes all files, or none if a value is refused for one of them; each is written once.
void Change(Console& console, const Chosen& chosen, const std::vector<KeyValue>& changes)
{
    std::vector<ChangedFile> files;
    for (const std::string& path : chosen.Paths)
        files.push_back(WithChanges(path, changes));
    for (const ChangedFile& file : files) {
        if (file.After == file.Before) {
            console.Write("nothing to change in " + file.Path + "\n");
            continue;
        }
        const std::string failure = platform::ReplaceFileContents(
            file.Path, file.After, [&] { return ReadFileBytes(file.Path) == file.Before; });
        if (!failure.empty())
            throw Trouble(file.Path + ": " + failure);
        console.Write(Heading(chosen, file.Path) + file.Report);
    }
}

int RunSet(const Arguments& arguments, Console& console)
{
    const Chosen chosen = Choose(arguments);
    std::vector<KeyValue> changes;
    for (const std::string& word : chosen.Words) {
        const std::size_t equals = word.find('=');
        if (equals == std::string::npos)
            throw UsageError("'" + word + "' is not KEY=VALUE");
        changes.push_back({word.substr(0, equals), word.substr(equals + 1)});
        RequireKey(changes.back().Key);
    }
    if (changes.empty())
        throw UsageError("give KEY=VALUE");
    Change(console, chosen, changes);
    return 0;
}

int RunLevel(const Arguments& arguments, Console& console)
{
    const Chosen chosen = Choose(arguments);
    if (chosen.Words.size() != 1 || LevelKeys(chosen.Words[0]).empty())
        throw UsageError("give one level: calls, arguments, decoded or full");
    std::vector<KeyValue> changes = LevelKeys(chosen.Words[0]);
    changes.push_back({"LogEnabled", "1"});
    Change(console, chosen, changes);
    return 0;
}

constexpr Option FileOptionList[] = {
    {"--config", "FILE", "This configuration instead of that of an entry"},
};
constexpr OptionGroup FileOptions = {"Which configuration", FileOptionList};
constexpr OptionGroup GetGroups[] = {FileOptions, CopyOptions, RootOptions, JsonOptions};
constexpr OptionGroup SetGroups[] = {FileOptions, CopyOptions, RootOptions};

constexpr Example GetExamples[] = {
    {"get VendorPDU", "the settings of an entry, with their lines"},
    {"get VendorPDU LogFileDir", "one value alone, for scripts"},
};
constexpr Example SetExamples[] = {
    {"set VendorPDU LogFlush=1", "lose no line in a crash"},
    {"set --config D_PDU_API_CFG.xml LogFileDir=D:\\Logs\\", "in a file"},
};
constexpr Example LevelExamples[] = {
    {"level VendorPDU full", "everything, with the bytes"},
    {"level VendorPDU calls", "one line at entry and exit of each call"},
};

} // namespace

extern const Command GetCommand;
constinit const Command GetCommand = {
    .Name = "get",
    .Purpose = "Show the settings of a configuration as Marvane reads them",
    .Takes = {.Text = "[NAME] [KEY]...", .Most = AnyNumber, .AreFiles = false},
    .Description =
        "NAME is an entry that leads to Marvane; with --config there is none. Without KEY, every setting that "
        "has an effect. One KEY: its value alone.",
    .Examples = GetExamples,
    .Groups = GetGroups,
    .Run = RunGet,
};

extern const Command SetCommand;
constinit const Command SetCommand = {
    .Name = "set",
    .Purpose = "Change settings of a configuration",
    .Takes = {.Text = "[NAME] KEY=VALUE...", .Least = 1, .Most = AnyNumber, .AreFiles = false},
    .Description =
        "The value is changed where it stands; comments, order and every other byte stay. A value that Marvane "
        "would not read as it is meant is refused. The file is replaced in one step.",
    .Examples = SetExamples,
    .Groups = SetGroups,
    .Run = RunSet,
};

extern const Command LevelCommand;
constinit const Command LevelCommand = {
    .Name = "level",
    .Purpose = "Set how much is logged: calls, arguments, decoded or full",
    .Takes = {.Text = "[NAME] LEVEL", .Least = 1, .Most = 2, .AreFiles = false},
    .Description =
        "calls: entry and exit of each call. arguments: their arguments and the events too. decoded: arguments "
        "and results in words. full: with the bytes, and a line when the library returns.",
    .Examples = LevelExamples,
    .Groups = SetGroups,
    .Run = RunLevel,
};

} // namespace marvane::tool
