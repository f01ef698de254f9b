// Packets in the order of their time: answers are known later in the log than they came.
#pragma once

#include <cstdint>
#include <deque>
#include <map>
#include <string>
#include <vector>

#include "tool/export/pcapng_blocks.h"
#include "tool/export/sink.h"

namespace marvane::tool::pcapng {

/// A packet that waits for its turn, with what belongs to it.
struct QueuedPacket
{
    std::uint32_t Interface = 0;
    std::int64_t Us = 0; ///< since 1970, UTC
    Way Direction = Way::None;
    std::string_view Dissector;
    std::string Protocol;
    std::vector<std::uint8_t> Payload;
    std::uint64_t Size = 0;
    std::string Comment;       ///< "%" stands for "packet 3", the request that it is about
    std::uint64_t Request = 0; ///< Exchange::Seq of the request that this packet is
    std::uint64_t About = 0;   ///< ... that the comment is about
};

/// Holds packets back for so long as others with an earlier time may come: a minute of the log, if they are
/// not too many. What comes later still is written out of order.
class PacketQueue
{
public:
    static constexpr std::int64_t HoldUs = 60'000'000;
    static constexpr std::size_t MostPackets = 50'000;
    static constexpr std::size_t MostBytes = 32'000'000;

    /// `out` outlives it.
    explicit PacketQueue(Sink& out) : out_(out) {}

    void Add(QueuedPacket packet);
    /// Gives a request another time, if it is still there.
    void Move(std::uint64_t request, std::int64_t us);
    /// The time of a request; INT64_MIN if it is not known any more.
    std::int64_t TimeOf(std::uint64_t request) const;
    /// The log has come to that time.
    void Advance(std::int64_t us);
    /// Nothing more will be said about that request but late answers.
    void Forget(std::uint64_t request);
    void Finish();

private:
    struct Place
    {
        std::int64_t Us = 0;
        std::uint64_t Order = 0;
        friend auto operator<=>(const Place&, const Place&) = default;
    };
    /// Where a request is: waiting at `At`, or written as packet `Number`.
    struct Known
    {
        Place At;
        std::uint64_t Number = 0;
    };

    void WriteFirst();
    std::string CommentOf(const QueuedPacket& packet) const;

    Sink& out_;
    std::map<Place, QueuedPacket> waiting_;
    std::size_t waitingBytes_ = 0;
    std::uint64_t order_ = 0;
    std::uint64_t written_ = 0;
    std::map<std::uint64_t, Known> requests_;
    std::deque<std::uint64_t> ended_; ///< requests whose end is known, the last ones
};

} // namespace marvane::tool::pcapng
