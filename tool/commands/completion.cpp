// `marvane completion`: scripts that complete commands, options and their values, made from the table.
#include "tool/console/arguments.h"
#include "tool/console/console.h"
#include "tool/console/help.h"
#include "tool/console/nearest.h"

namespace marvane::tool {

namespace {

/// All names of all options of a command, separated by blanks.
std::string OptionNames(const Command& command)
{
    std::string names;
    ForEachOption(command, [&](const Option& option) {
        for (const std::string_view name : Words(option.Names))
            names.append(names.empty() ? "" : " ").append(name);
    });
    return names;
}

bool TakesPath(const Option& option)
{
    return option.Value == "FILE" || option.Value == "FOLDER";
}

std::string WithBlanks(std::string_view list)
{
    std::string text(list);
    for (char& letter : text)
        letter = letter == ',' ? ' ' : letter;
    return text;
}

template <typename Visit> void ForEachCommand(const Visit& visit)
{
    for (const CommandGroup& group : AllCommands())
        for (const Command* command : group.Commands)
            visit(*command);
}

/// A text in single quotes, as the shell of the script writes one that stands inside.
std::string Quoted(std::string_view text, std::string_view quoteInside)
{
    std::string quoted = "'";
    for (const char letter : text)
        quoted += letter == '\'' ? std::string(quoteInside) : std::string(1, letter);
    return quoted + "'";
}

std::string CommandNames()
{
    std::string names;
    ForEachCommand(
        [&](const Command& command) { names.append(names.empty() ? "" : " ").append(command.Name); });
    return names;
}

/// Lines "  'show --time') COMPREPLY=..." for bash.
std::string BashValues()
{
    std::string lines;
    ForEachCommand([&](const Command& command) {
        ForEachOption(command, [&](const Option& option) {
            if (!option.Choices.empty())
                lines += "        '" + std::string(command.Name) + " " + std::string(LongName(option)) +
                         "') words='" + WithBlanks(option.Choices) + "' ;;\n";
        });
    });
    return lines;
}

std::string BashScript()
{
    std::string out =
        "# bash completion of marvane; put it into ~/.local/share/bash-completion/completions/marvane\n"
        "_marvane() {\n"
        "    local current=${COMP_WORDS[COMP_CWORD]} last=${COMP_WORDS[COMP_CWORD-1]}\n"
        "    local command=${COMP_WORDS[1]} words='' options=''\n"
        "    if [ \"$COMP_CWORD\" -eq 1 ]; then\n"
        "        COMPREPLY=($(compgen -W '" +
        CommandNames() +
        " --help --version' -- \"$current\"))\n"
        "        return\n"
        "    fi\n"
        "    case \"$command $last\" in\n" +
        BashValues() + "    esac\n    case $command in\n";
    ForEachCommand([&](const Command& command) {
        out += "        " + std::string(command.Name) + ") options='" + OptionNames(command) + "'";
        if (!command.Takes.Choices.empty())
            out += "; words=${words:-'" + WithBlanks(command.Takes.Choices) + "'}";
        out += " ;;\n";
    });
    return out + "    esac\n"
                 "    if [[ $current == -* ]]; then\n"
                 "        words=$options\n"
                 "    elif [ -z \"$words\" ]; then\n"
                 "        compopt -o filenames 2>/dev/null\n"
                 "        mapfile -t COMPREPLY < <(compgen -f -- \"$current\")\n"
                 "        return\n"
                 "    fi\n"
                 "    COMPREPLY=($(compgen -W \"$words\" -- \"$current\"))\n"
                 "}\n"
                 "complete -F _marvane marvane\n";
}

/// A description inside zsh's option records: brackets and colons have a meaning there.
std::string ZshText(std::string_view text)
{
    std::string escaped;
    for (const char letter : text) {
        if (letter == '[' || letter == ']' || letter == ':' || letter == '\\')
            escaped += '\\';
        escaped += letter;
    }
    return escaped;
}

std::string ZshOption(const Option& option)
{
    std::string lines;
    for (const std::string_view name : Words(option.Names)) {
        std::string record =
            (option.Repeats ? "*" : "") + std::string(name) + "[" + ZshText(option.Text) + "]";
        if (!option.Choices.empty())
            record += ":" + std::string(option.Value) + ":(" + WithBlanks(option.Choices) + ")";
        else if (!option.Value.empty())
            record += ":" + std::string(option.Value) + ":" + (TakesPath(option) ? "_files" : "");
        lines += " \\\n                " + Quoted(record, "'\\''");
    }
    return lines;
}

std::string ZshScript()
{
    std::string out = "#compdef marvane\n"
                      "# zsh completion of marvane; put it into a folder of $fpath as _marvane\n"
                      "_marvane() {\n"
                      "    if (( CURRENT == 2 )); then\n"
                      "        local -a commands=(\n";
    ForEachCommand([&](const Command& command) {
        out += "            " + Quoted(std::string(command.Name) + ":" + ZshText(command.Purpose), "'\\''") +
               "\n";
    });
    out += "        )\n"
           "        _describe command commands\n"
           "        return\n"
           "    fi\n"
           "    local command=$words[2]\n"
           "    shift words\n"
           "    (( CURRENT-- ))\n"
           "    case $command in\n";
    ForEachCommand([&](const Command& command) {
        out += "        " + std::string(command.Name) + ")\n            _arguments";
        ForEachOption(command, [&](const Option& option) { out += ZshOption(option); });
        const std::string operands =
            command.Takes.Choices.empty() ? "_files" : "(" + WithBlanks(command.Takes.Choices) + ")";
        out += " \\\n                '*:argument:" + operands + "' ;;\n";
    });
    return out + "    esac\n}\n_marvane \"$@\"\n";
}

std::string FishOption(std::string_view command, const Option& option)
{
    std::string line = "complete -c marvane -n '__fish_seen_subcommand_from " + std::string(command) + "'";
    for (const std::string_view name : Words(option.Names))
        line += name.starts_with("--") ? " -l " + std::string(name.substr(2))
                                       : " -s " + std::string(name.substr(1));
    if (!option.Choices.empty())
        line += " -x -a '" + WithBlanks(option.Choices) + "'";
    else if (!option.Value.empty())
        line += TakesPath(option) ? " -r -F" : " -x";
    return line + " -d " + Quoted(option.Text, "\\'") + "\n";
}

std::string FishScript()
{
    std::string out = "# fish completion of marvane; put it into ~/.config/fish/completions/marvane.fish\n";
    ForEachCommand([&](const Command& command) {
        out += "complete -c marvane -n __fish_use_subcommand -f -a " + std::string(command.Name) + " -d " +
               Quoted(command.Purpose, "\\'") + "\n";
    });
    ForEachCommand([&](const Command& command) {
        ForEachOption(command, [&](const Option& option) { out += FishOption(command.Name, option); });
        if (!command.Takes.Choices.empty())
            out += "complete -c marvane -n '__fish_seen_subcommand_from " + std::string(command.Name) +
                   "' -f -a '" + WithBlanks(command.Takes.Choices) + "'\n";
    });
    return out;
}

/// "'a', 'b'" of "a b".
std::string PowerShellList(const std::string& words)
{
    std::string list = "'";
    for (const char letter : words)
        list += letter == ' ' ? std::string("', '") : std::string(1, letter);
    return list + "'";
}

std::string PowerShellScript()
{
    std::string out = "# PowerShell completion of marvane; add it to the file that $PROFILE names\n"
                      "Register-ArgumentCompleter -Native -CommandName marvane -ScriptBlock {\n"
                      "    param($current, $line, $cursor)\n"
                      "    $typed = @($line.CommandElements | ForEach-Object { $_.ToString() })\n"
                      "    $command = if ($typed.Count -gt 1) { $typed[1] } else { '' }\n"
                      "    $last = if ($current -eq '') { $typed[-1] } else { $typed[-2] }\n"
                      "    $commands = @(" +
                      PowerShellList(CommandNames() + " --help --version") + ")\n    $options = @{\n";
    ForEachCommand([&](const Command& command) {
        out +=
            "        '" + std::string(command.Name) + "' = @(" + PowerShellList(OptionNames(command)) + ")\n";
    });
    out += "    }\n    $values = @{\n";
    ForEachCommand([&](const Command& command) {
        ForEachOption(command, [&](const Option& option) {
            if (!option.Choices.empty())
                out += "        '" + std::string(command.Name) + " " + std::string(LongName(option)) +
                       "' = @(" + PowerShellList(WithBlanks(option.Choices)) + ")\n";
        });
        if (!command.Takes.Choices.empty())
            out += "        '" + std::string(command.Name) + "' = @(" +
                   PowerShellList(WithBlanks(command.Takes.Choices)) + ")\n";
    });
    return out +
           "    }\n"
           "    $words = if ($typed.Count -lt 2 -or ($typed.Count -eq 2 -and $current -ne '')) { $commands }\n"
           "             elseif ($current -like '-*') { $options[$command] }\n"
           "             elseif ($values[\"$command $last\"]) { $values[\"$command $last\"] }\n"
           "             else { $values[$command] }\n"
           "    $words | Where-Object { $_ -like \"$current*\" } | ForEach-Object {\n"
           "        [System.Management.Automation.CompletionResult]::new($_)\n"
           "    }\n"
           "}\n";
}

int RunCompletion(const Arguments& arguments, Console& console)
{
    const std::string& shell = arguments.Operands().front();
    if (shell == "bash")
        console.Write(BashScript());
    else if (shell == "zsh")
        console.Write(ZshScript());
    else if (shell == "fish")
        console.Write(FishScript());
    else
        console.Write(PowerShellScript());
    return 0;
}

constexpr Example Examples[] = {
    {"completion bash > ~/.local/share/bash-completion/completions/marvane", "bash, from the next shell on"},
    {"completion powershell >> $PROFILE", "PowerShell"},
};

} // namespace

extern const Command CompletionCommand;
constinit const Command CompletionCommand = {
    .Name = "completion",
    .Purpose = "A script that completes commands and options in a shell",
    .Takes =
        {.Text = "SHELL", .Least = 1, .Most = 1, .Choices = "bash,zsh,fish,powershell", .AreFiles = false},
    .Description = "SHELL is bash, zsh, fish or powershell.",
    .Examples = Examples,
    .Run = RunCompletion,
};

} // namespace marvane::tool
