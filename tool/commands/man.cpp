// `marvane man`: the man page, made from the texts of the help.
#include "tool/console/arguments.h"
#include "tool/console/console.h"
#include "tool/console/help.h"

namespace marvane::tool {

namespace {

/// A text as troff reads it: hyphens stay hyphens, and no line becomes a request.
std::string Troff(std::string_view text)
{
    std::string out;
    for (const char letter : text) {
        if (letter == '\\')
            out += "\\e";
        else if (letter == '-')
            out += "\\-";
        else if ((letter == '.' || letter == '\'') && (out.empty() || out.back() == '\n'))
            out.append("\\&") += letter;
        else
            out += letter;
    }
    return out;
}

std::string Trimmed(const std::string& text)
{
    return text.substr(std::min(text.find_first_not_of(' '), text.size()));
}

void AddExamples(std::string& out, std::span<const Example> examples)
{
    for (const Example& example : examples)
        out += ".TP\n.B marvane " + Troff(example.Line) + "\n" + Troff(example.Text) + "\n";
}

void AddOptions(std::string& out, const OptionGroup& group)
{
    out += ".PP\n" + Troff(group.Heading) + ":\n";
    for (const Option& option : group.Options)
        out += ".TP\n.B " + Troff(Trimmed(OptionLabel(option))) + "\n" + Troff(option.Text) + ".\n";
}

void AddCommand(std::string& out, const Command& command)
{
    out += ".SS " + Troff(UsageLine(command)) + "\n" + Troff(command.Purpose) + ".\n";
    if (!command.Description.empty())
        out += ".PP\n" + Troff(command.Description) + "\n";
    AddExamples(out, command.Examples);
    for (const OptionGroup& group : command.Groups)
        AddOptions(out, group);
    out += ".PP\nExit status: " + Troff(command.ExitStatus) + ".\n";
}

std::string ManPage()
{
    std::string out = ".TH MARVANE 1 \"\" \"" + Troff(VersionLine()) + "\"\n.SH NAME\nmarvane \\- " +
                      Troff(ProgramPurpose) +
                      "\n.SH SYNOPSIS\n.B marvane\n.I COMMAND\n[OPTION]... [ARGUMENT]...\n.SH EXAMPLES\n";
    AddExamples(out, FirstSteps());
    out += ".SH COMMANDS\n";
    for (const CommandGroup& group : AllCommands())
        for (const Command* command : group.Commands)
            AddCommand(out, *command);
    out += ".SH OPTIONS OF ALL COMMANDS\n";
    AddOptions(out, CommonOptions);
    return out +
           ".SH ENVIRONMENT\n"
           ".TP\n.B NO_COLOR\nIf set and not empty, there are no colours unless \\-\\-color asks for them.\n"
           ".TP\n.B PAGER\nThe program that shows long output on a terminal (Linux); less without it.\n"
           ".TP\n.B PDU_CFG_FILE\nPath of the configuration that the logger library reads; its log folder "
           "is where logs are looked for.\n";
}

int RunMan(const Arguments&, Console& console)
{
    console.Write(ManPage());
    return 0;
}

constexpr Example Examples[] = {
    {"man | man -l -", "read it"},
    {"man > /usr/local/share/man/man1/marvane.1", "install it"},
};

} // namespace

extern const Command ManCommand;
constinit const Command ManCommand = {
    .Name = "man",
    .Purpose = "The man page of all commands",
    .Examples = Examples,
    .Run = RunMan,
};

} // namespace marvane::tool
