// The table of commands. To add one, write its source file in this folder (completion.cpp is a short
// example):
//     extern const Command NameCommand;
//     constinit const Command NameCommand = {.Name = "name", .Purpose = ..., .Run = RunName};
// then declare it here and add it to the array of its group. Parsing, help, completion and man page are made
// from the record; nothing else has to know of it.
#include "tool/console/command.h"

namespace marvane::tool {

extern const Command ShowCommand;
extern const Command AroundCommand;
extern const Command CutCommand;
extern const Command ReportCommand;
extern const Command ExportCommand;
extern const Command LnavCommand;
extern const Command CompletionCommand;
extern const Command ManCommand;
extern const Command DiffCommand;
extern const Command ErrorsCommand;
extern const Command ParamsCommand;
extern const Command SummaryCommand;
extern const Command TalkCommand;
extern const Command CheckCommand;
extern const Command ListCommand;
extern const Command LoadLibraryCommand;
extern const Command InstallCommand;
extern const Command UninstallCommand;
extern const Command GetCommand;
extern const Command SetCommand;
extern const Command LevelCommand;
extern const Command InitCommand;
extern const Command StatusCommand;
extern const Command DiagLevelsCommand;
extern const Command SelftestCommand;
extern const Command MeasureCallsCommand;

namespace {

constexpr const Command* ReadCommands[] = {&SummaryCommand, &TalkCommand,   &ErrorsCommand, &ShowCommand,
                                           &AroundCommand,  &ParamsCommand, &DiffCommand,   &CutCommand,
                                           &ReportCommand,  &ExportCommand, &LnavCommand};
constexpr const Command* SetupCommands[] = {
    &ListCommand, &InstallCommand, &UninstallCommand, &StatusCommand,     &CheckCommand,   &GetCommand,
    &SetCommand,  &LevelCommand,   &InitCommand,      &DiagLevelsCommand, &SelftestCommand};
constexpr const Command* HelpCommands[] = {&CompletionCommand, &ManCommand};

constexpr CommandGroup Groups[] = {
    {"Read a log", ReadCommands},
    {"Set up", SetupCommands},
    {"Help", HelpCommands},
};

constexpr Option Common[] = {
    {"--color", "WHEN", "Colours: auto (on a terminal, unless NO_COLOR is set), always or never",
     "auto,always,never"},
    {"--no-pager", "", "Do not start a pager on a terminal"},
    {"-h,--help", "", "Show this help"},
};

} // namespace

constinit const OptionGroup CommonOptions = {"Common options", Common};

std::span<const CommandGroup> AllCommands()
{
    return Groups;
}

const Command* FindCommand(std::string_view name)
{
    for (const CommandGroup& group : Groups)
        for (const Command* command : group.Commands)
            if (command->Name == name)
                return command;
    // Started by other commands only, so they are in no help.
    for (const Command* const helper : {&LoadLibraryCommand, &MeasureCallsCommand})
        if (helper->Name == name)
            return helper;
    return nullptr;
}

} // namespace marvane::tool
