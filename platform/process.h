// Threads of the process, its forking and its end.
#pragma once

#include <cstdint>

namespace marvane::platform {

/// Id of the calling thread, the one the system's own tools show. Right in a forked child too.
std::uint32_t CurrentThreadId();

/// Registers `before` to run in the parent before fork(), and `after` in both processes after it. No-op where
/// there is no fork.
void CallAtFork(void (*before)(), void (*after)());

/// Registers `function` to run in the child after fork(). No-op where there is no fork.
void CallInForkedChild(void (*function)());

/// Has all running threads of the process execute a memory fence. Takes some microseconds to milliseconds.
void FenceAllThreads();

/// True if other threads may still run while static destructors do.
extern const bool ThreadsRunWhileProcessEnds;

} // namespace marvane::platform
