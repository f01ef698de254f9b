#include "platform/file_size_signal_linux.h"

#include <csignal>

namespace marvane::platform {

namespace file_size_signal_detail {
constinit std::atomic<std::uintptr_t> WritingThread = 0;
constinit std::atomic<bool> Handled = true;
} // namespace file_size_signal_detail

namespace {

using file_size_signal_detail::Handled;
using file_size_signal_detail::WritingThread;

constinit std::atomic<int> Users = 0;

void OnFileSizeSignal(int signal)
{
    if (WritingThread.load(std::memory_order_relaxed) == ThreadPointer())
        return;
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

using Handler = void (*)(int);

bool HandlerIs(Handler handler)
{
    struct sigaction action = {};
    sigaction(SIGXFSZ, nullptr, &action);
    return (action.sa_flags & SA_SIGINFO) == 0 && action.sa_handler == handler;
}

void SetHandler(Handler handler)
{
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART | SA_ONSTACK;
    sigaction(SIGXFSZ, &action, nullptr);
}

} // namespace

void BeginFileSizeSignal()
{
    if (Users.fetch_add(1) == 0 && HandlerIs(SIG_DFL))
        SetHandler(OnFileSizeSignal);
    ReadFileSizeSignal();
}

void ReadFileSizeSignal()
{
    Handled = HandlerIs(OnFileSizeSignal) || HandlerIs(SIG_IGN);
}

void EndFileSizeSignal()
{
    if (Users.fetch_sub(1) == 1 && HandlerIs(OnFileSizeSignal))
        SetHandler(SIG_DFL);
}

} // namespace marvane::platform
