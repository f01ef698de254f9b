#include "platform/in_flight.h"

#include <memory>
#include <optional>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/process_state.h"

namespace marvane {
namespace {

using platform::InFlight;

constexpr int ForEver = 1000000000;

/// A thread that is inside until it is told to leave.
class ThreadInside
{
public:
    ThreadInside()
        : thread_([this] {
              const InFlight inside;
              entered_ = true;
              while (!leave_)
                  std::this_thread::yield();
          })
    {
        while (!entered_)
            std::this_thread::yield();
    }
    ~ThreadInside()
    {
        Leave();
        thread_.join();
    }
    void Leave() { leave_ = true; }

private:
    std::atomic<bool> entered_ = false;
    std::atomic<bool> leave_ = false;
    std::thread thread_;
};

TEST(InFlight, CountsTheScopesOfItsThread)
{
    EXPECT_EQ(platform::OwnDepth(), 0u);
    {
        const InFlight outer;
        const InFlight inner;
        EXPECT_EQ(platform::OwnDepth(), 2u);
    }
    EXPECT_EQ(platform::OwnDepth(), 0u);
}

TEST(InFlight, NobodyWaitsForItself)
{
    const InFlight inside;
    EXPECT_TRUE(platform::WaitForOthersToLeave(ForEver));
}

TEST(InFlight, AThreadThatStaysInsideIsWaitedForUntilTheTimeIsOver)
{
    const ThreadInside other;
    EXPECT_FALSE(platform::WaitForOthersToLeave(1));
}

TEST(InFlight, TheWaitEndsWhenTheOthersHaveLeft)
{
    std::optional<ThreadInside> first(std::in_place);
    std::optional<ThreadInside> second(std::in_place);
    first->Leave();
    second->Leave();
    EXPECT_TRUE(platform::WaitForOthersToLeave(ForEver));
}

TEST(InFlight, MoreThreadsThanSlotsAreAllWaitedFor)
{
    constexpr std::size_t count = (std::size_t{1} << platform::in_flight_detail::SlotBits) + 8;
    const testing::SmallThreadStacks small;
    std::vector<std::unique_ptr<ThreadInside>> threads;
    for (std::size_t i = 0; i < count; ++i)
        threads.push_back(std::make_unique<ThreadInside>());
    // Whichever is left is seen, with a slot or without.
    while (threads.size() > 1) {
        if (threads.size() % 64 == 1) {
            EXPECT_FALSE(platform::WaitForOthersToLeave(1)) << threads.size();
        }
        threads.pop_back();
    }
    EXPECT_FALSE(platform::WaitForOthersToLeave(1));
    threads.clear();
    EXPECT_TRUE(platform::WaitForOthersToLeave(ForEver));
}

} // namespace
} // namespace marvane
