#include "platform/process.h"

#include <thread>

#include <gtest/gtest.h>

namespace marvane {
namespace {

TEST(ThreadId, IsStableInAThreadAndAnotherInAnother)
{
    const std::uint32_t own = platform::CurrentThreadId();
    EXPECT_EQ(platform::CurrentThreadId(), own);
    std::uint32_t other = own;
    std::thread([&] { other = platform::CurrentThreadId(); }).join();
    EXPECT_NE(other, own);
}

} // namespace
} // namespace marvane
