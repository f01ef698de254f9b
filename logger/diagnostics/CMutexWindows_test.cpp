#include "logger/diagnostics/CMutexWindows.h"

#include <thread>

#include <gtest/gtest.h>

namespace marvane {
namespace {

/// Whether another thread gets the mutex without waiting long; it releases it again.
bool IsFreeForOthers(CMutexWindows& mutex)
{
    bool taken = false;
    std::thread other([&] {
        taken = mutex.LockTimed(1);
        if (taken)
            mutex.Unlock();
    });
    other.join();
    return taken;
}

TEST(Mutex, IsRecursiveAndNeedsAsManyReleases)
{
    CMutexWindows mutex;
    EXPECT_TRUE(mutex.Lock());
    EXPECT_TRUE(mutex.Lock());
    EXPECT_TRUE(mutex.Unlock());
    EXPECT_FALSE(IsFreeForOthers(mutex));
    EXPECT_TRUE(mutex.Unlock());
    EXPECT_TRUE(IsFreeForOthers(mutex));
}

TEST(Mutex, ATimedWaitOfNothingOrLessEndsWithoutTheMutex)
{
    CMutexWindows mutex;
    mutex.Lock();
    bool zero = true;
    bool negative = true;
    std::thread other([&] {
        zero = mutex.LockTimed(0);
        negative = mutex.LockTimed(-5);
    });
    other.join();
    EXPECT_FALSE(zero);
    EXPECT_FALSE(negative);
    mutex.Unlock();
}

TEST(Mutex, ATimedWaitGetsAFreeMutex)
{
    CMutexWindows mutex;
    EXPECT_TRUE(mutex.LockTimed(0));
    EXPECT_TRUE(mutex.Unlock());
}

TEST(Mutex, LeavingOneThatIsNotHeldFails)
{
    CMutexWindows mutex;
    EXPECT_FALSE(mutex.Unlock());
}

TEST(Mutex, EndsUnheldOrHeld)
{
    {
        CMutexWindows unheld;
    }
    CMutexWindows held;
    held.Lock();
}

} // namespace
} // namespace marvane
