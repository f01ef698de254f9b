// Arguments as the fake target receives them: raw 64-bit values.
#pragma once

#include <gtest/gtest.h>

#include "tests/support/session.h"

namespace marvane::testing {

/// A pointer as the target receives it.
inline std::uint64_t Raw(const void* pointer)
{
    return reinterpret_cast<std::uintptr_t>(pointer);
}

/// The object that a raw argument points to.
template <class Pointed> Pointed& At(std::uint64_t argument)
{
    return *reinterpret_cast<Pointed*>(static_cast<std::uintptr_t>(argument));
}

/// An address at which any access faults.
template <class Pointed> Pointed* Unreadable()
{
    return reinterpret_cast<Pointed*>(std::uintptr_t{0x10});
}

/// Expects that exactly this call was recorded by the target, and clears the record.
inline void ExpectForwarded(Target& target, const std::string& function,
                            const std::vector<std::uint64_t>& arguments)
{
    const std::vector<SeenCall> seen = target.TakeCalls();
    ASSERT_EQ(seen.size(), 1u);
    EXPECT_EQ(seen[0].Function, function);
    EXPECT_EQ(seen[0].Arguments, arguments);
}

} // namespace marvane::testing
