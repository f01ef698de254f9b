// What tells a thread from the others at the cost of one instruction.
#pragma once

#include <cstdint>

#ifndef _WIN32
#include <pthread.h>
#endif

namespace marvane::platform {

/// A value that no other living thread has, and that a thread keeps in a forked child.
#if defined(_WIN32)
std::uintptr_t ThreadPointer();
#elif __has_builtin(__builtin_thread_pointer)
inline std::uintptr_t ThreadPointer()
{
    return reinterpret_cast<std::uintptr_t>(__builtin_thread_pointer());
}
#else
inline std::uintptr_t ThreadPointer()
{
    return static_cast<std::uintptr_t>(pthread_self());
}
#endif

} // namespace marvane::platform
