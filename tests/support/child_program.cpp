#include "tests/support/child_program.h"

#include <cstdlib>

#include "platform/files.h"
#include "tests/support/session.h"

namespace marvane::testing {

namespace {

bool OnWindows()
{
    return platform::PathSeparator == '\\';
}

/// What the Windows shell returns if it did not start the program. Under Wine that happens at times on a busy
/// machine although the program is there, so it is asked again.
constexpr int NotStarted = 9009;
constexpr int MostTries = 10;

} // namespace

int RunByShell(const std::string& name, const std::string& arguments)
{
    std::string command = Quoted(BuildFolder() + name + (OnWindows() ? ".exe" : "")) + " " + arguments;
    // The Windows shell removes the first and the last quote of a line.
    if (OnWindows())
        command = Quoted(command);
    int status = std::system(command.c_str());
    for (int tries = 1; OnWindows() && status == NotStarted && tries < MostTries; ++tries)
        status = std::system(command.c_str());
    // Elsewhere the exit status is the second byte of the result of system(), and a signal the first one.
    return OnWindows() || status % 256 != 0 ? status : status / 256;
}

ProgramResult RunProgram(const std::string& name, const std::string& arguments)
{
    const TemporaryFolder folder;
    const std::string output = folder / "output", errors = folder / "errors";
    const int status = RunByShell(name, arguments + " > " + Quoted(output) + " 2> " + Quoted(errors));
    return {status, FileText(output), FileText(errors)};
}

std::string Quoted(const std::string& path)
{
    return '"' + path + '"';
}

} // namespace marvane::testing
