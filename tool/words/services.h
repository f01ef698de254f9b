// Services and their sub-functions: the standard's names and the short words of the conversation.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

#include "tool/words/dialect.h"

namespace marvane::words {

/// A service. Its positive answer begins with Sid + 0x40.
struct Service
{
    std::uint8_t Sid = 0;
    std::string_view Name;          ///< the standard's: "ReadDataByIdentifier"
    std::string_view Words;         ///< short: "read identifier"
    std::uint8_t SubFunctionAt = 0; ///< place of the byte that says what exactly; 0: there is none
    bool MaySuppress = false;       ///< bit 7 of that byte asks for no positive answer
    bool HasIdentifier = false;     ///< the two bytes after the first are a data identifier
};

struct SubFunction
{
    std::uint8_t Sid = 0;
    std::uint8_t Number = 0;
    std::string_view Name;       ///< the standard's: "requestSeed"
    std::string_view Words = {}; ///< in place of the service's; empty: the service's say enough
};

/// All services of a dialect, ascending; none for those without a table.
std::span<const Service> ServicesOf(Dialect dialect);

/// The service of a number, null if the dialect has none.
const Service* FindService(Dialect dialect, std::uint8_t sid);

/// The sub-function of a service, null if it has no name. Of SecurityAccess all odd numbers are requestSeed,
/// all even ones sendKey.
const SubFunction* FindSubFunction(const Service& service, std::uint8_t number);

} // namespace marvane::words
