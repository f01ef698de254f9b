// Bytes that a person or an anti-theft system would not want in a report that leaves the house.
#pragma once

#include <cstddef>

#include "tool/words/dialect.h"

namespace marvane::words {

enum class Secret : std::uint8_t
{
    None,
    Vin,
    Key,            ///< seeds and keys of SecurityAccess
    Authentication, ///< certificates, challenges, proofs
    Serial,         ///< serial numbers and codes of ECUs, testers, repair shops
    Transfer,       ///< transferred data: software, memory
};

/// The secret of a message: its bytes from `Begin` on.
struct SecretPart
{
    Secret What = Secret::None;
    std::size_t Begin = 0;
    bool operator==(const SecretPart&) const = default;
};

/// What is secret in a request: keys that are sent, a VIN that is written, data that is transferred.
SecretPart SecretOfRequest(Dialect dialect, Bytes request);

/// What is secret in a positive answer. The request tells which identifiers were read at once; empty:
/// unknown.
SecretPart SecretOfAnswer(Dialect dialect, Bytes request, Bytes answer);

/// The kind of secret that a data identifier holds.
Secret SecretOfIdentifier(std::uint16_t identifier);

} // namespace marvane::words
