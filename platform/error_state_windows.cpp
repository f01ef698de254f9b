#include "platform/error_state.h"

#include <windows.h>

namespace marvane::platform {

ErrorStateKept::ErrorStateKept() : lastError_(GetLastError()), errnoPlace_(&errno), errno_(*errnoPlace_) {}

ErrorStateKept::~ErrorStateKept()
{
    *errnoPlace_ = errno_;
    SetLastError(lastError_);
}

} // namespace marvane::platform
