// Which elements of two sequences belong together: a longest common subsequence at bounded cost.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>
#include <vector>

namespace marvane::tool {

struct AlignedElement
{
    std::uint32_t Key = 0;  ///< elements with different keys are never paired
    std::uint32_t Kind = 0; ///< of several possible partners, one of the same kind is preferred
};

/// Pairs of indices with equal keys, both ascending: as many as possible, and among these as many of the same
/// kind as possible. Parts that are too large for an exact answer (2,000 by 2,000 elements without a key that
/// is there once in each) are left out.
std::vector<std::pair<std::size_t, std::size_t>> AlignSequences(std::span<const AlignedElement> first,
                                                                std::span<const AlignedElement> second);

} // namespace marvane::tool
