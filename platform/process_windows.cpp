#include "platform/process.h"

#include <windows.h>

namespace marvane::platform {

const bool ThreadsRunWhileProcessEnds = false;

std::uint32_t CurrentThreadId()
{
    return GetCurrentThreadId();
}

void CallAtFork(void (*)(), void (*)()) {}

void CallInForkedChild(void (*)()) {}

} // namespace marvane::platform
