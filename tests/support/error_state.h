// The error state of the calling thread, for tests that it passes through logging unchanged.
#pragma once

#include <cstdint>

namespace marvane::testing {

struct ErrorState
{
    int Number = 0;           ///< errno
    std::uint32_t System = 0; ///< GetLastError; 0 where the system has none
    bool operator==(const ErrorState&) const = default;
};

ErrorState CurrentErrorState();

/// Sets errno to a number, and GetLastError to another one that follows from it.
void SetErrorState(int number);

/// The state that SetErrorState sets.
ErrorState ErrorStateOf(int number);

} // namespace marvane::testing
