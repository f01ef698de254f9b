#include "logger/log/thread_stamp.h"

#include <cstdio>
#include <string>

#include <gtest/gtest.h>

#include "platform/process.h"

namespace marvane {
namespace {

std::string StampAt(ThreadStamp& stamp, std::int64_t second, std::uint32_t milliseconds)
{
    char text[ThreadStamp::Place];
    stamp.At(second).Put(milliseconds, text);
    return {text, 26};
}

std::string Expected(std::int64_t second, unsigned milliseconds)
{
    const platform::TimeOfDay time = platform::LocalTimeOfDay(second);
    char text[40];
    std::snprintf(text, sizeof text, "{%02u:%02u:%02u.%03u - %08X} ", time.Hour, time.Minute, time.Second,
                  milliseconds, platform::CurrentThreadId());
    return text;
}

TEST(ThreadStamp, FollowsTheMillisecondsAndTheSeconds)
{
    constexpr std::int64_t second = 1711845000;
    ThreadStamp stamp;
    EXPECT_EQ(StampAt(stamp, second, 10), Expected(second, 10));
    EXPECT_EQ(StampAt(stamp, second, 10), Expected(second, 10));
    EXPECT_EQ(StampAt(stamp, second, 999), Expected(second, 999));
    EXPECT_EQ(StampAt(stamp, second + 1, 999), Expected(second + 1, 999));
    EXPECT_EQ(StampAt(stamp, second, 999), Expected(second, 999)) << "a clock that was set back";
}

} // namespace
} // namespace marvane
