// Ending the worker thread when the library is unloaded, or the process ends, without PDUDestruct.
//
// On Windows static objects are destroyed under the loader lock. A thread needs that lock to end, so joining
// it there would wait for ever. The worker therefore goes to sleep instead of ending, and is terminated in
// its sleep, where it holds nothing. Elsewhere it ends and is joined.
#pragma once

#include <thread>

namespace sim {

/// A thread as the system knows it.
using SystemThread = unsigned long;

/// The calling thread.
SystemThread ThisSystemThread();

/// True if the thread is already gone: Windows ends all other threads of a process before it destroys static
/// objects. Locks that such a thread held are never released.
bool IsGone(SystemThread thread);

/// The worker's last act when the library is unloaded. Does not return on Windows.
void SleepUntilTerminated();

/// Ends a worker that has called, or will call, nothing but SleepUntilTerminated. Returns when its code is
/// not executed any more.
void EndWorker(std::thread& worker, SystemThread thread);

} // namespace sim
