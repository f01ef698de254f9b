// Objects of the whole process that are usable to its very end.
#pragma once

#include <new>

namespace marvane {

/// Place of an object that is made at load and never destroyed: where other threads run on while the process
/// ends, they may still use it then. The object is made in its place by its owner.
template <class Object> union Lasting {
    constexpr Lasting() : None() {}
    ~Lasting() {}

    char None;
    Object Held;
};

} // namespace marvane
