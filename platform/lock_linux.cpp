#include "platform/lock.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdint>
#include <ctime>
#include <linux/futex.h>
#include <new>
#include <sys/syscall.h>
#include <unistd.h>

namespace marvane::platform {

namespace {

/// A word that is taken by an exchange, and slept at only when that fails for a while. The owner is kept
/// beside it: it may take the mutex again, and nobody else may leave it.
struct RecursiveMutex
{
    enum : std::uint32_t
    {
        Free,
        Taken,
        Awaited ///< taken, and somebody may sleep
    };
    std::atomic<std::uint32_t> State = Free;
    std::atomic<void*> Owner = nullptr; ///< a thread by its pointer: to be had without a call
    unsigned Depth = 0;
};

// The first mutex of the library lasts to the end of the process, and goes with the library if that is
// unloaded.
constinit RecursiveMutex FirstMutex;
constinit std::atomic<bool> FirstMutexTaken = false;

// Between the looks of a waiting thread at the mutex. They grow, since each look takes the word from the
// cache of its owner, who has more use for it; together they last some 50 microseconds.
constexpr int FirstPauses = 16;
constexpr int LastPauses = 1024;

bool Take(RecursiveMutex& mutex)
{
    std::uint32_t expected = RecursiveMutex::Free;
    return mutex.State.compare_exchange_strong(expected, RecursiveMutex::Taken, std::memory_order_acquire,
                                               std::memory_order_relaxed);
}

timespec FromNow(int milliseconds)
{
    timespec until;
    clock_gettime(CLOCK_REALTIME, &until);
    until.tv_sec += milliseconds / 1000;
    until.tv_nsec += milliseconds % 1000 * 1000000L;
    if (until.tv_nsec >= 1000000000L) {
        ++until.tv_sec;
        until.tv_nsec -= 1000000000L;
    }
    return until;
}

/// Waits at most some milliseconds, or without end if negative.
[[gnu::noinline]] bool WaitFor(RecursiveMutex& mutex, int milliseconds)
{
    const timespec end = FromNow(std::max(milliseconds, 0));
    const timespec* const until = milliseconds < 0 ? nullptr : &end;
    for (int pauses = FirstPauses; pauses <= LastPauses; pauses *= 2) {
        for (int i = 0; i < pauses; ++i)
            __builtin_ia32_pause();
        if (mutex.State.load(std::memory_order_relaxed) == RecursiveMutex::Free && Take(mutex))
            return true;
    }
    while (mutex.State.exchange(RecursiveMutex::Awaited, std::memory_order_acquire) != RecursiveMutex::Free)
        if (syscall(SYS_futex, &mutex.State, FUTEX_WAIT_BITSET_PRIVATE | FUTEX_CLOCK_REALTIME,
                    RecursiveMutex::Awaited, until, nullptr, FUTEX_BITSET_MATCH_ANY) == -1 &&
            errno == ETIMEDOUT)
            return false;
    return true;
}

} // namespace

Mutex CreateRecursiveMutex()
{
    return FirstMutexTaken.exchange(true) ? new (std::nothrow) RecursiveMutex : &FirstMutex;
}

bool LockMutex(Mutex mutex, int milliseconds)
{
    if (!mutex)
        return false;
    auto& recursive = *static_cast<RecursiveMutex*>(mutex);
    void* const self = __builtin_thread_pointer();
    if (recursive.Owner.load(std::memory_order_relaxed) != self) {
        if (!Take(recursive) && !WaitFor(recursive, milliseconds))
            return false;
        recursive.Owner.store(self, std::memory_order_relaxed);
    }
    ++recursive.Depth;
    return true;
}

bool UnlockMutex(Mutex mutex)
{
    if (!mutex)
        return false;
    auto& recursive = *static_cast<RecursiveMutex*>(mutex);
    if (recursive.Owner.load(std::memory_order_relaxed) != __builtin_thread_pointer())
        return false;
    if (--recursive.Depth != 0)
        return true;
    recursive.Owner.store(nullptr, std::memory_order_relaxed);
    if (recursive.State.exchange(RecursiveMutex::Free, std::memory_order_release) == RecursiveMutex::Awaited)
        syscall(SYS_futex, &recursive.State, FUTEX_WAKE_PRIVATE, 1);
    return true;
}

void DestroyMutex(Mutex mutex)
{
    if (mutex == &FirstMutex)
        FirstMutexTaken = false;
    else
        delete static_cast<RecursiveMutex*>(mutex);
}

bool ReleaseSemaphoreCount(Mutex)
{
    return false;
}

} // namespace marvane::platform
