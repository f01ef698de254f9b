// Negative response codes: the third byte of "7F SID NRC".
#pragma once

#include <string_view>

#include "tool/words/dialect.h"

namespace marvane::words {

struct NegativeCode
{
    std::uint8_t Code = 0;
    std::string_view Name;
};

inline constexpr std::uint8_t NegativeResponse = 0x7F;
inline constexpr std::uint8_t BusyRepeatRequest = 0x21;
inline constexpr std::uint8_t ResponsePending = 0x78;

/// All codes of a dialect with a name, ascending; none if the dialect is unknown.
std::span<const NegativeCode> NegativeCodesOf(Dialect dialect);

/// The name of a code; empty for a reserved one, whose number is all there is to say.
std::string_view NegativeCodeName(Dialect dialect, std::uint8_t code);

} // namespace marvane::words
