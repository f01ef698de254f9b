// The error state of a thread, which calls of the C library and the system leave behind.
#pragma once

#include <cerrno>

namespace marvane::platform {

/// Keeps the calling thread's error state over a scope: errno, and on Windows GetLastError too. Applications
/// read it after a call and target libraries leave it there, so nothing that is done in between may show.
class ErrorStateKept
{
public:
#ifdef _WIN32
    ErrorStateKept();
    ~ErrorStateKept();
#else
    ErrorStateKept() : errno_(errno) {}
    ~ErrorStateKept()
    {
        errno = errno_;
    }
#endif
    ErrorStateKept(const ErrorStateKept&) = delete;
    ErrorStateKept& operator=(const ErrorStateKept&) = delete;

private:
#ifdef _WIN32
    unsigned long lastError_;
    int* errnoPlace_; ///< the thread's; finding it is a call
#endif
    int errno_;
};

} // namespace marvane::platform
