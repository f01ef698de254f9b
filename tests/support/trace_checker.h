// What is wrong with a trace of Chrome's format: each rule that viewers rely on.
#pragma once

#include <string>

namespace marvane::testing {

struct TraceCheck
{
    std::string Faults;       ///< one line a fault; empty if there is none
    std::size_t Slices = 0;   ///< begun on threads
    std::size_t Open = 0;     ///< of them without an end
    std::size_t Requests = 0; ///< begun on rows of links
    std::size_t OpenRequests = 0;
    std::size_t Flows = 0;
};

/// Checks that slices of threads nest in the order of strictly growing times, that asynchronous events nest
/// by their id, and that each flow goes forward in time from one slice to another.
TraceCheck CheckTrace(const std::string& json);

} // namespace marvane::testing
