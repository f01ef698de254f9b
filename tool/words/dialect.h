// Which diagnostic protocol a link speaks. The same number means different things in different protocols, so
// words for bytes are chosen by the link's protocol, never by the bytes alone.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace marvane::words {

using Bytes = std::span<const std::uint8_t>;

enum class Dialect : std::uint8_t
{
    Unknown, ///< bytes are shown without words
    Uds,     ///< ISO 14229-1
    Obd,     ///< SAE J1979
    Kwp,     ///< ISO 14230-3: only refusals have words
};

/// The dialect of a link by the name of its resource or protocol: "ISO_15765_3_on_ISO_15765_2" is Uds.
Dialect DialectOf(std::string_view protocol);

} // namespace marvane::words
