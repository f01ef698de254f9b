#include "tests/support/error_state.h"

#include <cerrno>

#ifdef _WIN32
#include <windows.h>
#endif

namespace marvane::testing {

#ifdef _WIN32

ErrorState CurrentErrorState()
{
    // First: the C library may set it when asked for errno.
    const DWORD system = GetLastError();
    return {.Number = errno, .System = static_cast<std::uint32_t>(system)};
}

void SetErrorState(int number)
{
    const ErrorState state = ErrorStateOf(number);
    errno = state.Number;
    SetLastError(state.System);
}

ErrorState ErrorStateOf(int number)
{
    return {.Number = number, .System = 1000 + static_cast<std::uint32_t>(number)};
}

#else

ErrorState CurrentErrorState()
{
    return {.Number = errno};
}

void SetErrorState(int number)
{
    errno = number;
}

ErrorState ErrorStateOf(int number)
{
    return {.Number = number};
}

#endif

} // namespace marvane::testing
