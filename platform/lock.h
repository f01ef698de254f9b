// The recursive mutex of the system.
#pragma once

namespace marvane::platform {

/// Recursive mutex of the system, or none if it could not be made.
using Mutex = void*;
Mutex CreateRecursiveMutex();
/// Waits at most `milliseconds`, or for ever if negative. False on timeout or failure. On Windows also if the
/// owner died while it held the mutex: then the caller has it all the same, and must release it.
bool LockMutex(Mutex mutex, int milliseconds);
/// False if the caller does not hold it.
bool UnlockMutex(Mutex mutex);
void DestroyMutex(Mutex mutex);
/// Releases one count of a semaphore. No semaphore is ever created here, so it always fails.
bool ReleaseSemaphoreCount(Mutex semaphore);

} // namespace marvane::platform
