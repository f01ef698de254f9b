#include "tests/support/start_process.h"

#ifdef _WIN32
#include <windows.h>
#else
#include <csignal>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#endif

namespace marvane::testing {

#ifdef _WIN32

namespace {

/// A file that a child process inherits, or a stream of this process.
class InheritedFile
{
public:
    InheritedFile(const std::string& path, DWORD access, DWORD disposition, DWORD own)
        : isOwned_(!path.empty()), handle_(isOwned_ ? Open(path, access, disposition) : GetStdHandle(own))
    {
    }
    ~InheritedFile()
    {
        if (isOwned_)
            CloseHandle(handle_);
    }
    InheritedFile(const InheritedFile&) = delete;
    InheritedFile& operator=(const InheritedFile&) = delete;

    HANDLE Handle() const { return handle_; }

private:
    static HANDLE Open(const std::string& path, DWORD access, DWORD disposition)
    {
        SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
        return CreateFileA(path.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE, &inherited, disposition,
                           FILE_ATTRIBUTE_NORMAL, nullptr);
    }

    bool isOwned_;
    HANDLE handle_;
};

/// Under Wine a process dies at times on a busy machine before its program begins (one of ten thousand), and
/// CreateProcess fails although the program is there. So it is tried again.
constexpr int MostTries = 10;

HANDLE HandleOf(std::intptr_t process)
{
    return reinterpret_cast<HANDLE>(process);
}

} // namespace

std::intptr_t StartProcess(const std::string& program, const std::string& arguments, const Streams& streams)
{
    const bool together = !streams.Output.empty() && streams.Errors == streams.Output;
    const InheritedFile input(streams.Input, GENERIC_READ, OPEN_EXISTING, STD_INPUT_HANDLE);
    const InheritedFile output(streams.Output, GENERIC_WRITE, CREATE_ALWAYS, STD_OUTPUT_HANDLE);
    const InheritedFile errors(together ? "" : streams.Errors, GENERIC_WRITE, CREATE_ALWAYS,
                               STD_ERROR_HANDLE);
    STARTUPINFOA startup = {};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = input.Handle();
    startup.hStdOutput = output.Handle();
    startup.hStdError = together ? output.Handle() : errors.Handle();
    const std::string command = Quoted(program) + " " + arguments;
    for (int tries = 0; tries < MostTries; ++tries) {
        PROCESS_INFORMATION process = {};
        std::string line = command; // CreateProcess may write to it
        if (CreateProcessA(program.c_str(), line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr,
                           &startup, &process)) {
            CloseHandle(process.hThread);
            return reinterpret_cast<std::intptr_t>(process.hProcess);
        }
    }
    return 0;
}

int WaitForProcess(std::intptr_t process)
{
    DWORD code = 0;
    WaitForSingleObject(HandleOf(process), INFINITE);
    GetExitCodeProcess(HandleOf(process), &code);
    CloseHandle(HandleOf(process));
    return static_cast<int>(code);
}

bool ProcessEnded(std::intptr_t process)
{
    return WaitForSingleObject(HandleOf(process), 0) == WAIT_OBJECT_0;
}

void KillProcess(std::intptr_t process)
{
    TerminateProcess(HandleOf(process), 9);
}

#else

std::intptr_t StartProcess(const std::string& program, const std::string& arguments, const Streams& streams)
{
    // The shell takes the line apart; exec, so that the process is the program's.
    std::string line = "exec " + Quoted(program) + " " + arguments;
    if (!streams.Input.empty())
        line += " < " + Quoted(streams.Input);
    if (!streams.Output.empty())
        line += " > " + Quoted(streams.Output);
    if (!streams.Errors.empty())
        line += " 2>" + (streams.Errors == streams.Output ? "&1" : Quoted(streams.Errors));
    std::string shell = "sh";
    std::string option = "-c";
    char* const words[] = {shell.data(), option.data(), line.data(), nullptr};
    pid_t process = 0;
    const int failure = posix_spawn(&process, "/bin/sh", nullptr, nullptr, words, environ);
    return failure == 0 ? process : 0;
}

int WaitForProcess(std::intptr_t process)
{
    int status = 0;
    waitpid(static_cast<pid_t>(process), &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

bool ProcessEnded(std::intptr_t process)
{
    siginfo_t ended = {};
    // The process stays to be waited for.
    waitid(P_PID, static_cast<id_t>(process), &ended, WEXITED | WNOHANG | WNOWAIT);
    return ended.si_pid != 0;
}

void KillProcess(std::intptr_t process)
{
    kill(static_cast<pid_t>(process), SIGKILL);
}

#endif

std::string Quoted(const std::string& path)
{
    return '"' + path + '"';
}

} // namespace marvane::testing
