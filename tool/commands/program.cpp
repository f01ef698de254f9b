#include "tool/commands/program.h"

#include <algorithm>

#include "tool/console/arguments.h"
#include "tool/console/console.h"
#include "tool/console/help.h"
#include "tool/console/nearest.h"

namespace marvane::tool {

namespace {

[[noreturn]] void RefuseCommand(const std::string& word)
{
    std::vector<std::string_view> known = {"help"};
    for (const CommandGroup& group : AllCommands())
        for (const Command* command : group.Commands)
            known.push_back(command->Name);
    const std::string_view kind = word.starts_with('-') ? "option" : "command";
    if (word.starts_with('-'))
        known = {"--help", "--version"};
    throw UsageError("unknown " + std::string(kind) + " '" + word + "'" + DidYouMean(word, known));
}

const Command& KnownCommand(const std::string& name)
{
    const Command* const command = FindCommand(name);
    if (!command)
        RefuseCommand(name);
    return *command;
}

bool IsAnyOf(std::string_view word, std::initializer_list<std::string_view> words)
{
    return std::find(words.begin(), words.end(), word) != words.end();
}

/// Help and version of the program itself; true if that was what was asked for.
bool AboutTheProgram(const std::vector<std::string>& words)
{
    Console console;
    if (IsAnyOf(words[0], {"--version", "-V"}))
        console.Write(VersionLine() + "\n");
    else if (words[0] == "help" && words.size() > 1)
        console.Write(CommandHelp(KnownCommand(words[1])));
    else if (IsAnyOf(words[0], {"help", "--help", "-h"}))
        console.Write(ProgramHelp());
    else
        return false;
    console.Flush();
    return true;
}

/// Ends a command that met trouble: what it found before stands before the message, which appears whether
/// or not that can be written.
int EndWith(const Trouble& trouble, Console& console)
{
    try {
        console.Flush();
    } catch (const OutputClosed&) {
        // The reader of the output has left; the message goes elsewhere.
    } catch (const Trouble& unwritten) {
        console.Complain(unwritten.what());
    }
    console.Complain(trouble.what());
    return ExitTrouble;
}

int RunCommand(const Command& command, const Arguments& arguments)
{
    Console console(ColourChoiceOf(arguments.Value("--color").value_or("auto")),
                    !arguments.Has("--no-pager"));
    if (arguments.Has("--help")) {
        console.Write(CommandHelp(command));
        console.Flush();
        return 0;
    }
    try {
        const int status = command.Run(arguments, console);
        console.Flush();
        return console.HasComplained() ? ExitTrouble : status;
    } catch (const Trouble& trouble) {
        return EndWith(trouble, console);
    }
}

/// As RunProgram, but wrong usage and a closed output are thrown.
int Run(const std::vector<std::string>& words)
{
    if (words.empty()) {
        Console().Note("which command? 'marvane --help' lists them");
        return ExitTrouble;
    }
    if (AboutTheProgram(words))
        return 0;
    const Command& command = KnownCommand(words[0]);
    try {
        return RunCommand(command, ParseArguments(command, {words.begin() + 1, words.end()}));
    } catch (const UsageError& error) {
        throw UsageError(std::string(error.what()) + "\nTry 'marvane " + std::string(command.Name) +
                         " --help'.");
    }
}

} // namespace

int RunProgram(const std::vector<std::string>& words)
{
    try {
        return Run(words);
    } catch (const OutputClosed&) {
        return 0; // Whoever read the output has seen enough.
    } catch (const std::exception& error) {
        Console().Note(error.what());
        return ExitTrouble;
    }
}

} // namespace marvane::tool
