#include "tool/analysis/durations.h"

#include <algorithm>

namespace marvane::tool {

void Durations::Add(std::uint64_t value)
{
    std::uint64_t scale = 1;
    while (value / scale >= 1000)
        scale *= 10;
    ++counts_[value / scale * scale];
    ++count_;
    total_ += value;
    max_ = std::max(max_, value);
}

std::uint64_t Durations::Percentile(unsigned percent) const
{
    const std::uint64_t rank = (count_ * percent + 99) / 100;
    std::uint64_t seen = 0;
    for (const auto& [value, count] : counts_)
        if ((seen += count) >= rank)
            return std::min(value, max_);
    return 0;
}

} // namespace marvane::tool
