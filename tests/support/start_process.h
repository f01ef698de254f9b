// Starts programs, waits for them and ends them.
#pragma once

#include <cstdint>
#include <string>

namespace marvane::testing {

/// Paths of the files that a program gets as its standard streams. Those without a path are the test's own;
/// output and errors may go to one file.
struct Streams
{
    std::string Input;
    std::string Output;
    std::string Errors;
};

/// Starts a program. `arguments` is a part of a command line, in which the caller quotes paths. Returns its
/// id or handle, to be given to WaitForProcess at last; 0 if it could not be started.
std::intptr_t StartProcess(const std::string& program, const std::string& arguments, const Streams& streams);

/// Waits for the end of a process and returns its exit status; another number than 0 for a signal or a fault.
int WaitForProcess(std::intptr_t process);

/// True once a process has ended. It is still to be waited for.
bool ProcessEnded(std::intptr_t process);

/// Kills a process.
void KillProcess(std::intptr_t process);

/// A path, quoted as an argument.
std::string Quoted(const std::string& path);

} // namespace marvane::testing
