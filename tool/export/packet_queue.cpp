#include "tool/export/packet_queue.h"

#include <limits>

namespace marvane::tool::pcapng {

namespace {

// Late answers may come for so many requests that have ended.
constexpr std::size_t MostEnded = 1024;

std::size_t BytesOf(const QueuedPacket& packet)
{
    return sizeof packet + packet.Payload.size() + packet.Comment.size();
}

} // namespace

void PacketQueue::Add(QueuedPacket packet)
{
    const Place place = {packet.Us, ++order_};
    if (packet.Request != 0)
        requests_[packet.Request] = {place, 0};
    waitingBytes_ += BytesOf(packet);
    waiting_.emplace(place, std::move(packet));
    while (waiting_.size() > MostPackets || waitingBytes_ > MostBytes)
        WriteFirst();
}

void PacketQueue::Move(std::uint64_t request, std::int64_t us)
{
    const auto known = requests_.find(request);
    if (known == requests_.end() || known->second.Number != 0)
        return;
    auto packet = waiting_.extract(known->second.At);
    packet.key().Us = packet.mapped().Us = us;
    known->second.At = packet.key();
    waiting_.insert(std::move(packet));
}

std::int64_t PacketQueue::TimeOf(std::uint64_t request) const
{
    const auto known = requests_.find(request);
    return known == requests_.end() ? std::numeric_limits<std::int64_t>::min() : known->second.At.Us;
}

void PacketQueue::Advance(std::int64_t us)
{
    while (!waiting_.empty() && waiting_.begin()->first.Us < us - HoldUs)
        WriteFirst();
}

void PacketQueue::Forget(std::uint64_t request)
{
    ended_.push_back(request);
    if (ended_.size() <= MostEnded)
        return;
    const auto known = requests_.find(ended_.front());
    // One that waits must still be able to say its number to those that wait for it.
    if (known != requests_.end() && known->second.Number == 0)
        ended_.push_back(ended_.front());
    else if (known != requests_.end())
        requests_.erase(known);
    ended_.pop_front();
}

std::string PacketQueue::CommentOf(const QueuedPacket& packet) const
{
    std::string comment = packet.Comment;
    const std::size_t at = packet.About == 0 ? std::string::npos : comment.find('%');
    if (at == std::string::npos)
        return comment;
    const auto known = requests_.find(packet.About);
    const bool hasNumber = known != requests_.end() && known->second.Number != 0;
    return comment.replace(at, 1,
                           hasNumber ? "packet " + std::to_string(known->second.Number) : "a request before");
}

void PacketQueue::WriteFirst()
{
    const auto first = waiting_.extract(waiting_.begin());
    const QueuedPacket& packet = first.mapped();
    waitingBytes_ -= BytesOf(packet);
    ++written_;
    if (const auto known = requests_.find(packet.Request); known != requests_.end())
        known->second.Number = written_;
    const std::string comment = CommentOf(packet);
    out_.Write(EnhancedPacket({packet.Interface, packet.Us, packet.Direction, packet.Dissector,
                               packet.Protocol, packet.Payload, packet.Size, comment}));
}

void PacketQueue::Finish()
{
    while (!waiting_.empty())
        WriteFirst();
}

} // namespace marvane::tool::pcapng
