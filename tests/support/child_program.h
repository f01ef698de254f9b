// Runs programs of the build.
#pragma once

#include <string>

#include "tests/support/start_process.h"
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
/// which the caller quotes paths. `input` is a file that it gets as its standard input, in place of the
/// test's. The program inherits the environment of the test.
ProgramResult RunProgram(const std::string& name, const std::string& arguments,
                         const std::string& input = "");

/// The same with all three streams; returns the exit status.
int RunWithStreams(const std::string& name, const std::string& arguments, const Streams& streams);

} // namespace marvane::testing
