#include "platform/uninterrupted.h"

#include <csignal>
#include <cstring>
#include <ctime>
#include <initializer_list>
#include <pthread.h>

namespace marvane::platform {

namespace {

constexpr auto WriteSignals = {SIGXFSZ, SIGPIPE};

sigset_t SetOfWriteSignals()
{
    sigset_t signals;
    sigemptyset(&signals);
    for (const int signal : WriteSignals)
        sigaddset(&signals, signal);
    return signals;
}

sigset_t Pending()
{
    sigset_t signals;
    sigemptyset(&signals);
    sigpending(&signals);
    return signals;
}

} // namespace

CancellationDeferred::CancellationDeferred()
{
    pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &state_);
}

CancellationDeferred::~CancellationDeferred()
{
    pthread_setcancelstate(state_, nullptr);
}

WriteSignalsHeld::WriteSignalsHeld()
{
    static_assert(sizeof(sigset_t) <= MaskSize);
    const sigset_t held = SetOfWriteSignals();
    sigset_t former;
    pthread_sigmask(SIG_BLOCK, &held, &former);
    const sigset_t pending = Pending();
    std::memcpy(formerMask_, &former, sizeof former);
    std::memcpy(pendingBefore_, &pending, sizeof pending);
}

WriteSignalsHeld::~WriteSignalsHeld()
{
    sigset_t former;
    sigset_t pendingBefore;
    std::memcpy(&former, formerMask_, sizeof former);
    std::memcpy(&pendingBefore, pendingBefore_, sizeof pendingBefore);
    const sigset_t pending = Pending();
    for (const int signal : WriteSignals) {
        if (sigismember(&pending, signal) != 1 || sigismember(&pendingBefore, signal) == 1)
            continue;
        sigset_t raised;
        sigemptyset(&raised);
        sigaddset(&raised, signal);
        const timespec now = {};
        sigtimedwait(&raised, nullptr, &now);
    }
    pthread_sigmask(SIG_SETMASK, &former, nullptr);
}

} // namespace marvane::platform
