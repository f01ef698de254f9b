// A hash that nobody can compute without its key, which is random and never leaves the process: equal bytes
// give equal hashes, and a hash gives nothing away.
#pragma once

#include <cstdint>
#include <span>

namespace marvane::tool {

struct HashKey
{
    std::uint64_t First = 0;
    std::uint64_t Second = 0;

    static HashKey Random();
};

/// SipHash-2-4 of bytes.
std::uint64_t KeyedHash(const HashKey& key, std::span<const std::uint8_t> bytes);

} // namespace marvane::tool
