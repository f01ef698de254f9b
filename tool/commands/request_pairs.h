// Which requests of two runs belong together.
#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "tool/commands/run_difference.h"

namespace marvane::tool {

/// Places in the lists of requests of both runs; none for a request that the other run does not have.
struct RequestPair
{
    std::optional<std::size_t> First;
    std::optional<std::size_t> Second;
};

/// Every request of both runs once, in the order of the first run; those of the second alone follow the
/// request that they came after. Requests with the same bytes on links of the same name are paired in their
/// order, then those that moved, then those between the same neighbours that have service and identifier in
/// common.
std::vector<RequestPair> PairRequests(const std::vector<RunRequest>& first,
                                      const std::vector<RunRequest>& second);

} // namespace marvane::tool
