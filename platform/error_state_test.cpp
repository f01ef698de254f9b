#include "platform/error_state.h"

#include <gtest/gtest.h>

#include "tests/support/error_state.h"

namespace marvane {
namespace {

TEST(ErrorState, IsKeptOverAScope)
{
    testing::SetErrorState(77);
    {
        const platform::ErrorStateKept kept;
        testing::SetErrorState(ENOENT);
    }
    const testing::ErrorState left = testing::CurrentErrorState();
    EXPECT_EQ(left, testing::ErrorStateOf(77));
}

} // namespace
} // namespace marvane
