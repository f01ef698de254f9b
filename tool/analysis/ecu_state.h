// Session and security of the control units, as far as the conversation shows them.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>

#include "tool/read/exchange.h"

namespace marvane::tool {

class EcuStates
{
public:
    /// What an exchange changed, in words: "session extendedDiagnostic", "security level 1 unlocked", "reset:
    /// default session, security locked"; nothing if it changed nothing.
    std::optional<std::string> Change(const read::Exchange& exchange);

    /// "session default, security locked": what is known of the link's control unit.
    std::string Text(const read::Link& link) const;

private:
    struct Key
    {
        std::uint32_t Session;
        std::uint32_t Module;
        std::uint32_t Link;
        friend auto operator<=>(const Key&, const Key&) = default;
    };
    struct State
    {
        std::uint8_t Session = 1; ///< sub-function of DiagnosticSessionControl: the default session
        std::uint8_t Level = 0;   ///< of SecurityAccess; 0: locked
    };
    std::map<Key, State> states_;
};

} // namespace marvane::tool
