#include "examples/sim_vci/alarm.h"

#include <algorithm>

#define WIN32_LEAN_AND_MEAN
#include <windows.h>

namespace sim {

/// An auto-reset event.
struct Alarm::State
{
    HANDLE Event = CreateEventW(nullptr, FALSE, FALSE, nullptr);
};

Alarm::Alarm() : state_(std::make_unique<State>()) {}

Alarm::~Alarm()
{
    CloseHandle(state_->Event);
}

void Alarm::Ring()
{
    SetEvent(state_->Event);
}

void Alarm::Wait(std::optional<Clock::time_point> until)
{
    DWORD milliseconds = INFINITE;
    if (until) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(*until - Clock::now()).count();
        // A longer wait ends early, which Wait may.
        milliseconds = static_cast<DWORD>(std::clamp<long long>(left, 0, 1000000));
    }
    WaitForSingleObject(state_->Event, milliseconds);
}

} // namespace sim
