#include "examples/sim_vci/unload.h"

namespace sim {

SystemThread ThisSystemThread()
{
    return 0;
}

bool IsGone(SystemThread)
{
    return false;
}

void SleepUntilTerminated() {}

void EndWorker(std::thread& worker, SystemThread)
{
    worker.join();
}

} // namespace sim
