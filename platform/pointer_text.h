// The text of a pointer.
#pragma once

#include <cstddef>

namespace marvane::platform {

inline constexpr std::size_t PointerTextSize = 24;

/// Writes a pointer as the system's C library prints "%p", not NUL-terminated, into `out`, which has room for
/// PointerTextSize characters. Returns the length.
std::size_t PointerText(const void* pointer, char* out);

} // namespace marvane::platform
