// The helper process of `check` and `install`: loads one library as the logger library would. Not in the
// table of commands, since nobody types it.
#include "platform/library.h"
#include "tool/console/arguments.h"
#include "tool/console/console.h"
#include "tool/setup/library_findings.h"

namespace marvane::tool {

namespace {

int RunLoadLibrary(const Arguments& arguments, Console& console)
{
    const platform::LoadedLibrary loaded = platform::LoadTargetLibrary(arguments.Operands().front());
    if (!loaded.Handle)
        console.Write(loaded.Error + "\n");
    console.Flush();
    return loaded.Handle ? 0 : 1;
}

} // namespace

extern const Command LoadLibraryCommand;
constinit const Command LoadLibraryCommand = {
    .Name = LoadHelperName,
    .Purpose = "Load a library and report the system's reason if that fails",
    .Takes = {.Text = "FILE", .Least = 1, .Most = 1},
    .Run = RunLoadLibrary,
};

} // namespace marvane::tool
