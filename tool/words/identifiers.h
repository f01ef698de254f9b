// Data identifiers and routine identifiers of ISO 14229-1.
#pragma once

#include <cstdint>
#include <string_view>

namespace marvane::words {

/// The standard's name of a data identifier, or that of its range; empty for a reserved one.
std::string_view DataIdentifierName(std::uint16_t identifier);

/// The standard's name of a routine; empty if it has none.
std::string_view RoutineName(std::uint16_t routine);

} // namespace marvane::words
