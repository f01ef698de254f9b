// A command of marvane as data: parsing, help, completion and the man page all read these records.
#pragma once

#include <cstddef>
#include <span>
#include <string_view>

namespace marvane::tool {

class Arguments;
class Console;

/// An option of a command.
struct Option
{
    std::string_view Names;        ///< "--link" or "-n,--limit"; the long name is the one it is asked by
    std::string_view Value;        ///< what stands for its value in the help; empty for a flag
    std::string_view Text;         ///< what it does, one sentence without a full stop
    std::string_view Choices = {}; ///< the only values allowed, separated by commas; empty: any
    bool Repeats = false;          ///< may be given several times, each with a value of its own
    bool IsList = false;           ///< several of the choices, separated by commas
    bool IsValueOptional = false;  ///< the next word is its value only if it is made of its choices
};

/// Options under one heading of the help. Commands share the groups of shared_options.h.
struct OptionGroup
{
    std::string_view Heading;
    std::span<const Option> Options;
};

struct Example
{
    std::string_view Line; ///< the arguments after "marvane "
    std::string_view Text; ///< what it shows, short
};

inline constexpr std::size_t AnyNumber = static_cast<std::size_t>(-1);

/// What stands on the command line beside the options.
struct Operands
{
    std::string_view Text = {}; ///< as the usage line shows it: "[LOG]..."
    std::size_t Least = 0;
    std::size_t Most = 0;
    std::string_view Choices = {}; ///< the only words allowed, separated by commas; empty: any
    bool AreFiles = true;          ///< completed as file names
};

struct Command
{
    std::string_view Name = {};
    std::string_view Purpose = {}; ///< one line without a full stop
    Operands Takes = {};
    std::string_view Description = {}; ///< further sentences, paragraphs separated by a blank line
    std::span<const Example> Examples = {};
    std::span<const OptionGroup> Groups = {};
    std::string_view ExitStatus = "0 if all went well, 2 for trouble or wrong usage";
    /// Performs it and returns its exit status. Wrong usage is thrown as UsageError, what prevents the whole
    /// command as Trouble; a fault of one file of several goes to Console::Complain, which makes the
    /// status 2.
    int (*Run)(const Arguments& arguments, Console& console) = nullptr;
};

/// Commands under one heading of `marvane --help`.
struct CommandGroup
{
    std::string_view Heading;
    std::span<const Command* const> Commands;
};

/// Every command, in the order of the help.
std::span<const CommandGroup> AllCommands();

/// The command of a name, null if there is none.
const Command* FindCommand(std::string_view name);

/// Calls `visit` for each option of a command and for those that all commands have.
template <typename Visit> void ForEachOption(const Command& command, const Visit& visit);

/// --color and --help.
extern const OptionGroup CommonOptions;

template <typename Visit> void ForEachOption(const Command& command, const Visit& visit)
{
    for (const OptionGroup& group : command.Groups)
        for (const Option& option : group.Options)
            visit(option);
    for (const Option& option : CommonOptions.Options)
        visit(option);
}

} // namespace marvane::tool
