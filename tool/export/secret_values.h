// The secrets that were met in a log, and what stands in their place.
#pragma once

#include <cstdint>
#include <deque>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "tool/export/keyed_hash.h"

namespace marvane::tool {

using SecretBytes = std::span<const std::uint8_t>;

class SecretValues
{
public:
    /// Without a key of the caller's own, for tests, the key is random.
    explicit SecretValues(const HashKey& key = HashKey::Random()) : key_(key) {}

    /// Bytes of the same length, the same for the same secret. Letters and digits of a text stay letters and
    /// digits; secrets below four bytes become zeros.
    std::vector<std::uint8_t> Replacement(SecretBytes secret) const;

    /// Remembers a secret, to be found elsewhere, unless it is too short or too plain to be told from other
    /// bytes. Of very many the oldest are forgotten.
    void Learn(SecretBytes secret);
    bool IsEmpty() const { return order_.empty(); }

    /// The learned secret that begins `bytes`; empty if none does.
    SecretBytes FindAt(SecretBytes bytes) const;

    /// A number for bytes that nobody can turn back into them.
    std::uint64_t Hash(SecretBytes bytes) const { return KeyedHash(key_, bytes); }

private:
    HashKey key_;
    std::unordered_map<std::uint32_t, std::vector<std::vector<std::uint8_t>>>
        byHead_;                      ///< by first four bytes
    std::deque<std::uint32_t> order_; ///< heads as learned
};

/// The length of the vehicle identification number that begins `text`: 17 capital letters and digits, some of
/// each; else 0. What is before it is the caller's business.
std::size_t VinLength(SecretBytes text);

/// Whether a character can be part of a word that holds no vehicle identification number.
bool IsWordLetter(std::uint8_t letter);

} // namespace marvane::tool
