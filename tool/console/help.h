// The help texts, made from the records of the commands.
#pragma once

#include <string>

#include "tool/console/command.h"

namespace marvane::tool {

/// `marvane --help`: what the program is for and every command.
std::string ProgramHelp();

/// `marvane COMMAND --help`: examples first, then the options.
std::string CommandHelp(const Command& command);

/// "marvane show [OPTION]... [LOG]..."
std::string UsageLine(const Command& command);

/// "-n, --limit NUMBER": an option as the help shows it.
std::string OptionLabel(const Option& option);

/// The name and the four numbers of the version.
std::string VersionLine();

/// What the program is, one line.
extern const std::string_view ProgramPurpose;

/// A few command lines that answer the first questions.
std::span<const Example> FirstSteps();

} // namespace marvane::tool
