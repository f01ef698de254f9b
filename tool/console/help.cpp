#include "tool/console/help.h"

#include <algorithm>

namespace marvane::tool {

const std::string_view ProgramPurpose =
    "logs of a D-PDU API library: put the logger in place, read, explain, export";

namespace {

constexpr std::size_t MostColumns = 100;
constexpr std::size_t TextColumn = 26;

constexpr Example Steps[] = {
    {"summary", "one page on the newest log"},
    {"errors", "what failed, and why"},
    {"talk", "each request with its answer and how long it took"},
    {"diff OLD.LGR NEW.LGR", "what differs from another run"},
};

/// The end of the part of a text that fits `room` columns: at its line end, else at a blank.
std::size_t BreakAt(std::string_view text, std::size_t room)
{
    if (const std::size_t end = text.substr(0, room + 1).find('\n'); end != std::string_view::npos)
        return end;
    if (text.size() <= room)
        return text.size();
    const std::size_t blank = text.rfind(' ', room);
    return blank == std::string_view::npos || blank == 0 ? room : blank;
}

/// Adds a text in lines of at most MostColumns, each behind `indent` blanks; the first line goes on where
/// the last one ended.
void AddWrapped(std::string& out, std::string_view text, std::size_t indent)
{
    for (bool first = true; first || !text.empty(); first = false) {
        const std::size_t end = BreakAt(text, MostColumns - indent);
        if (!first)
            out.append(indent, ' ');
        out.append(text.substr(0, end)) += '\n';
        text.remove_prefix(std::min(text.size(), end + 1));
    }
}

/// A label with its text beside it, or on the next line if the label is long.
void AddRow(std::string& out, std::string_view label, std::string_view text, std::size_t column)
{
    out.append("  ").append(label);
    if (label.size() + 4 > column) {
        out += '\n';
        out.append(column, ' ');
    } else {
        out.append(column - label.size() - 2, ' ');
    }
    AddWrapped(out, text, column);
}

void AddExamples(std::string& out, std::span<const Example> examples)
{
    std::size_t column = 0;
    for (const Example& example : examples)
        column = std::max(column, example.Line.size() + 13);
    for (const Example& example : examples)
        AddRow(out, "marvane " + std::string(example.Line), example.Text, std::min<std::size_t>(column, 60));
}

void AddOptions(std::string& out, const OptionGroup& group)
{
    out.append("\n").append(group.Heading).append(":\n");
    for (const Option& option : group.Options)
        AddRow(out, OptionLabel(option), option.Text, TextColumn);
}

} // namespace

std::span<const Example> FirstSteps()
{
    return Steps;
}

std::string OptionLabel(const Option& option)
{
    std::string label;
    if (option.Names.starts_with("--"))
        label = "    "; // Long names stand in one column.
    for (const char letter : option.Names)
        label += letter == ',' ? std::string(", ") : std::string(1, letter);
    if (!option.Value.empty())
        label.append(option.IsValueOptional ? " [" : " ")
            .append(option.Value)
            .append(option.IsValueOptional ? "]" : "");
    return label;
}

std::string UsageLine(const Command& command)
{
    std::string line = "marvane " + std::string(command.Name) + " [OPTION]...";
    if (!command.Takes.Text.empty())
        line.append(" ").append(command.Takes.Text);
    return line;
}

std::string VersionLine()
{
    return "marvane " MARVANE_VERSION;
}

std::string ProgramHelp()
{
    std::string out = "marvane: ";
    AddWrapped(out, ProgramPurpose, 9);
    out += "\nExamples:\n";
    AddExamples(out, FirstSteps());
    for (const CommandGroup& group : AllCommands()) {
        out.append("\n").append(group.Heading).append(":\n");
        for (const Command* command : group.Commands)
            AddRow(out, command->Name, command->Purpose, 16);
    }
    out +=
        "\nmarvane COMMAND --help shows examples and options of a command; marvane --version the version.\n";
    return out;
}

std::string CommandHelp(const Command& command)
{
    std::string out = std::string(command.Name) + ": ";
    AddWrapped(out, command.Purpose, command.Name.size() + 2);
    if (!command.Examples.empty()) {
        out += "\nExamples:\n";
        AddExamples(out, command.Examples);
    }
    out += "\nUsage: " + UsageLine(command) + "\n";
    if (!command.Description.empty()) {
        out += '\n';
        AddWrapped(out, command.Description, 0);
    }
    for (const OptionGroup& group : command.Groups)
        AddOptions(out, group);
    AddOptions(out, CommonOptions);
    out += "\nExit status: ";
    AddWrapped(out, command.ExitStatus, 13);
    return out;
}

} // namespace marvane::tool
