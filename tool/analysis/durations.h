// How long things took, for percentiles in bounded memory.
#pragma once

#include <cstdint>
#include <map>

namespace marvane::tool {

/// Numbers in any unit. Those below 1000 are kept as they are, greater ones to three digits.
class Durations
{
public:
    void Add(std::uint64_t value);

    std::uint64_t Count() const { return count_; }
    std::uint64_t Total() const { return total_; }
    std::uint64_t Max() const { return max_; }
    /// The smallest value that at least `percent` of a hundred do not exceed; 0 if there is none.
    std::uint64_t Percentile(unsigned percent) const;

private:
    std::map<std::uint64_t, std::uint64_t> counts_; ///< by value
    std::uint64_t count_ = 0;
    std::uint64_t total_ = 0;
    std::uint64_t max_ = 0;
};

} // namespace marvane::tool
