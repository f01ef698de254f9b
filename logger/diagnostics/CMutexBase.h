// A lock as the library sees it, whatever the system makes it of.
#pragma once

#include <cstdint>

namespace marvane {

class CMutexBase
{
public:
    virtual ~CMutexBase() = default;

    /// Waits without end. True when acquired.
    virtual bool Lock() = 0;
    /// Waits for a time, at least 1 ms. True when acquired.
    virtual bool LockTimed(std::int32_t milliseconds) = 0;
    /// True when it was held and is now left.
    virtual bool Unlock() = 0;

protected:
    CMutexBase() = default;
    CMutexBase(const CMutexBase&) = delete;
    CMutexBase& operator=(const CMutexBase&) = delete;

    bool IsMutex = true; ///< false: the handle is a semaphore, left by giving one count back
    std::int32_t Reserved = 0;
};

} // namespace marvane
