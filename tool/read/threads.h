// What the reader remembers of each thread of a log, bounded whatever the log says.
#pragma once

#include <cstdint>
#include <memory>
#include <unordered_map>
#include <vector>

#include "tool/read/frame.h"

namespace marvane::read {

struct ThreadState
{
    std::uint32_t Id = 0;
    std::uint32_t Session = 0;                ///< Session::Number; 0: not known yet
    std::uint32_t Previous = 0;               ///< the session before it
    std::vector<std::unique_ptr<Frame>> Open; ///< the innermost is the last
    bool IsInHeader = false;                  ///< its last lines are those of a header
    std::uint64_t LastUse = 0;                ///< number of its last line

    Frame* Top() const { return Open.empty() ? nullptr : Open.back().get(); }
};

/// Frames that are not in use, so that a call costs no allocation.
class FramePool
{
public:
    std::unique_ptr<Frame> Get();
    void Put(std::unique_ptr<Frame> frame);

private:
    static constexpr std::size_t MostKept = 64;
    std::vector<std::unique_ptr<Frame>> free_;
};

class ThreadTable
{
public:
    /// More threads than this at a time are no log.
    static constexpr std::size_t MostThreads = 4096;

    ThreadState& Get(std::uint32_t id);
    bool IsFull() const { return threads_.size() >= MostThreads; }
    /// The half of the threads whose last lines are the oldest, to be emptied and then removed by Remove.
    std::vector<ThreadState*> Oldest();
    void Remove(std::uint32_t id);
    template <class Visit> void ForEach(Visit&& visit)
    {
        for (auto& [id, state] : threads_)
            visit(*state);
    }

private:
    std::unordered_map<std::uint32_t, std::unique_ptr<ThreadState>> threads_;
    ThreadState* last_ = nullptr;
};

} // namespace marvane::read
