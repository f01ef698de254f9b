// A lock in user memory. A pair of lock and unlock of the kernel's mutex is two system calls, under Wine two
// requests to its server. Like the kernel's mutex it is not lost with its owner: threads are terminated, all
// of them at the end of a process, wherever they are.
#include "platform/lock.h"

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <new>

#include <windows.h>

namespace marvane::platform {

namespace {

/// The owner's thread id is in the lower half of `Owner`, and in the upper half when the thread was created:
/// ids are used again after a thread's end. One word, so that both always are of one thread.
struct RecursiveMutex
{
    std::atomic<std::uint64_t> Owner = 0; ///< 0 while the mutex is free
    unsigned Depth = 0;
    HANDLE Released = CreateEventA(nullptr, FALSE, FALSE, nullptr);
    DWORD Created = TlsAlloc(); ///< slot in which each thread remembers the time of its creation
};

/// In `Owner`: other threads may sleep until Released is set.
constexpr std::uint64_t Awaited = std::uint64_t{1} << 32;
constexpr std::uint32_t Known = 1;

// Exponential back-off, 50 microseconds in all: each poll steals the cache line from the owner.
constexpr int FirstPauses = 16;
constexpr int LastPauses = 1024;

/// How long a thread sleeps before it checks that the owner still lives.
constexpr std::uint64_t LongestSleep = 20;

/// Lower half of the time at which a thread was created, without its last bit; 0 if it can't be queried.
std::uint32_t CreationTime(HANDLE thread)
{
    FILETIME created;
    FILETIME others[3];
    if (!GetThreadTimes(thread, &created, &others[0], &others[1], &others[2]))
        return 0;
    return created.dwLowDateTime & ~Known;
}

/// What stands in Owner if the calling thread has the mutex. Needs a system call once per thread.
std::uint64_t CallingThread(const RecursiveMutex& mutex)
{
    auto created = static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(TlsGetValue(mutex.Created)));
    if (created == 0) {
        created = CreationTime(GetCurrentThread()) | Known;
        TlsSetValue(mutex.Created, reinterpret_cast<void*>(std::uintptr_t{created}));
    }
    return std::uint64_t{created & ~Known} << 32 | GetCurrentThreadId();
}

/// A thread that can't be opened although it exists counts as alive.
bool IsDead(std::uint64_t owner)
{
    const HANDLE thread =
        OpenThread(SYNCHRONIZE | THREAD_QUERY_LIMITED_INFORMATION, FALSE, static_cast<DWORD>(owner));
    if (!thread)
        return GetLastError() == ERROR_INVALID_PARAMETER;
    const auto created = static_cast<std::uint32_t>((owner & ~Awaited) >> 32);
    const bool dead =
        WaitForSingleObject(thread, 0) == WAIT_OBJECT_0 || (created != 0 && CreationTime(thread) != created);
    CloseHandle(thread);
    return dead;
}

bool Take(RecursiveMutex& mutex, std::uint64_t from, std::uint64_t to)
{
    return mutex.Owner.compare_exchange_strong(from, to, std::memory_order_acquire,
                                               std::memory_order_relaxed);
}

bool TakeWhilePolling(RecursiveMutex& mutex, std::uint64_t self)
{
    for (int pauses = FirstPauses; pauses <= LastPauses; pauses *= 2) {
        for (int i = 0; i < pauses; ++i)
            YieldProcessor();
        if (mutex.Owner.load(std::memory_order_relaxed) == 0 && Take(mutex, 0, self))
            return true;
    }
    return false;
}

enum class Waited
{
    Taken,
    TakenFromDead,
    InVain
};

/// Waits at most `milliseconds`, or for ever if negative. Kept out of line: the lock is nearly always free.
[[gnu::noinline]] Waited WaitFor(RecursiveMutex& mutex, std::uint64_t self, int milliseconds)
{
    const std::uint64_t end = GetTickCount64() + static_cast<std::uint64_t>(std::max(milliseconds, 0));
    if (TakeWhilePolling(mutex, self))
        return Waited::Taken;
    for (;;) {
        const std::uint64_t owner = mutex.Owner.load(std::memory_order_relaxed);
        // Awaited from the start: others may sleep too.
        if (owner == 0) {
            if (Take(mutex, 0, self | Awaited))
                return Waited::Taken;
            continue;
        }
        if ((owner & Awaited) == 0 && !Take(mutex, owner, owner | Awaited))
            continue;
        const std::uint64_t now = GetTickCount64();
        const std::uint64_t rest = milliseconds < 0 ? LongestSleep : end - std::min(now, end);
        if (WaitForSingleObject(mutex.Released, static_cast<DWORD>(std::min(rest, LongestSleep))) ==
            WAIT_OBJECT_0)
            continue;
        if (IsDead(owner) && Take(mutex, owner | Awaited, self | Awaited))
            return Waited::TakenFromDead;
        if (milliseconds >= 0 && GetTickCount64() >= end)
            return Waited::InVain;
    }
}

} // namespace

Mutex CreateRecursiveMutex()
{
    auto* const mutex = new (std::nothrow) RecursiveMutex;
    if (!mutex || mutex->Released)
        return mutex;
    DestroyMutex(mutex);
    return nullptr;
}

bool LockMutex(Mutex mutex, int milliseconds)
{
    if (!mutex)
        return false;
    auto& recursive = *static_cast<RecursiveMutex*>(mutex);
    const std::uint64_t self = CallingThread(recursive);
    if ((recursive.Owner.load(std::memory_order_relaxed) & ~Awaited) == self) {
        ++recursive.Depth;
        return true;
    }
    const Waited waited = Take(recursive, 0, self) ? Waited::Taken : WaitFor(recursive, self, milliseconds);
    if (waited != Waited::InVain)
        recursive.Depth = 1;
    return waited == Waited::Taken;
}

bool UnlockMutex(Mutex mutex)
{
    if (!mutex)
        return false;
    auto& recursive = *static_cast<RecursiveMutex*>(mutex);
    if ((recursive.Owner.load(std::memory_order_relaxed) & ~Awaited) != CallingThread(recursive))
        return false;
    if (--recursive.Depth != 0)
        return true;
    if ((recursive.Owner.exchange(0, std::memory_order_release) & Awaited) != 0)
        SetEvent(recursive.Released);
    return true;
}

void DestroyMutex(Mutex mutex)
{
    auto* const recursive = static_cast<RecursiveMutex*>(mutex);
    if (!recursive)
        return;
    if (recursive->Released)
        CloseHandle(recursive->Released);
    TlsFree(recursive->Created);
    delete recursive;
}

bool ReleaseSemaphoreCount(Mutex semaphore)
{
    return ReleaseSemaphore(semaphore, 1, nullptr);
}

} // namespace marvane::platform
