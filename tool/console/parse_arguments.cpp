// The only source that includes CLI11: it is large, and its types stop here.
#include <CLI/CLI.hpp>

#include <algorithm>
#include <limits>

#include "tool/console/arguments.h"
#include "tool/console/nearest.h"

namespace marvane::tool {

namespace {

struct BoundOption
{
    const Option* Described;
    CLI::Option* Parsed;
};

CLI::Option* Bind(CLI::App& parser, const Option& option)
{
    const std::string names(option.Names);
    if (option.Value.empty())
        return parser.add_flag(names)->disable_flag_override();
    if (option.IsValueOptional)
        return parser.add_flag(names); // "--name" or "--name=VALUE"
    using Policy = CLI::MultiOptionPolicy;
    return parser.add_option(names)->expected(1)->multi_option_policy(option.Repeats ? Policy::TakeAll
                                                                                     : Policy::TakeLast);
}

[[noreturn]] void RefuseUnknownOption(const Command& command, const std::string& word)
{
    const std::string name = word.substr(0, word.find('='));
    std::vector<std::string_view> known;
    ForEachOption(command, [&](const Option& option) { known.push_back(LongName(option)); });
    throw UsageError("unknown option '" + name + "'" + DidYouMean(name, known));
}

[[noreturn]] void RefuseChoice(const std::string& what, const std::string& value, std::string_view choices)
{
    std::string list(choices);
    for (std::size_t comma = list.find(','); comma != std::string::npos; comma = list.find(',', comma + 2))
        list.insert(comma + 1, " ");
    throw UsageError(what + " '" + value + "' is none of: " + list + DidYouMean(value, Words(choices)));
}

void CheckChoice(const std::string& what, const std::string& value, std::string_view choices)
{
    if (choices.empty())
        return;
    for (const std::string_view choice : Words(choices))
        if (choice == value)
            return;
    RefuseChoice(what, value, choices);
}

bool IsMadeOf(std::string_view list, std::string_view choices)
{
    const std::vector<std::string_view> known = Words(choices);
    return !list.empty() && std::ranges::all_of(Words(list), [&](std::string_view word) {
        return std::ranges::find(known, word) != known.end();
    });
}

/// Joins options whose value is optional with the word after them, if that is a value.
void JoinOptionalValues(const Command& command, std::vector<std::string>& words)
{
    ForEachOption(command, [&](const Option& option) {
        for (std::size_t i = 0; option.IsValueOptional && i + 1 < words.size() && words[i] != "--"; ++i)
            if (words[i] == LongName(option) && IsMadeOf(words[i + 1], option.Choices)) {
                words[i] += "=" + words[i + 1];
                words.erase(words.begin() + static_cast<std::ptrdiff_t>(i) + 1);
            }
    });
}

/// The values that a user gave; a flag has none.
std::vector<std::string> ValuesOf(const BoundOption& option)
{
    const Option& described = *option.Described;
    std::vector<std::string> values =
        described.Value.empty() ? std::vector<std::string>() : option.Parsed->results();
    if (described.IsValueOptional)
        std::erase(values, "true"); // what stands for a flag without value
    return values;
}

void CheckOperands(const Command& command, const std::vector<std::string>& operands)
{
    const std::string name(command.Name);
    if (operands.size() < command.Takes.Least)
        throw UsageError(name + " needs " + std::string(command.Takes.Text));
    if (operands.size() > command.Takes.Most)
        throw UsageError("one argument too many for " + name + ": '" + operands[command.Takes.Most] + "'");
    for (const std::string& operand : operands)
        CheckChoice(name + ":", operand, command.Takes.Choices);
}

/// CLI11 tells which option it means in the words of the message only: "--link: 1 required ... missing" or
/// "no-pager was given a ...".
[[noreturn]] void RefuseMismatch(const std::string& message)
{
    const std::size_t colon = message.find(':');
    if (colon != std::string::npos)
        throw UsageError("option " + message.substr(0, colon) + " needs a value");
    throw UsageError("option --" + message.substr(0, message.find(' ')) + " takes no value");
}

void Run(CLI::App& parser, std::vector<std::string> words)
{
    std::reverse(words.begin(), words.end()); // It takes them from the back.
    try {
        parser.parse(std::move(words));
    } catch (const CLI::ArgumentMismatch& mismatch) {
        RefuseMismatch(mismatch.what());
    } catch (const CLI::ParseError& error) {
        throw UsageError(error.what());
    }
}

} // namespace

Arguments ParseArguments(const Command& command, std::vector<std::string> words)
{
    CLI::App parser;
    parser.set_help_flag();
    parser.allow_windows_style_options(false); // A path may begin with a slash.
    parser.allow_extras();
    std::vector<BoundOption> bound;
    ForEachOption(command, [&](const Option& option) { bound.push_back({&option, Bind(parser, option)}); });
    CLI::Option* const operands =
        parser.add_option("operands")->expected(0, std::numeric_limits<short>::max())->allow_extra_args();
    JoinOptionalValues(command, words);
    Run(parser, std::move(words));
    for (const std::string& extra : parser.remaining())
        if (extra != "--") // The mark before operands counts as one.
            RefuseUnknownOption(command, extra);

    Arguments arguments;
    for (const BoundOption& option : bound) {
        const std::string_view name = LongName(*option.Described);
        if (option.Parsed->count() == 0)
            continue;
        arguments.Set(name, ValuesOf(option));
        for (const std::string& value : arguments.Values(name)) {
            const bool isList = option.Described->IsList;
            for (const std::string_view part : isList ? Words(value) : std::vector<std::string_view>{value})
                CheckChoice(std::string(name), std::string(part), option.Described->Choices);
        }
    }
    arguments.SetOperands(operands->results());
    if (!arguments.Has("--help"))
        CheckOperands(command, arguments.Operands());
    return arguments;
}

} // namespace marvane::tool
