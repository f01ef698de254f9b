#include "platform/process.h"

#include <ctime>
#include <linux/membarrier.h>
#include <pthread.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace marvane::platform {

const bool ThreadsRunWhileProcessEnds = true;

namespace {

// 0 until it is asked for.
thread_local constinit std::uint32_t OwnId = 0;

// A forked child's one thread has an id of its own.
const int ForkHandler = pthread_atfork(nullptr, nullptr, [] { OwnId = 0; });

} // namespace

std::uint32_t CurrentThreadId()
{
    if (OwnId == 0)
        OwnId = static_cast<std::uint32_t>(syscall(SYS_gettid));
    return OwnId;
}

void CallAtFork(void (*before)(), void (*after)())
{
    pthread_atfork(before, after, after);
}

void CallInForkedChild(void (*function)())
{
    pthread_atfork(nullptr, nullptr, function);
}

void FenceAllThreads()
{
    if (syscall(SYS_membarrier, MEMBARRIER_CMD_PRIVATE_EXPEDITED, 0, 0) == 0)
        return;
    // The process has to register once.
    if (syscall(SYS_membarrier, MEMBARRIER_CMD_REGISTER_PRIVATE_EXPEDITED, 0, 0) == 0 &&
        syscall(SYS_membarrier, MEMBARRIER_CMD_PRIVATE_EXPEDITED, 0, 0) == 0)
        return;
    // An old kernel or a sandbox. Processors finish their pending stores long before a millisecond is over.
    const timespec millisecond = {0, 1000000};
    nanosleep(&millisecond, nullptr);
}

} // namespace marvane::platform
