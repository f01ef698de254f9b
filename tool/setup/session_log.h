// The log of the sample session without what varies from run to run and from system to system.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace marvane::tool {

/// The lines of a log from its first call on, each thread's together, threads in the order of their first
/// lines. Stamps are gone; addresses are <address> or <null>; times of the library are N; calls of
/// PDUGetEventItem that found the queue empty and comms reports that repeat the one before are left out. Line
/// ends are line feeds.
std::string NormalisedLog(std::string_view log);

/// The number of calls in a normalised log, and of the different functions among them.
struct CallCount
{
    std::size_t Calls = 0;
    std::size_t Functions = 0;
};
CallCount CountCalls(const std::string& normalised);

/// The first line in which two texts differ, in words; empty if they are equal.
std::string FirstDifference(const std::string& expected, const std::string& found);

} // namespace marvane::tool
