#include "tool/export/packet_queue.h"

#include <gtest/gtest.h>

namespace marvane::tool::pcapng {
namespace {

/// The comments of the packets, in their order.
class Comments : public Sink
{
public:
    std::string Text;
    std::size_t Count = 0;

    void Write(std::string_view bytes) override
    {
        ++Count;
        const std::size_t at = bytes.find('[');
        Text += bytes.substr(at, bytes.find(']') + 1 - at);
    }
    void Flush() override {}
    void Finish() override {}
};

QueuedPacket PacketAt(std::int64_t us, const std::string& comment, std::uint64_t request = 0,
                      std::uint64_t about = 0)
{
    QueuedPacket packet;
    packet.Us = us;
    packet.Comment = "[" + comment + "]";
    packet.Request = request;
    packet.About = about;
    return packet;
}

TEST(PacketQueue, WritesInTheOrderOfTime)
{
    Comments out;
    PacketQueue queue(out);
    queue.Add(PacketAt(3, "c"));
    queue.Add(PacketAt(1, "a"));
    queue.Add(PacketAt(1, "b"));
    queue.Finish();
    EXPECT_EQ(out.Text, "[a][b][c]");
}

TEST(PacketQueue, AnAnswerNamesThePacketOfItsRequest)
{
    Comments out;
    PacketQueue queue(out);
    queue.Add(PacketAt(1, "first"));
    queue.Add(PacketAt(2, "request", 7));
    queue.Add(PacketAt(3, "answer to %", 0, 7));
    queue.Add(PacketAt(3, "answer to %", 0, 8));
    queue.Finish();
    EXPECT_EQ(out.Text, "[first][request][answer to packet 2][answer to a request before]");
}

TEST(PacketQueue, ARequestThatWaitsCanBeMoved)
{
    Comments out;
    PacketQueue queue(out);
    queue.Add(PacketAt(1, "request", 7));
    queue.Add(PacketAt(2, "other"));
    queue.Move(7, 3);
    EXPECT_EQ(queue.TimeOf(7), 3);
    queue.Finish();
    queue.Move(7, 4);
    EXPECT_EQ(queue.TimeOf(7), 3);
    EXPECT_EQ(out.Text, "[other][request]");
}

TEST(PacketQueue, HoldsPacketsBackForAMinuteOfTheLog)
{
    Comments out;
    PacketQueue queue(out);
    queue.Add(PacketAt(0, "a"));
    queue.Advance(PacketQueue::HoldUs);
    EXPECT_EQ(out.Text, "");
    queue.Advance(PacketQueue::HoldUs + 1);
    EXPECT_EQ(out.Text, "[a]");
}

TEST(PacketQueue, HoldsNoMoreThanItsLimit)
{
    Comments out;
    PacketQueue queue(out);
    for (std::size_t i = 0; i < PacketQueue::MostPackets + 3; ++i)
        queue.Add(PacketAt(static_cast<std::int64_t>(i), ""));
    EXPECT_EQ(out.Count, 3u);
}

TEST(PacketQueue, ForgetsRequestsLongAfterTheirEnd)
{
    Comments out;
    PacketQueue queue(out);
    for (std::uint64_t request = 1; request <= 2000; ++request) {
        const auto us = static_cast<std::int64_t>(request) * PacketQueue::HoldUs * 2;
        queue.Add(PacketAt(us, "", request));
        queue.Advance(us);
        queue.Forget(request);
    }
    EXPECT_EQ(queue.TimeOf(1), INT64_MIN);
    EXPECT_NE(queue.TimeOf(1999), INT64_MIN);
}

} // namespace
} // namespace marvane::tool::pcapng
