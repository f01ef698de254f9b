#include "examples/sim_vci/alarm.h"

#include <condition_variable>
#include <mutex>

namespace sim {

struct Alarm::State
{
    std::mutex Mutex;
    std::condition_variable Changed;
    bool Rung = false;
};

Alarm::Alarm() : state_(std::make_unique<State>()) {}

Alarm::~Alarm() = default;

void Alarm::Ring()
{
    const std::lock_guard hold(state_->Mutex);
    state_->Rung = true;
    state_->Changed.notify_one();
}

void Alarm::Wait(std::optional<Clock::time_point> until)
{
    std::unique_lock hold(state_->Mutex);
    const auto rung = [this] { return state_->Rung; };
    if (until)
        state_->Changed.wait_until(hold, *until, rung);
    else
        state_->Changed.wait(hold, rung);
    state_->Rung = false;
}

} // namespace sim
