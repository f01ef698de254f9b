// The mutex outlives the thread that has it.
#include "platform/lock.h"

#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include <windows.h>

namespace marvane {
namespace {

class LockOfADeadThread : public ::testing::Test
{
protected:
    ~LockOfADeadThread() override
    {
        platform::DestroyMutex(mutex);
        CloseHandle(taken);
    }

    /// Terminates a thread that has the mutex, twice. Returns its id.
    DWORD TerminateOwner()
    {
        DWORD id = 0;
        const HANDLE owner = CreateThread(nullptr, 0, TakeForever, this, 0, &id);
        WaitForSingleObject(taken, INFINITE);
        TerminateThread(owner, 0);
        WaitForSingleObject(owner, INFINITE);
        CloseHandle(owner);
        return id;
    }

    void ExpectTakenOverAndUsable()
    {
        EXPECT_TRUE(platform::LockMutex(mutex, -1));
        EXPECT_TRUE(platform::UnlockMutex(mutex));
        EXPECT_TRUE(platform::UnlockMutex(mutex));
        EXPECT_FALSE(platform::UnlockMutex(mutex));
        std::thread([&] {
            EXPECT_TRUE(platform::LockMutex(mutex, 1));
            EXPECT_TRUE(platform::UnlockMutex(mutex));
        }).join();
    }

    const platform::Mutex mutex = platform::CreateRecursiveMutex();

private:
    static DWORD WINAPI TakeForever(void* test)
    {
        const auto& self = *static_cast<LockOfADeadThread*>(test);
        platform::LockMutex(self.mutex, -1);
        platform::LockMutex(self.mutex, -1);
        SetEvent(self.taken);
        Sleep(INFINITE);
        return 0;
    }

    const HANDLE taken = CreateEventA(nullptr, FALSE, FALSE, nullptr);
};

TEST_F(LockOfADeadThread, IsTakenOverByAWaiter)
{
    TerminateOwner();
    EXPECT_FALSE(platform::LockMutex(mutex, -1)) << "reported as the system's own mutex does";
    ExpectTakenOverAndUsable();
}

TEST_F(LockOfADeadThread, IsTakenOverInATimedWait)
{
    TerminateOwner();
    EXPECT_FALSE(platform::LockMutex(mutex, 1));
    ExpectTakenOverAndUsable();
}

TEST_F(LockOfADeadThread, IsTakenOverByOneOfManyWaiters)
{
    TerminateOwner();
    int count = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([&] {
            platform::LockMutex(mutex, -1);
            ++count;
            EXPECT_TRUE(platform::UnlockMutex(mutex));
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(count, 4);
}

/// A thread that lives until it is told to end.
struct LivingThread
{
    LivingThread() { handle = CreateThread(nullptr, 0, Await, end, 0, &id); }
    ~LivingThread()
    {
        SetEvent(end);
        WaitForSingleObject(handle, INFINITE);
        CloseHandle(handle);
        CloseHandle(end);
    }
    LivingThread(const LivingThread&) = delete;
    LivingThread& operator=(const LivingThread&) = delete;
    static DWORD WINAPI Await(void* event) { return WaitForSingleObject(event, INFINITE); }

    HANDLE end = CreateEventA(nullptr, TRUE, FALSE, nullptr);
    HANDLE handle;
    DWORD id = 0;
};

TEST_F(LockOfADeadThread, IsTakenOverAlthoughAnotherThreadHasItsIdNow)
{
    const DWORD dead = TerminateOwner();
    for (int i = 0; i < 5000; ++i) {
        const LivingThread other;
        if (other.id != dead)
            continue;
        EXPECT_FALSE(platform::LockMutex(mutex, -1));
        return ExpectTakenOverAndUsable();
    }
    GTEST_SKIP() << "the system gave the id to no other thread";
}

TEST_F(LockOfADeadThread, IsNotTheLockOfTheThreadThatHasItsIdNow)
{
    const DWORD dead = TerminateOwner();
    for (int i = 0; i < 5000; ++i) {
        bool same = false;
        bool released = true;
        std::thread([&] {
            same = GetCurrentThreadId() == dead;
            released = same && platform::UnlockMutex(mutex);
        }).join();
        if (!same)
            continue;
        EXPECT_FALSE(released);
        return;
    }
    GTEST_SKIP() << "the system gave the id to no other thread";
}

} // namespace
} // namespace marvane
