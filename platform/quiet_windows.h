// Keeps the system from asking the user about a failure.
#pragma once

#include <windows.h>

namespace marvane::platform {

/// While it exists, failures on this thread show no message box: nobody may be there to close it. What the
/// application has set besides stays.
class NoMessageBoxes
{
public:
    NoMessageBoxes()
    {
        SetThreadErrorMode(former_ | SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX, nullptr);
    }
    ~NoMessageBoxes() { SetThreadErrorMode(former_, nullptr); }
    NoMessageBoxes(const NoMessageBoxes&) = delete;
    NoMessageBoxes& operator=(const NoMessageBoxes&) = delete;

private:
    const DWORD former_ = GetThreadErrorMode();
};

} // namespace marvane::platform
