// Runs programs of the build.
#pragma once

#include <string>

#include "tests/support/temporary_folder.h"

namespace marvane::testing {

/// Exit status and output of a program, with CR LF turned into LF.
struct ProgramResult
{
    int Status;
    std::string Output;
    std::string Errors;
};

/// Runs a program of the build folder and waits for its end. `arguments` is a part of a command line, in
/// which the caller quotes paths. The program inherits the environment of the test.
ProgramResult RunProgram(const std::string& name, const std::string& arguments);

/// Runs a program of the build folder by the system's shell and waits for its end. `arguments` is the rest of
/// the shell's line: quoted where needed, with its redirections. Returns the exit status.
int RunByShell(const std::string& name, const std::string& arguments);

/// A path, quoted as an argument.
std::string Quoted(const std::string& path);

} // namespace marvane::testing
