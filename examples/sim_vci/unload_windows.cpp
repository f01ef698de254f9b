#include "examples/sim_vci/unload.h"

#define WIN32_LEAN_AND_MEAN
#include <windows.h>

namespace sim {

SystemThread ThisSystemThread()
{
    return GetCurrentThreadId();
}

bool IsGone(SystemThread thread)
{
    const HANDLE handle = OpenThread(SYNCHRONIZE, FALSE, thread);
    if (!handle)
        return true;
    const bool gone = WaitForSingleObject(handle, 0) == WAIT_OBJECT_0;
    CloseHandle(handle);
    return gone;
}

void SleepUntilTerminated()
{
    Sleep(INFINITE);
}

void EndWorker(std::thread& worker, SystemThread thread)
{
    if (const HANDLE handle = OpenThread(THREAD_TERMINATE | SYNCHRONIZE, FALSE, thread)) {
        TerminateThread(handle, 0);
        WaitForSingleObject(handle, INFINITE);
        CloseHandle(handle);
    }
    worker.detach();
}

} // namespace sim
