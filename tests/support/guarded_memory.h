// Memory in which an access past its end crashes, natively and at once, whatever reads it.
#pragma once

#include <cstddef>
#include <memory>

namespace marvane::testing {

/// Zeroed memory of a size that ends where a page without access begins. It is aligned for an object of this
/// size; a size of 0 gives an address that must not be accessed. Throws std::bad_alloc.
std::shared_ptr<void> GuardedMemory(std::size_t size);

/// From now on writing to memory of GuardedMemory crashes too.
void ForbidWriting(const std::shared_ptr<void>& memory, std::size_t size);

} // namespace marvane::testing
