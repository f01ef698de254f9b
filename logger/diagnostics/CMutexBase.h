// The interface of a lock, independent of the system.
#pragma once

#include <cstdint>

namespace marvane {

class CMutexBase
{
public:
    virtual ~CMutexBase() = default;

    /// Waits for ever. True if acquired.
    virtual bool Lock() = 0;
    /// Waits for a time, at least 1 ms. True if acquired.
    virtual bool LockTimed(std::int32_t milliseconds) = 0;
    /// True if it was held and is now released.
    virtual bool Unlock() = 0;

protected:
    CMutexBase() = default;
    CMutexBase(const CMutexBase&) = delete;
    CMutexBase& operator=(const CMutexBase&) = delete;

    bool IsMutex = true; ///< false: the handle is a semaphore, released by giving one count back
    std::int32_t Reserved = 0;
};

} // namespace marvane
