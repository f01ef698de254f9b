#include "platform/process.h"
#include "platform/thread_pointer.h"

#include <windows.h>

namespace marvane::platform {

const bool ThreadsRunWhileProcessEnds = false;

std::uintptr_t ThreadPointer()
{
    return GetCurrentThreadId();
}

std::uint32_t CurrentThreadId()
{
    return GetCurrentThreadId();
}

void CallAtFork(void (*)(), void (*)()) {}

void CallInForkedChild(void (*)()) {}

void FenceAllThreads()
{
    FlushProcessWriteBuffers();
}

} // namespace marvane::platform
