// Options that the commands for the set-up share.
#pragma once

#include "tool/console/command.h"

namespace marvane::tool {

inline constexpr Option RootOptionList[] = {
    {.Names = "--root",
     .Value = "FILE",
     .Text = "This root description file instead of the machine's; may be given several times",
     .Repeats = true},
};
inline constexpr OptionGroup RootOptions = {"Root description file", RootOptionList};

inline constexpr Option CopyOptionList[] = {
    {"--to", "FOLDER", "Where the copies are, if install was told so"},
};
inline constexpr OptionGroup CopyOptions = {"Copies of Marvane", CopyOptionList};

inline constexpr Option JsonOptionList[] = {
    {"--json", "", "One JSON document instead of the text"},
};
inline constexpr OptionGroup JsonOptions = {"Output", JsonOptionList};

} // namespace marvane::tool
