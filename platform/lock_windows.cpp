#include "platform/lock.h"

#include <windows.h>

namespace marvane::platform {

Mutex CreateRecursiveMutex()
{
    return CreateMutexA(nullptr, FALSE, nullptr);
}

bool LockMutex(Mutex mutex, int milliseconds)
{
    return WaitForSingleObject(mutex, milliseconds < 0 ? INFINITE : static_cast<DWORD>(milliseconds)) ==
           WAIT_OBJECT_0;
}

bool UnlockMutex(Mutex mutex)
{
    return ReleaseMutex(mutex);
}

void DestroyMutex(Mutex mutex)
{
    if (mutex)
        CloseHandle(mutex);
}

bool ReleaseSemaphoreCount(Mutex semaphore)
{
    return ReleaseSemaphore(semaphore, 1, nullptr);
}

} // namespace marvane::platform
