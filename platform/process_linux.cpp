#include "platform/process.h"

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

} // namespace marvane::platform
