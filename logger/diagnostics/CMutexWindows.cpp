#include "logger/diagnostics/CMutexWindows.h"

#include <algorithm>

#include "logger/base/lasting.h"
#include "logger/diagnostics/CLog.h"
#include "platform/process.h"

namespace marvane {

namespace {

constinit Lasting<CMutexWindows> LogMutexPlace;

} // namespace

// Bound before the mutex is made, since making it may have something to report.
constinit CMutexWindows& LogMutex = LogMutexPlace.Get();

namespace {

struct LogMutexLife
{
    LogMutexLife() { LogMutexPlace.Make(); }
    ~LogMutexLife()
    {
        if (!platform::ThreadsRunWhileProcessEnds)
            LogMutexPlace.End();
    }
};

} // namespace

void MakeLogMutex()
{
    static const LogMutexLife life;
}

namespace {

// When the library is loaded, unless another static object needed it earlier.
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
    // Unlock unconditionally; releasing a mutex that is not held fails harmlessly.
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
