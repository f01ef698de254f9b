// The blocks of a pcapng file, as bytes. Packets are of link type 252 (upper PDU): tags name the dissector
// and the direction, and the payload follows them.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "tool/read/records.h"

namespace marvane::tool::pcapng {

enum class Way : std::uint8_t
{
    None, ///< a text: neither sent nor received
    Sent,
    Received
};

struct Packet
{
    std::uint32_t Interface = 0; ///< interfaces count from 0 in the order of their blocks
    std::int64_t Us = 0;         ///< microseconds since 1970, UTC
    Way Direction = Way::None;
    std::string_view Dissector{}; ///< as Wireshark names it: "uds"
    std::string_view Protocol{};  ///< text of the protocol column; only with the dissector "data"
    read::Bytes Payload{};
    std::uint64_t Size = 0; ///< of the whole payload; larger than Payload if that was cut
    std::string_view Comment{};
};

/// Begins a file; `program` is the name and version of what writes it.
std::string SectionHeader(std::string_view program);

/// Declares the next interface.
std::string InterfaceDescription(std::string_view name, std::string_view description);

/// A packet with its options.
std::string EnhancedPacket(const Packet& packet);

} // namespace marvane::tool::pcapng
