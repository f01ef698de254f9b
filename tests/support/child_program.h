// A program of the build that a test runs to its end.
#pragma once

#include <string>

#include "tests/support/temporary_folder.h"

namespace marvane::testing {

/// What came of a program: line ends are line feeds.
struct ProgramResult
{
    int Status;
    std::string Output;
    std::string Errors;
};

/// Runs a program of the build folder with arguments as a command line has them; paths are quoted by the
/// caller. It has the environment of the test.
ProgramResult RunProgram(const std::string& name, const std::string& arguments);

/// A path as an argument.
std::string Quoted(const std::string& path);

} // namespace marvane::testing
