// Options that several commands share: groups for their records.
#pragma once

#include "tool/console/command.h"

namespace marvane::tool {

/// The operands of a command that reads logs.
inline constexpr Operands LogOperands = {.Text = "[LOG]...", .Most = AnyNumber};

/// What LOG may be, for the description of a command that reads logs.
inline constexpr std::string_view WhatLogsAre =
    "LOG is a file (.gz too), a folder, a pattern or - for standard input. Without it, the newest session in the "
    "log folder of the configuration that applies here.";

inline constexpr Option LogOptionList[] = {
    {"--entry", "NAME", "Without LOG: the newest session of this entry of the root description file"},
};
inline constexpr OptionGroup LogOptions = {"Which log", LogOptionList};

inline constexpr Option TimeOptionList[] = {
    {"--since", "TIME",
     "From this time on: 14:03:07.250, '2026-11-25 14:03', or -5m (h, m, s) before the end"},
    {"--until", "TIME", "Up to this time, in the same forms"},
};
inline constexpr OptionGroup TimeOptions = {"Part of the log", TimeOptionList};

inline constexpr Option FollowOptionList[] = {
    {"-f,--follow", "", "Go on with what is added to the log, across changes of file and new sessions"},
    {"--until-match", "TEXT", "With -f: end with status 0 as soon as a line that is shown contains TEXT"},
    {"--timeout", "SECONDS", "With -f: end with status 1 after this time"},
};
inline constexpr OptionGroup FollowOptions = {"Following", FollowOptionList};

inline constexpr Option NameOptionList[] = {
    {"--mdf", "FILE",
     "Names and defaults from this module description file. Without it, from the one beside the library's entry in "
     "the root description file"},
    {"--root", "FILE", "This root description file instead of the machine's", {}, true},
};
inline constexpr OptionGroup NameOptions = {"Names", NameOptionList};

} // namespace marvane::tool
