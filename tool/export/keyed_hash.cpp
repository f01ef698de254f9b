#include "tool/export/keyed_hash.h"

#include <bit>
#include <random>

namespace marvane::tool {

namespace {

struct SipState
{
    std::uint64_t V0, V1, V2, V3;

    void Round()
    {
        V0 += V1;
        V1 = std::rotl(V1, 13) ^ V0;
        V0 = std::rotl(V0, 32);
        V2 += V3;
        V3 = std::rotl(V3, 16) ^ V2;
        V0 += V3;
        V3 = std::rotl(V3, 21) ^ V0;
        V2 += V1;
        V1 = std::rotl(V1, 17) ^ V2;
        V2 = std::rotl(V2, 32);
    }
    void Take(std::uint64_t word)
    {
        V3 ^= word;
        Round();
        Round();
        V0 ^= word;
    }
};

} // namespace

HashKey HashKey::Random()
{
    std::random_device source;
    const auto word = [&] { return std::uint64_t{source()} << 32 | source(); };
    const std::uint64_t first = word();
    return {first, word()};
}

std::uint64_t KeyedHash(const HashKey& key, std::span<const std::uint8_t> bytes)
{
    SipState state = {key.First ^ 0x736f6d6570736575, key.Second ^ 0x646f72616e646f6d,
                      key.First ^ 0x6c7967656e657261, key.Second ^ 0x7465646279746573};
    std::uint64_t word = 0;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        word |= std::uint64_t{bytes[i]} << i % 8 * 8;
        if (i % 8 == 7) {
            state.Take(word);
            word = 0;
        }
    }
    state.Take(word | std::uint64_t{bytes.size()} << 56);
    state.V2 ^= 0xFF;
    for (int i = 0; i < 4; ++i)
        state.Round();
    return state.V0 ^ state.V1 ^ state.V2 ^ state.V3;
}

} // namespace marvane::tool
