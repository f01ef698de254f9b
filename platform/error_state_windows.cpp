#include "platform/error_state.h"

#include <windows.h>

namespace marvane::platform {

ErrorStateKept::ErrorStateKept() : lastError_(GetLastError()), errno_(errno) {}

ErrorStateKept::~ErrorStateKept()
{
    errno = errno_;
    SetLastError(lastError_);
}

} // namespace marvane::platform
