#include "platform/error_state.h"

#include <gtest/gtest.h>

namespace marvane {
namespace {

TEST(ErrorState, IsKeptOverAScope)
{
    errno = 77;
    {
        const platform::ErrorStateKept kept;
        errno = ENOENT;
    }
    EXPECT_EQ(errno, 77);
}

} // namespace
} // namespace marvane
