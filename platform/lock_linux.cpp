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

#include "platform/thread_pointer.h"

namespace marvane::platform {

namespace {

/// Hints to the processor that the thread is spinning.
void Pause()
{
#if defined(__x86_64__) || defined(__i386__)
    __builtin_ia32_pause();
#elif defined(__aarch64__)
    asm volatile("yield");
#else
    std::atomic_signal_fence(std::memory_order_seq_cst); // keeps the loop
#endif
}

/// A recursive futex lock of our own rather than a pthread mutex, for two reasons. A recursive pthread mutex
/// records its owner as a kernel thread id, which a forked child does not have: taken before fork(), it can't
/// be released in the child, and the first logged call there would hang. And with two threads that log all
/// the time a pthread mutex was measured 9 % slower a call; it is 8 % faster on one thread and equal on four.
/// `Owner` lets the owner take the lock again, and nobody else release it.
struct RecursiveMutex
{
    enum : std::uint32_t
    {
        Free,
        Taken,
        Awaited ///< taken, and other threads may sleep
    };
    std::atomic<std::uint32_t> State = Free;
    std::atomic<std::uintptr_t> Owner = 0; ///< a thread pointer; 0 while the lock is free
    unsigned Depth = 0;
};

// The first mutex is static memory: it lasts to the end of the process, and is gone when the library is
// unloaded.
constinit RecursiveMutex FirstMutex;
constinit std::atomic<bool> FirstMutexTaken = false;

// Exponential back-off, 50 microseconds in all: each poll steals the cache line from the owner.
constexpr int FirstPauses = 16;
constexpr int LastPauses = 1024;

// The call whose times have the width of time_t here.
#ifdef SYS_futex_time64
constexpr long FutexCall = sizeof(std::time_t) > sizeof(long) ? SYS_futex_time64 : SYS_futex;
#else
constexpr long FutexCall = SYS_futex;
#endif

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

/// Waits at most `milliseconds`, or for ever if negative. Kept out of line: the lock is nearly always free.
[[gnu::noinline]] bool WaitFor(RecursiveMutex& mutex, int milliseconds)
{
    const timespec end = FromNow(std::max(milliseconds, 0));
    const timespec* const until = milliseconds < 0 ? nullptr : &end;
    for (int pauses = FirstPauses; pauses <= LastPauses; pauses *= 2) {
        for (int i = 0; i < pauses; ++i)
            Pause();
        if (mutex.State.load(std::memory_order_relaxed) == RecursiveMutex::Free && Take(mutex))
            return true;
    }
    while (mutex.State.exchange(RecursiveMutex::Awaited, std::memory_order_acquire) != RecursiveMutex::Free)
        if (syscall(FutexCall, &mutex.State, FUTEX_WAIT_BITSET_PRIVATE | FUTEX_CLOCK_REALTIME,
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
    const std::uintptr_t self = ThreadPointer();
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
    if (recursive.Owner.load(std::memory_order_relaxed) != ThreadPointer())
        return false;
    if (--recursive.Depth != 0)
        return true;
    recursive.Owner.store(0, std::memory_order_relaxed);
    if (recursive.State.exchange(RecursiveMutex::Free, std::memory_order_release) == RecursiveMutex::Awaited)
        syscall(FutexCall, &recursive.State, FUTEX_WAKE_PRIVATE, 1);
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
