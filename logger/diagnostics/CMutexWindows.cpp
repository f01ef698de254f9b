#include "logger/diagnostics/CMutexWindows.h"

#include <algorithm>

#include "logger/base/lasting.h"
#include "logger/diagnostics/CLog.h"
#include "platform/process.h"

namespace marvane {

namespace {

constinit Lasting<CMutexWindows> LogMutexPlace;

} // namespace

// Bound ahead of the making, which may have something to report.
constinit CMutexWindows& LogMutex = LogMutexPlace.Held;

namespace {

struct LogMutexLife
{
    LogMutexLife() { new (&LogMutexPlace.Held) CMutexWindows; }
    ~LogMutexLife()
    {
        if (!platform::ThreadsRunWhileProcessEnds)
            LogMutex.~CMutexWindows();
    }
};

} // namespace

void MakeLogMutex()
{
    static const LogMutexLife life;
}

namespace {

// At load at the latest.
const bool made = (MakeLogMutex(), true);

} // namespace

CMutexWindows::CMutexWindows()
{
    Handle = platform::CreateRecursiveMutex();
    if (!Handle)
        Diagnose(
            {DebugLevel::Error, Subsystem::GENERAL, "class CMutexWindows", "CMutexWindows::CMutexWindows"},
            "CRITICAL: Failed to create mutex");
}

CMutexWindows::~CMutexWindows()
{
    // Left once whether held or not: the release of a mutex that is not held fails, and nobody minds.
    CMutexWindows::Unlock();
    platform::DestroyMutex(Handle);
    Handle = nullptr;
}

bool CMutexWindows::Lock()
{
    return platform::LockMutex(Handle, -1);
}

bool CMutexWindows::LockTimed(std::int32_t milliseconds)
{
    return platform::LockMutex(Handle, std::max(milliseconds, 1));
}

bool CMutexWindows::Unlock()
{
    return IsMutex ? platform::UnlockMutex(Handle) : platform::ReleaseSemaphoreCount(Handle);
}

} // namespace marvane
