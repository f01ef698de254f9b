#include "tests/support/child_program.h"

#include <stdexcept>

#include "platform/files.h"
#include "tests/support/session.h"

namespace marvane::testing {

int RunWithStreams(const std::string& name, const std::string& arguments, const Streams& streams)
{
    const std::string program = BuildFolder() + name + (platform::PathSeparator == '\\' ? ".exe" : "");
    const std::intptr_t process = StartProcess(program, arguments, streams);
    if (process == 0)
        throw std::runtime_error("could not start " + program);
    return WaitForProcess(process);
}

ProgramResult RunProgram(const std::string& name, const std::string& arguments, const std::string& input)
{
    const TemporaryFolder folder;
    const std::string output = folder / "output", errors = folder / "errors";
    const int status = RunWithStreams(name, arguments, {input, output, errors});
    return {status, FileText(output), FileText(errors)};
}

} // namespace marvane::testing
