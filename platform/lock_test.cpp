// The recursive mutex under contention.
#include "platform/lock.h"

#include <latch>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace marvane {
namespace {

class Lock : public ::testing::Test
{
protected:
    ~Lock() override { platform::DestroyMutex(mutex); }

    /// Whether another thread gets the mutex without waiting long; it releases it again.
    bool IsFreeForOthers() const
    {
        bool taken = false;
        std::thread([&] {
            taken = platform::LockMutex(mutex, 1);
            platform::UnlockMutex(mutex);
        }).join();
        return taken;
    }

    const platform::Mutex mutex = platform::CreateRecursiveMutex();
};

TEST_F(Lock, ManyThreadsTakeItOneAtATime)
{
    constexpr int threadCount = 8;
    constexpr int rounds = 5000;
    int count = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < threadCount; ++i)
        threads.emplace_back([&] {
            for (int round = 0; round < rounds; ++round) {
                platform::LockMutex(mutex, -1);
                platform::LockMutex(mutex, -1);
                ++count;
                platform::UnlockMutex(mutex);
                platform::UnlockMutex(mutex);
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(count, threadCount * rounds);
}

TEST_F(Lock, EverySleepingThreadGetsIt)
{
    constexpr int threadCount = 8;
    platform::LockMutex(mutex, -1);
    std::latch tried(threadCount);
    std::vector<std::thread> threads;
    for (int i = 0; i < threadCount; ++i)
        threads.emplace_back([&] {
            EXPECT_FALSE(platform::LockMutex(mutex, 1));
            tried.count_down();
            EXPECT_TRUE(platform::LockMutex(mutex, -1));
            std::this_thread::yield();
            EXPECT_TRUE(platform::UnlockMutex(mutex));
        });
    tried.wait();
    EXPECT_FALSE(IsFreeForOthers());
    EXPECT_TRUE(platform::UnlockMutex(mutex));
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_TRUE(IsFreeForOthers());
}

TEST_F(Lock, IsReleasedByItsOwnerAlone)
{
    platform::LockMutex(mutex, -1);
    std::thread([&] { EXPECT_FALSE(platform::UnlockMutex(mutex)); }).join();
    EXPECT_TRUE(platform::UnlockMutex(mutex));
    EXPECT_FALSE(platform::UnlockMutex(mutex));
}

TEST_F(Lock, ThatCouldNotBeMadeIsNeverTaken)
{
    EXPECT_FALSE(platform::LockMutex(nullptr, -1));
    EXPECT_FALSE(platform::UnlockMutex(nullptr));
    platform::DestroyMutex(nullptr);
}

} // namespace
} // namespace marvane
