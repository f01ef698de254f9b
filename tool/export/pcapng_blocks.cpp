#include "tool/export/pcapng_blocks.h"

#include <algorithm>
#include <limits>

namespace marvane::tool::pcapng {

namespace {

constexpr std::uint32_t SectionBlock = 0x0A0D0D0A;
constexpr std::uint32_t InterfaceBlock = 1;
constexpr std::uint32_t PacketBlock = 6;
constexpr std::uint16_t UpperPdu = 252;

constexpr std::uint16_t OptionEnd = 0;
constexpr std::uint16_t OptionComment = 1;
constexpr std::uint16_t OptionInterfaceName = 2;
constexpr std::uint16_t OptionPacketFlags = 2;
constexpr std::uint16_t OptionInterfaceDescription = 3;
constexpr std::uint16_t OptionApplication = 4;
constexpr std::uint16_t OptionResolution = 9;

constexpr std::uint16_t TagEnd = 0;
constexpr std::uint16_t TagDissector = 12;
constexpr std::uint16_t TagProtocol = 33;
constexpr std::uint16_t TagDirection = 35;

// The length of an option has 16 bits.
constexpr std::size_t MostOption = 0xFFFC;

void PutLittle(std::string& out, std::uint64_t value, unsigned bytes)
{
    for (unsigned i = 0; i < bytes; ++i)
        out += static_cast<char>(value >> (8 * i) & 0xFF);
}

void PutBig(std::string& out, std::uint64_t value, unsigned bytes)
{
    for (unsigned i = bytes; i-- > 0;)
        out += static_cast<char>(value >> (8 * i) & 0xFF);
}

void Pad(std::string& out)
{
    out.resize((out.size() + 3) / 4 * 4, '\0');
}

void PutOption(std::string& body, std::uint16_t code, std::string_view value)
{
    value = value.substr(0, MostOption);
    PutLittle(body, code, 2);
    PutLittle(body, value.size(), 2);
    body += value;
    Pad(body);
}

void PutTextOption(std::string& body, std::uint16_t code, std::string_view text)
{
    if (!text.empty())
        PutOption(body, code, text);
}

/// The block of a body that is padded already.
std::string Block(std::uint32_t type, const std::string& body)
{
    const std::size_t length = body.size() + 12;
    std::string block;
    block.reserve(length);
    PutLittle(block, type, 4);
    PutLittle(block, length, 4);
    block += body;
    PutLittle(block, length, 4);
    return block;
}

void PutTag(std::string& data, std::uint16_t tag, std::string value)
{
    Pad(value);
    PutBig(data, tag, 2);
    PutBig(data, value.size(), 2);
    data += value;
}

std::string Tags(const Packet& packet)
{
    std::string tags;
    PutTag(tags, TagDissector, std::string(packet.Dissector));
    if (!packet.Protocol.empty())
        PutTag(tags, TagProtocol, std::string(packet.Protocol.substr(0, 255)));
    if (packet.Direction != Way::None)
        PutTag(tags, TagDirection, std::string(3, '\0') + (packet.Direction == Way::Received ? '\1' : '\0'));
    PutTag(tags, TagEnd, {});
    return tags;
}

std::uint32_t Length(std::uint64_t size)
{
    return static_cast<std::uint32_t>(
        std::min<std::uint64_t>(size, std::numeric_limits<std::uint32_t>::max()));
}

} // namespace

std::string SectionHeader(std::string_view program)
{
    std::string body;
    PutLittle(body, 0x1A2B3C4D, 4);
    PutLittle(body, 1, 2);
    PutLittle(body, 0, 2);
    PutLittle(body, std::numeric_limits<std::uint64_t>::max(), 8); // the section's length is not known
    PutTextOption(body, OptionApplication, program);
    PutOption(body, OptionEnd, {});
    return Block(SectionBlock, body);
}

std::string InterfaceDescription(std::string_view name, std::string_view description)
{
    std::string body;
    PutLittle(body, UpperPdu, 2);
    PutLittle(body, 0, 2);
    PutLittle(body, 0, 4); // packets of any length
    PutTextOption(body, OptionInterfaceName, name);
    PutTextOption(body, OptionInterfaceDescription, description);
    PutOption(body, OptionResolution, "\6"); // microseconds
    PutOption(body, OptionEnd, {});
    return Block(InterfaceBlock, body);
}

std::string EnhancedPacket(const Packet& packet)
{
    std::string data = Tags(packet);
    const std::uint64_t size = data.size() + std::max<std::uint64_t>(packet.Size, packet.Payload.size());
    data.append(packet.Payload.begin(), packet.Payload.end());
    const auto time = static_cast<std::uint64_t>(packet.Us);
    std::string body;
    PutLittle(body, packet.Interface, 4);
    PutLittle(body, time >> 32, 4);
    PutLittle(body, time, 4);
    PutLittle(body, data.size(), 4);
    PutLittle(body, Length(size), 4);
    body += data;
    Pad(body);
    PutTextOption(body, OptionComment, packet.Comment);
    if (packet.Direction != Way::None) {
        std::string flags;
        PutLittle(flags, packet.Direction == Way::Received ? 1 : 2, 4);
        PutOption(body, OptionPacketFlags, flags);
    }
    PutOption(body, OptionEnd, {});
    return Block(PacketBlock, body);
}

} // namespace marvane::tool::pcapng
