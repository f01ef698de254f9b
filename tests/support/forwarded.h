// Arguments as the fake target sees them: raw 64-bit values.
#pragma once

#include <gtest/gtest.h>

#include "tests/support/session.h"

namespace marvane::testing {

/// A pointer as the target sees it.
inline std::uint64_t Raw(const void* pointer)
{
    return reinterpret_cast<std::uintptr_t>(pointer);
}

/// What a raw argument points at.
template <class Pointed> Pointed& At(std::uint64_t argument)
{
    return *reinterpret_cast<Pointed*>(static_cast<std::uintptr_t>(argument));
}

/// An address that faults whoever follows it.
template <class Pointed> Pointed* Unreadable()
{
    return reinterpret_cast<Pointed*>(std::uintptr_t{0x10});
}

/// Expects that the target saw one call since the last look, with these arguments.
inline void ExpectForwarded(Target& target, const std::string& function,
                            const std::vector<std::uint64_t>& arguments)
{
    const std::vector<SeenCall> seen = target.TakeCalls();
    ASSERT_EQ(seen.size(), 1u);
    EXPECT_EQ(seen[0].Function, function);
    EXPECT_EQ(seen[0].Arguments, arguments);
}

} // namespace marvane::testing
