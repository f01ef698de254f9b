// `marvane install` and `marvane uninstall`.
#include "tool/setup/install.h"

#include <limits>

#include "tool/commands/setup_options.h"
#include "tool/console/arguments.h"
#include "tool/console/console.h"
#include "tool/setup/root_sources.h"

namespace marvane::tool {

namespace {

/// The entry's name, or empty with --all.
std::string NameOrAll(const Arguments& arguments)
{
    const bool all = arguments.Has("--all");
    if (all == !arguments.Operands().empty())
        throw UsageError(all ? "give a NAME or --all, not both" : "give a NAME, or --all");
    return all ? std::string() : arguments.Operands().front();
}

/// "10M" in bytes: K, M and G are powers of 1,024.
std::uint32_t SizeOf(const std::string& text)
{
    static constexpr std::string_view suffixes = "KMG";
    std::string digits = text;
    unsigned shift = 0;
    if (!digits.empty() && suffixes.find(digits.back()) != std::string_view::npos) {
        shift = 10 * (static_cast<unsigned>(suffixes.find(digits.back())) + 1);
        digits.pop_back();
    }
    const bool isNumber =
        !digits.empty() && digits.size() <= 10 && digits.find_first_not_of("0123456789") == std::string::npos;
    const std::uint64_t size = isNumber ? std::stoull(digits) << shift : 0;
    if (!isNumber || size > INT32_MAX)
        throw UsageError("--max-size takes a size such as 500K, 10M or 1G, below 2G, and not '" + text + "'");
    return static_cast<std::uint32_t>(size);
}

NewConfiguration ConfigurationOf(const Arguments& arguments)
{
    NewConfiguration configuration;
    configuration.Level = arguments.Value("--level").value_or("decoded");
    if (const auto payload = arguments.Number("--payload", 0, INT32_MAX))
        configuration.Payload = static_cast<std::uint32_t>(*payload);
    configuration.Flush = arguments.Has("--flush");
    if (const auto size = arguments.Value("--max-size"))
        configuration.MaxSize = SizeOf(*size);
    if (const auto files = arguments.Number("--files", 3, 1000000))
        configuration.Files = static_cast<std::uint32_t>(*files);
    return configuration;
}

int RunInstall(const Arguments& arguments, Console& console)
{
    InstallOptions options;
    options.Roots = arguments.Values("--root");
    options.Name = NameOrAll(arguments);
    options.To = arguments.Value("--to").value_or("");
    options.From = arguments.Value("--from").value_or("");
    options.LogFolder = arguments.Value("--log-dir");
    options.Configuration = ConfigurationOf(arguments);
    options.DryRun = arguments.Has("--dry-run");
    try {
        console.Write(Install(options));
    } catch (const InstallRefused& refused) {
        throw Trouble(refused.what());
    }
    return 0;
}

int RunUninstall(const Arguments& arguments, Console& console)
{
    UninstallOptions options;
    options.Roots = arguments.Values("--root");
    options.Name = NameOrAll(arguments);
    options.To = arguments.Value("--to").value_or("");
    options.Logs = arguments.Has("--logs");
    options.DryRun = arguments.Has("--dry-run");
    if (!options.Roots.empty())
        RequireReadable(ReadRoots(options.Roots));
    try {
        console.Write(Uninstall(options));
    } catch (const InstallRefused& refused) {
        throw Trouble(refused.what());
    }
    return 0;
}

constexpr Option InstallOptionList[] = {
    {"--all", "", "Every entry of the root description file, all or nothing"},
    {"--dry-run", "", "Show the change and change nothing"},
    {"--to", "FOLDER",
     "Where the copies go, a folder for each entry (Windows: %ProgramFiles%\\Marvane\\installed, for "
     "32-bit libraries that of %ProgramFiles(x86)%; Linux: /usr/local/lib/marvane)"},
    {"--from", "FOLDER", "Where the logger libraries are (x64 and x86 in it or beside the command)"},
};

constexpr Option LogOptionList[] = {
    {"--level", "LEVEL", "calls, arguments, decoded (the default) or full", LevelNames},
    {"--log-dir", "FOLDER",
     "Folder of the logs (Windows: %LOCALAPPDATA%\\Marvane\\logs\\NAME\\; Linux: "
     "%HOME%/.local/state/marvane/NAME/)"},
    {"--payload", "BYTES", "Most bytes of a payload that are shown, instead of the level's 32 (full: 4096)"},
    {"--flush", "", "Hand each line to the system at once: none is lost in a crash"},
    {"--max-size", "SIZE", "Begin a new file above this size: 10M (the default), 500K, 1G; 0: never"},
    {"--files", "NUMBER", "Log files that are kept: 20 (the default), at least 3"},
};

constexpr OptionGroup InstallGroups[] = {
    {"What to do", InstallOptionList}, {"What is logged", LogOptionList}, RootOptions};

constexpr Example InstallExamples[] = {
    {"install VendorPDU", "log what applications and this library say to each other"},
    {"install VendorPDU --dry-run", "show what would be changed"},
    {"install VendorPDU --level full --flush", "everything, and nothing lost in a crash"},
    {"install --all --log-dir D:\\Logs", "every entry, each with a log folder of its own"},
};

constexpr Option UninstallOptionList[] = {
    {"--all", "", "Everything that was installed"},
    {"--logs", "", "Delete the log files too"},
    {"--dry-run", "", "Show what would be changed and change nothing"},
};

constexpr OptionGroup UninstallGroups[] = {{"What to do", UninstallOptionList}, CopyOptions, RootOptions};

constexpr Example UninstallExamples[] = {
    {"uninstall VendorPDU", "applications load the vendor's library again"},
    {"uninstall --all --logs", "everything, the logs too"},
};

} // namespace

extern const Command InstallCommand;
constinit const Command InstallCommand = {
    .Name = "install",
    .Purpose = "Put Marvane in front of a D-PDU API library",
    .Takes = {.Text = "[NAME]", .Most = 1, .AreFiles = false},
    .Description =
        "NAME is the SHORT_NAME of an entry ('marvane list' shows them). Copies the logger library of the right "
        "machine type into a folder of its own, writes its configuration beside it, and changes the path of the "
        "library in the root description file: that value and no other byte. A backup is made first, the file is "
        "replaced in one step, and the new chain is tried before; if anything fails, everything is taken back.\n\n"
        "Installing again changes nothing, or updates the copy if the delivered library is another one; its "
        "configuration stays.",
    .Examples = InstallExamples,
    .Groups = InstallGroups,
    .ExitStatus = "0 if it is installed, 2 if it was refused or failed; nothing is changed then",
    .Run = RunInstall,
};

extern const Command UninstallCommand;
constinit const Command UninstallCommand = {
    .Name = "uninstall",
    .Purpose = "Take Marvane away again",
    .Takes = {.Text = "[NAME]", .Most = 1, .AreFiles = false},
    .Description =
        "The former path comes back into the root description file byte for byte, even if other entries have changed "
        "since. If somebody else put another path there meanwhile, that stays and only Marvane's own files go. Logs "
        "stay unless --logs is given.",
    .Examples = UninstallExamples,
    .Groups = UninstallGroups,
    .ExitStatus = "0 if it is gone, 2 if it was refused or failed",
    .Run = RunUninstall,
};

} // namespace marvane::tool
