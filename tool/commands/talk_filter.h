// Which exchanges a command is asked to show.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "tool/console/arguments.h"
#include "tool/read/exchange.h"

namespace marvane::tool {

struct TalkFilter
{
    std::optional<std::string> Link;         ///< its handle, or a part of its resource's or protocol's name
    std::optional<std::string> Service;      ///< its number in hexadecimal, or a part of its name
    std::optional<std::uint16_t> Identifier; ///< data identifier or routine
    std::optional<std::uint8_t> Nrc;         ///< any of its answers has this code
    std::optional<std::uint64_t> SlowerThanUs;

    /// Of --link, --service, --did, --nrc and --slow. Throws UsageError.
    static TalkFilter Of(const Arguments& arguments);

    bool IsSet() const { return Link || IsForRequests(); }
    /// Whether it leaves out what is no request.
    bool IsForRequests() const { return Service || Identifier || Nrc || SlowerThanUs; }

    bool Accepts(const read::Link& link) const;
    bool Accepts(const read::Exchange& exchange) const;
};

} // namespace marvane::tool
