#include "platform/uninterrupted.h"

#include <csignal>
#include <cstdlib>
#include <pthread.h>
#include <sys/resource.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "platform/files.h"
#include "tests/support/child_process.h"
#include "tests/support/temporary_folder.h"

namespace marvane {
namespace {

using testing::TemporaryFolder;

void LimitFileSizes(rlim_t bytes)
{
    rlimit limit = {};
    getrlimit(RLIMIT_FSIZE, &limit);
    limit.rlim_cur = bytes;
    setrlimit(RLIMIT_FSIZE, &limit);
}

TEST(WriteSignals, OfAScopeAreDiscarded)
{
    const int status = testing::RunForked([] {
        const platform::WriteSignalsHeld held;
        raise(SIGPIPE);
        raise(SIGXFSZ);
    });
    EXPECT_EQ(status, 0);
}

TEST(WriteSignals, ThatWerePendingBeforeStayPending)
{
    const int status = testing::RunForked([] {
        sigset_t pipe;
        sigemptyset(&pipe);
        sigaddset(&pipe, SIGPIPE);
        pthread_sigmask(SIG_BLOCK, &pipe, nullptr);
        raise(SIGPIPE);
        {
            const platform::WriteSignalsHeld held;
        }
        sigset_t pending;
        sigpending(&pending);
        if (sigismember(&pending, SIGPIPE) != 1)
            std::_Exit(1);
    });
    EXPECT_EQ(status, 0);
}

/// Writes to a log beyond the limit for files, with a handler for the signal. The limit is lifted again: what
/// counts the coverage writes at the end of the process.
std::size_t WriteBeyondLimit(const TemporaryFolder& folder, void (*handler)(int))
{
    std::signal(SIGXFSZ, handler);
    const platform::File file = platform::OpenLogFile(folder / "log");
    LimitFileSizes(4);
    const std::size_t written = platform::WriteToFile(file, "long ", "text").Characters;
    platform::CloseFile(file);
    LimitFileSizes(RLIM_INFINITY);
    return written;
}

TEST(LogWrite, BeyondTheLimitForFilesIsCutAndEndsNoProcess)
{
    const TemporaryFolder folder;
    for (void (*const handler)(int) : {SIG_DFL, SIG_IGN})
        EXPECT_EQ(testing::RunForked([&] {
                      if (WriteBeyondLimit(folder, handler) > 4)
                          std::_Exit(1);
                      struct sigaction action;
                      sigaction(SIGXFSZ, nullptr, &action);
                      if (action.sa_handler != handler)
                          std::_Exit(2);
                  }),
                  0);
}

TEST(LogWrite, BeyondTheLimitForFilesDoesNotReachTheApplicationsHandler)
{
    const TemporaryFolder folder;
    EXPECT_EQ(testing::RunForked([&] { WriteBeyondLimit(folder, [](int) { std::_Exit(1); }); }), 0);
}

volatile std::sig_atomic_t HandlerCalls = 0;

/// Opens a log, then takes the signal over as an application does, and writes; returns the handler's calls.
int CallsOfLaterHandler(const TemporaryFolder& folder, rlim_t limit)
{
    const platform::File file = platform::OpenLogFile(folder / "log");
    std::signal(SIGXFSZ, [](int) { HandlerCalls = HandlerCalls + 1; });
    LimitFileSizes(limit);
    for (int i = 0; i < 3; ++i)
        platform::WriteToFile(file, "long ", "text");
    return HandlerCalls;
}

TEST(LogWrite, AcrossTheLimitForFilesDoesNotReachAHandlerInstalledAfterTheLogWasOpened)
{
    const TemporaryFolder folder;
    EXPECT_EQ(testing::RunForked([&] { std::_Exit(CallsOfLaterHandler(folder, 4)); }), 0);
    EXPECT_EQ(testing::FileText(folder / "log"), "long");
}

TEST(LogWrite, AtTheLimitForFilesReachesAHandlerInstalledAfterTheLogWasOpenedOnce)
{
    const TemporaryFolder folder;
    EXPECT_EQ(testing::RunForked([&] { std::_Exit(CallsOfLaterHandler(folder, 0)); }), 1);
}

TEST(LogWrite, LeavesTheSignalOfTheApplicationsOwnWriteItsEffect)
{
    const TemporaryFolder folder;
    const int status = testing::RunForked([&] {
        const platform::File log = platform::OpenLogFile(folder / "log");
        const platform::File own = platform::OpenLogFile(folder / "own");
        LimitFileSizes(0);
        platform::WriteToFile(log, "text", "");
        if (write(own, "text", 4) == 4)
            std::_Exit(0);
    });
    EXPECT_NE(status, 0) << "by default the signal ends the process";
}

void* WriteWithPendingCancellation(void* file)
{
    pthread_cancel(pthread_self());
    platform::WriteToFile(*static_cast<platform::File*>(file), "whole ", "line\n");
    *static_cast<platform::File*>(file) = platform::NoFile;
    pthread_testcancel();
    return nullptr;
}

TEST(LogWrite, IsNoCancellationPoint)
{
#ifdef MARVANE_SANITIZED
    GTEST_SKIP() << "the sanitizers take the end of a cancelled thread for a fault";
#endif
    const TemporaryFolder folder;
    const platform::File file = platform::OpenLogFile(folder / "log");
    platform::File shared = file;
    pthread_t thread;
    ASSERT_EQ(pthread_create(&thread, nullptr, WriteWithPendingCancellation, &shared), 0);
    void* result = nullptr;
    pthread_join(thread, &result);
    EXPECT_EQ(result, PTHREAD_CANCELED) << "the cancellation takes effect later";
    EXPECT_EQ(shared, platform::NoFile);
    EXPECT_EQ(testing::FileText(folder / "log"), "whole line\n");
    platform::CloseFile(file);
}

} // namespace
} // namespace marvane
