#include "tool/read/threads.h"

#include <algorithm>

namespace marvane::read {

std::unique_ptr<Frame> FramePool::Get()
{
    if (free_.empty())
        return std::make_unique<Frame>();
    std::unique_ptr<Frame> frame = std::move(free_.back());
    free_.pop_back();
    frame->Reset();
    return frame;
}

void FramePool::Put(std::unique_ptr<Frame> frame)
{
    if (free_.size() < MostKept)
        free_.push_back(std::move(frame));
}

ThreadState& ThreadTable::Get(std::uint32_t id)
{
    if (last_ && last_->Id == id)
        return *last_;
    std::unique_ptr<ThreadState>& state = threads_[id];
    if (!state) {
        state = std::make_unique<ThreadState>();
        state->Id = id;
    }
    last_ = state.get();
    return *last_;
}

std::vector<ThreadState*> ThreadTable::Oldest()
{
    std::vector<ThreadState*> all;
    ForEach([&all](ThreadState& state) { all.push_back(&state); });
    std::ranges::sort(all, {}, &ThreadState::LastUse);
    all.resize((all.size() + 1) / 2);
    return all;
}

void ThreadTable::Remove(std::uint32_t id)
{
    last_ = nullptr;
    threads_.erase(id);
}

} // namespace marvane::read
