// SIGXFSZ: a write past the process's limit for the size of files raises it, and by default it ends the
// process.
#pragma once

#include <atomic>
#include <cstdint>

#include "platform/thread_pointer.h"

namespace marvane::platform {

/// Keeps the signal from ending the process by a write of ours, while log files are open. Blocking it around
/// each write would cost two system calls, half as much as the write. So, if the application has left the
/// signal at its default, a handler takes its place: it ignores the signal of a write of ours and does for
/// any other what the default does. Calls nest.
void BeginFileSizeSignal();
void EndFileSizeSignal();

namespace file_size_signal_detail {
extern std::atomic<std::uintptr_t> WritingThread;
extern std::atomic<bool> Handled;
} // namespace file_size_signal_detail

/// Marks a write of ours for a scope. One thread at a time: the log's writes are made under its lock.
class OwnWrite
{
public:
    OwnWrite() { Set(ThreadPointer()); }
    ~OwnWrite() { Set(0); }
    OwnWrite(const OwnWrite&) = delete;
    OwnWrite& operator=(const OwnWrite&) = delete;

private:
    static void Set(std::uintptr_t thread)
    {
        file_size_signal_detail::WritingThread.store(thread, std::memory_order_relaxed);
    }
};

/// Finds out anew who handles the signal: the application may have changed that since.
void ReadFileSizeSignal();

/// False if the application handled the signal itself when that was last read: then it has to be blocked
/// around a write.
inline bool FileSizeSignalIsHandled()
{
    return file_size_signal_detail::Handled.load(std::memory_order_relaxed);
}

} // namespace marvane::platform
