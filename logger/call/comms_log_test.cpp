#include "logger/call/comms_log.h"

#include <thread>

#include <gtest/gtest.h>

#include "logger/diagnostics/CMutexWindows.h"
#include "platform/in_flight.h"
#include "tests/support/logger_state.h"

namespace marvane {
namespace {

using CommsReport = testing::LoggerState;

/// True if another thread is found inside at one of very many looks.
bool OtherThreadIsInside()
{
    for (int look = 0; look < 1000000; ++look) {
        if (!platform::WaitForOthersToLeave(0))
            return true;
        std::this_thread::yield();
    }
    return false;
}

TEST_F(CommsReport, ThatHasBegunDelaysTheUnloadingOfTheTargetLibraryThatMadeIt)
{
    CommsLogFile = ApiLogFile.load();
    std::thread reporter;
    {
        // The report cannot end before its line is written.
        const LogMutexHold hold;
        reporter = std::thread([] { CommsLogCallback("text", 1, 256, 0, nullptr); });
        EXPECT_TRUE(OtherThreadIsInside());
    }
    constexpr int forEver = 1000000000;
    EXPECT_TRUE(platform::WaitForOthersToLeave(forEver));
    reporter.join();
    EXPECT_NE(Log().find(" text\n"), std::string::npos);
}

} // namespace
} // namespace marvane
