#include "tests/support/child_program.h"

#include <cstdlib>

#include "platform/files.h"
#include "tests/support/session.h"

namespace marvane::testing {

ProgramResult RunProgram(const std::string& name, const std::string& arguments)
{
    const bool onWindows = platform::PathSeparator == '\\';
    const TemporaryFolder folder;
    const std::string output = folder / "output", errors = folder / "errors";
    std::string command = Quoted(BuildFolder() + name + (onWindows ? ".exe" : "")) + " " + arguments + " > " +
                          Quoted(output) + " 2> " + Quoted(errors);
    // The Windows shell removes the first and the last quote of a line.
    if (onWindows)
        command = Quoted(command);
    const int status = std::system(command.c_str());
    // Elsewhere the exit status is the second byte of the result of system(), and a signal the first one.
    return {onWindows || status % 256 != 0 ? status : status / 256, FileText(output), FileText(errors)};
}

std::string Quoted(const std::string& path)
{
    return '"' + path + '"';
}

} // namespace marvane::testing
