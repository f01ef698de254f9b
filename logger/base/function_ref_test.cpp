#include "logger/base/function_ref.h"

#include <gtest/gtest.h>

namespace marvane {
namespace {

TEST(FunctionRef, IsEmptyByDefault)
{
    const FunctionRef<int(int)> none;
    EXPECT_FALSE(none);
}

TEST(FunctionRef, CallsWhatItRefersToWithItsState)
{
    int calls = 0;
    auto callable = [&calls](int value) {
        ++calls;
        return value * 2;
    };
    const FunctionRef<int(int)> reference = callable;
    EXPECT_TRUE(reference);
    EXPECT_EQ(reference(21), 42);
    EXPECT_EQ(calls, 1);
}

} // namespace
} // namespace marvane
