// Progress of long work on standard error, if that is a terminal: nothing in the first half second.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>

namespace marvane::tool {

class Progress
{
public:
    /// `total` is the amount of work in any unit, 0 if it is unknown.
    Progress(std::string what, std::uint64_t total);
    /// Wipes the line that it wrote.
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    /// Reports the work done so far. Cheap enough for each block of a file, not for each line.
    void At(std::uint64_t done);

private:
    using Clock = std::chrono::steady_clock;

    std::string what_;
    std::uint64_t total_;
    bool wanted_;
    std::size_t shown_ = 0; ///< characters on the line
    Clock::time_point next_;
};

} // namespace marvane::tool
