// `marvane lnav`: the format file with which the log viewer lnav understands logs.
#include "tool/console/arguments.h"
#include "tool/console/command.h"
#include "tool/console/console.h"
#include "tool/export/lnav_format.h"

namespace marvane::tool {

namespace {

int RunLnav(const Arguments&, Console& console)
{
    console.Write(LnavFormat());
    return 0;
}

constexpr Example Examples[] = {
    {"lnav > marvane.json && lnav -i marvane.json", "install it; then lnav opens logs with it"},
};

} // namespace

extern const Command LnavCommand;
constinit const Command LnavCommand = {
    .Name = "lnav",
    .Purpose = "A format file for the log viewer lnav",
    .Description =
        "With it lnav (0.11 and later) shows failed calls as errors and decoded lines as details, and "
        "has the table marvane_log with thread, call, arguments, status and code for its SQL. Lines have no "
        "date: lnav takes that of the file's last change.",
    .Examples = Examples,
    .Run = RunLnav,
};

} // namespace marvane::tool
