// The target library is withdrawn before it is unloaded, and unloaded when nobody is inside it.
#include "logger/target/target_library.h"

#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "logger/diagnostics/CMutexWindows.h"
#include "logger/state/process_texts.h"
#include "platform/in_flight.h"
#include "tests/support/session.h"

namespace marvane {
namespace {

using platform::InFlight;

constexpr int ForEver = 1000000000;

class TargetLibraryTest : public ::testing::Test
{
protected:
    TargetLibraryTest()
    {
        LogMutexHold hold;
        TargetLibraryPath = testing::BuildFolder() + testing::LibraryName("fake_target");
    }
    ~TargetLibraryTest() override
    {
        UnloadTargetLibrary();
        LogMutexHold hold;
        TargetLibraryPath.clear();
    }
};

TEST_F(TargetLibraryTest, ACallThatHasBegunDelaysTheUnloading)
{
    LoadTargetLibrary();
    std::atomic<bool> begun = false;
    std::atomic<bool> returned = false;
    std::thread caller([&] {
        const InFlight inside;
        begun = true;
        // The functions are withdrawn first: then the unloading has begun.
        while (TargetLibrary())
            std::this_thread::yield();
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
        returned = true;
    });
    while (!begun)
        std::this_thread::yield();
    UnloadTargetLibrary(ForEver);
    EXPECT_TRUE(returned);
    caller.join();
}

TEST_F(TargetLibraryTest, ACallThatDoesNotReturnDelaysTheUnloadingForAWhileOnly)
{
    LoadTargetLibrary();
    std::atomic<bool> begun = false;
    std::atomic<bool> leave = false;
    std::thread caller([&] {
        const InFlight inside;
        begun = true;
        while (!leave)
            std::this_thread::yield();
    });
    while (!begun)
        std::this_thread::yield();
    UnloadTargetLibrary(1);
    EXPECT_EQ(TargetLibrary(), nullptr);
    leave = true;
    caller.join();
}

TEST_F(TargetLibraryTest, AThreadThatUnloadsFromInsideACallDoesNotWaitAndKeepsWhatItReturnsTo)
{
    LoadTargetLibrary();
    const CPduDll& functions = *TargetLibrary();
    const InFlight call;
    const InFlight destruct;
    UnloadTargetLibrary(ForEver);
    EXPECT_EQ(TargetLibrary(), nullptr);
    EXPECT_EQ(functions.PDUConnect(1, 2), PDU_STATUS_NOERROR);
}

TEST_F(TargetLibraryTest, ThreadsThatCallAllTheTimeNeverMeetALibraryThatIsGone)
{
    std::atomic<bool> end = false;
    std::vector<std::thread> callers;
    for (int i = 0; i < 3; ++i)
        callers.emplace_back([&] {
            while (!end) {
                const InFlight inside;
                if (const CPduDll* const target = TargetLibrary())
                    target->PDUConnect(1, 2);
            }
        });
    for (int i = 0; i < 100; ++i) {
        LoadTargetLibrary();
        std::this_thread::yield();
        UnloadTargetLibrary(ForEver);
    }
    end = true;
    for (std::thread& caller : callers)
        caller.join();
}

} // namespace
} // namespace marvane
