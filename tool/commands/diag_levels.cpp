// `marvane diag-levels`: the levels of the library's own diagnostic log.
#include <fstream>

#include "config/debug_levels.h"
#include "platform/files.h"
#include "platform/narrow_text.h"
#include "platform/replace_file.h"
#include "tool/commands/setup_options.h"
#include "tool/console/arguments.h"
#include "tool/console/console.h"
#include "tool/console/json_text.h"
#include "tool/setup/setup_files.h"

namespace marvane::tool {

namespace {

constexpr std::size_t LevelBytes = 4;
constexpr std::size_t TableBytes = SubsystemCount * LevelBytes;
constexpr std::int32_t MostLevel = static_cast<std::int32_t>(DebugLevel::Debug3);

std::string LevelFile()
{
    return platform::ExpandUtf8(LevelFileFolder(platform::PathSeparator)) + LevelFileName;
}

std::int32_t LevelAt(const std::string& bytes, std::size_t subsystem)
{
    std::uint32_t level = 0;
    for (std::size_t i = LevelBytes; i-- > 0;)
        level = level << 8 | static_cast<unsigned char>(bytes[subsystem * LevelBytes + i]);
    return static_cast<std::int32_t>(level);
}

std::string BytesOf(std::int32_t level)
{
    std::string bytes;
    for (std::size_t i = 0; i < LevelBytes; ++i)
        bytes += static_cast<char>(static_cast<std::uint32_t>(level) >> (8 * i) & 0xFF);
    return bytes;
}

/// The table of a file, or what the library makes of a missing or short one.
std::string TableOf(const std::string& path)
{
    std::string bytes = ReadFileBytes(path, 1 << 20).value_or("");
    while (bytes.size() < TableBytes)
        bytes += BytesOf(static_cast<std::int32_t>(DebugLevel::Warn));
    return bytes;
}

std::string LevelName(std::int32_t level)
{
    if (level < 0)
        return "OFF";
    std::string label = LevelLabel(level > MostLevel ? MostLevel : level);
    label.erase(0, 1);
    return label.substr(0, label.find(' '));
}

struct Change
{
    std::size_t First;
    std::size_t Last; ///< one past the end
    std::int32_t Level;
};

std::size_t SubsystemOf(const std::string& name)
{
    for (std::uint32_t i = 0; i < SubsystemCount; ++i)
        if (name == SubsystemName(i))
            return i;
    throw UsageError("no subsystem '" + name + "'; 'marvane diag-levels' lists them");
}

std::int32_t LevelOf(const std::string& name)
{
    const std::int32_t level = name == "OFF" ? -1 : LevelNumber(name);
    if (level < 0 && name != "OFF")
        throw UsageError("no level '" + name +
                         "'; there are OFF, ERROR, WARN, NOTICE, INFO, DEBUG, DEBUG1, DEBUG2 and "
                         "DEBUG3");
    return level;
}

Change ChangeOf(const std::string& word)
{
    const std::size_t equals = word.find('=');
    const std::string name = word.substr(0, equals);
    const std::int32_t level = LevelOf(word.substr(equals + 1));
    if (name == "all")
        return {0, SubsystemCount, level};
    const std::size_t subsystem = SubsystemOf(name);
    return {subsystem, subsystem + 1, level};
}

/// Writes levels into the file in place: running processes have it mapped, so it must stay the same file.
void WriteLevels(const std::string& path, const std::vector<Change>& changes)
{
    const auto existing = ReadFileBytes(path, 1 << 20);
    if (!existing || existing->size() < TableBytes) {
        platform::MakeDirectoryChain(platform::ExpandUtf8(LevelFileFolder(platform::PathSeparator)));
        const std::string table = TableOf(path);
        std::string failure = existing ? platform::ReplaceFileContents(path, table, [] { return true; })
                                       : platform::CreateNewFile(path, table);
        if (!failure.empty())
            throw Trouble(path + ": " + failure);
    }
    std::fstream file(FilePath(path), std::ios::binary | std::ios::in | std::ios::out);
    for (const Change& change : changes) {
        file.seekp(static_cast<std::streamoff>(change.First * LevelBytes));
        for (std::size_t i = change.First; i < change.Last; ++i)
            file << BytesOf(change.Level);
    }
    file.close();
    if (!file)
        throw Trouble(path + ": can't be written");
}

int RunDiagLevels(const Arguments& arguments, Console& console)
{
    const std::string path = LevelFile();
    std::vector<Change> changes;
    std::vector<std::size_t> shown;
    for (const std::string& word : arguments.Operands()) {
        if (word.find('=') != std::string::npos) {
            changes.push_back(ChangeOf(word));
            for (std::size_t i = changes.back().First; i < changes.back().Last; ++i)
                shown.push_back(i);
        } else
            shown.push_back(SubsystemOf(word));
    }
    if (!changes.empty())
        WriteLevels(path, changes);
    if (arguments.Operands().empty())
        for (std::size_t i = 0; i < SubsystemCount; ++i)
            shown.push_back(i);
    const std::string table = TableOf(path);
    JsonObject levels;
    for (const std::size_t subsystem : shown) {
        std::string line = SubsystemName(static_cast<std::uint32_t>(subsystem));
        levels.Add(line, LevelName(LevelAt(table, subsystem)));
        line.resize(12, ' ');
        if (!arguments.Has("--json"))
            console.Write(line + LevelName(LevelAt(table, subsystem)) + "\n");
    }
    if (arguments.Has("--json"))
        console.Write(JsonObject()
                          .Add("schema", "marvane.diag-levels/1")
                          .Add("file", path)
                          .Add("exists", IsFile(path))
                          .AddRaw("levels", levels.Text())
                          .Text() +
                      "\n");
    else if (!IsFile(path))
        console.Note(path + " does not exist yet: every level is WARN");
    return 0;
}

constexpr Example Examples[] = {
    {"diag-levels", "the level of each subsystem"},
    {"diag-levels DATA=DEBUG", "report how the configuration is read, from the next line on"},
    {"diag-levels all=WARN", "as it is at first"},
};
constexpr OptionGroup Groups[] = {RootOptions, JsonOptions};

} // namespace

extern const Command DiagLevelsCommand;
constinit const Command DiagLevelsCommand = {
    .Name = "diag-levels",
    .Purpose = "Show or change the levels of Marvane's diagnostic log",
    .Takes = {.Text = "[SUBSYSTEM[=LEVEL]]...", .Most = AnyNumber, .AreFiles = false},
    .Description =
        "The diagnostic log is what the logger library reports about itself. LEVEL is OFF, ERROR, WARN, NOTICE, INFO, "
        "DEBUG, DEBUG1, DEBUG2 or DEBUG3; the subsystem \"all\" is each of them. Running processes follow at once. The "
        "library writes records under GENERAL, APP and DATA. The levels are those of the user, of every entry alike: "
        "--root has no effect.",
    .Examples = Examples,
    .Groups = Groups,
    .Run = RunDiagLevels,
};

} // namespace marvane::tool
