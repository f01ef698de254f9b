// What the worker thread sleeps at.
#pragma once

#include <chrono>
#include <memory>
#include <optional>

namespace sim {

using Clock = std::chrono::steady_clock;

/// One thread waits, any thread wakes it. A call of Ring that nobody waits for is kept for the next Wait.
///
/// A class of its own, since the timed waits of the C++ library take the loader lock on Windows: a worker
/// that begins one while the library is being unloaded would never come back.
class Alarm
{
public:
    Alarm();
    ~Alarm();

    /// Ends the current or the next Wait.
    void Ring();
    /// Returns after Ring, or at a time, or (seldom) earlier.
    void Wait(std::optional<Clock::time_point> until);

private:
    struct State;
    std::unique_ptr<State> state_;
};

} // namespace sim
