#include "tests/support/child_process.h"

#include <list>
#include <stdexcept>
#include <thread>

#include <gtest/gtest.h>

#include "platform/environment.h"
#include "platform/library.h"

#ifdef _WIN32
#include <windows.h>
#else
#include <csignal>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#endif

namespace marvane::testing {

namespace {

constexpr const char* RoleVariable = "MARVANE_TEST_ROLE";

// Options of the suite that would keep a child from running its one test, or have it write over the suite's
// results.
constexpr const char* OptionsOfTheSuite[] = {
    "GTEST_TOTAL_SHARDS", "GTEST_SHARD_INDEX", "GTEST_SHARD_STATUS_FILE",
    "GTEST_REPEAT",       "GTEST_BRIEF",       "GTEST_OUTPUT"};

#ifdef _WIN32

std::intptr_t Start(const std::string& program, const std::string& filter, const std::string& output)
{
    SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
    const HANDLE file = CreateFileA(output.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                    &inherited, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    STARTUPINFOA startup = {};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdOutput = startup.hStdError = file;
    PROCESS_INFORMATION process = {};
    std::string command = "\"" + program + "\" " + filter;
    const BOOL started = CreateProcessA(program.c_str(), command.data(), nullptr, nullptr, TRUE, 0, nullptr,
                                        nullptr, &startup, &process);
    CloseHandle(file);
    if (!started)
        return 0;
    CloseHandle(process.hThread);
    return reinterpret_cast<std::intptr_t>(process.hProcess);
}

int WaitFor(std::intptr_t process)
{
    const auto handle = reinterpret_cast<HANDLE>(process);
    DWORD code = 0;
    WaitForSingleObject(handle, INFINITE);
    GetExitCodeProcess(handle, &code);
    CloseHandle(handle);
    return static_cast<int>(code);
}

bool Ended(std::intptr_t process)
{
    return WaitForSingleObject(reinterpret_cast<HANDLE>(process), 0) == WAIT_OBJECT_0;
}

void End(std::intptr_t process)
{
    TerminateProcess(reinterpret_cast<HANDLE>(process), 9);
}

#else

std::intptr_t Start(const std::string& program, const std::string& filter, const std::string& output)
{
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, output.c_str(), O_WRONLY | O_CREAT | O_TRUNC,
                                     0666);
    posix_spawn_file_actions_adddup2(&actions, STDOUT_FILENO, STDERR_FILENO);
    std::string own = program;
    std::string argument = filter;
    char* const arguments[] = {own.data(), argument.data(), nullptr};
    pid_t process = 0;
    const int failure = posix_spawn(&process, program.c_str(), &actions, nullptr, arguments, environ);
    posix_spawn_file_actions_destroy(&actions);
    return failure == 0 ? process : 0;
}

int WaitFor(std::intptr_t process)
{
    int status = 0;
    waitpid(static_cast<pid_t>(process), &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

bool Ended(std::intptr_t process)
{
    siginfo_t ended = {};
    // The process stays to be waited for.
    waitid(P_PID, static_cast<id_t>(process), &ended, WEXITED | WNOHANG | WNOWAIT);
    return ended.si_pid != 0;
}

void End(std::intptr_t process)
{
    kill(static_cast<pid_t>(process), SIGKILL);
}

#endif

} // namespace

#ifdef _WIN32

int RunForked(const std::function<void()>&)
{
    return -1;
}

#else

int RunForked(const std::function<void()>& action)
{
    const pid_t process = fork();
    if (process == 0) {
        action();
        std::exit(0);
    }
    return WaitFor(process);
}

#endif

std::string ChildRole()
{
    return platform::EnvironmentVariable(RoleVariable).value_or("");
}

ChildProcess::ChildProcess(const std::string& role, const TemporaryFolder& folder)
    : output_(folder / ("output of " + role))
{
    const std::string path = folder.Path().string();
    const EnvironmentValue roleValue(RoleVariable, role);
    const EnvironmentValue unixFolder("TMPDIR", path);
    const EnvironmentValue windowsFolder("TMP", path);
    const EnvironmentValue otherFolder("TEMP", path);
    std::list<EnvironmentValue> options;
    for (const char* option : OptionsOfTheSuite)
        options.emplace_back(option, std::nullopt);
    const ::testing::TestInfo& test = *::testing::UnitTest::GetInstance()->current_test_info();
    const std::string program = std::filesystem::absolute(platform::OwnModulePath(4096).Path).string();
    process_ =
        Start(program, std::string("--gtest_filter=") + test.test_suite_name() + "." + test.name(), output_);
    if (process_ == 0)
        throw std::runtime_error("no child process of " + program);
}

ChildProcess::~ChildProcess()
{
    if (process_ != 0) {
        Kill();
        Wait();
    }
}

void ChildProcess::Kill()
{
    End(process_);
}

bool ChildProcess::RunsUntil(const std::function<bool()>& reached) const
{
    while (!reached()) {
        // What the child did last may have come between the two questions.
        if (Ended(process_))
            return reached();
        std::this_thread::yield();
    }
    return true;
}

int ChildProcess::Wait()
{
    const int status = WaitFor(std::exchange(process_, 0));
    const bool ran = Output().find("Running 1 test from 1 test suite") != std::string::npos;
    return status == 0 && !ran ? NoTestRun : status;
}

} // namespace marvane::testing
