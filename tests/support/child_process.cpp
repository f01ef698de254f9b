#include "tests/support/child_process.h"

#include <list>
#include <stdexcept>
#include <thread>

#include <gtest/gtest.h>

#include "platform/environment.h"
#include "platform/library.h"
#include "tests/support/start_process.h"

#ifndef _WIN32
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
    return WaitForProcess(process);
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
        StartProcess(program, std::string("--gtest_filter=") + test.test_suite_name() + "." + test.name(),
                     {"", output_, output_});
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
    KillProcess(process_);
}

bool ChildProcess::RunsUntil(const std::function<bool()>& reached) const
{
    while (!reached()) {
        // What the child did last may have come between the two questions.
        if (ProcessEnded(process_))
            return reached();
        std::this_thread::yield();
    }
    return true;
}

int ChildProcess::Wait()
{
    const int status = WaitForProcess(std::exchange(process_, 0));
    const bool ran = Output().find("Running 1 test from 1 test suite") != std::string::npos;
    return status == 0 && !ran ? NoTestRun : status;
}

} // namespace marvane::testing
