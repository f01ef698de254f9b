#include "tool/export/pcapng_blocks.h"

#include <gtest/gtest.h>

namespace marvane::tool::pcapng {
namespace {

/// Bytes in hexadecimal, four a word.
std::string Hex(const std::string& bytes)
{
    static constexpr char digits[] = "0123456789abcdef";
    std::string text;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (i > 0 && i % 4 == 0)
            text += ' ';
        text += digits[static_cast<unsigned char>(bytes[i]) >> 4];
        text += digits[static_cast<unsigned char>(bytes[i]) & 15];
    }
    return text;
}

TEST(PcapngBlocks, ASectionNamesItsProgram)
{
    EXPECT_EQ(Hex(SectionHeader("marvane 1")), "0a0d0d0a 30000000 4d3c2b1a 01000000 ffffffff ffffffff "
                                               "04000900 6d617276 616e6520 31000000 00000000 30000000");
}

TEST(PcapngBlocks, AnInterfaceHasANameAndCountsMicroseconds)
{
    EXPECT_EQ(Hex(InterfaceDescription("a", "bcde")),
              "01000000 30000000 fc000000 00000000 02000100 61000000 03000400 62636465 09000100 06000000 "
              "00000000 30000000");
}

TEST(PcapngBlocks, ARequestIsOutbound)
{
    const std::uint8_t bytes[] = {0x22, 0xF1, 0x90};
    const Packet packet = {.Interface = 1,
                           .Us = 0x0001'0000'0002,
                           .Direction = Way::Sent,
                           .Dissector = "uds",
                           .Payload = bytes,
                           .Size = 3};
    EXPECT_EQ(Hex(EnhancedPacket(packet)),
              "06000000 44000000 01000000 01000000 02000000 17000000 17000000 "
              "000c0004 75647300 00230004 00000000 00000000 22f19000 02000400 02000000 00000000 44000000");
}

TEST(PcapngBlocks, ACutAnswerHasItsRealSize)
{
    const std::uint8_t bytes[] = {0x62};
    const Packet packet = {
        .Direction = Way::Received, .Dissector = "uds", .Payload = bytes, .Size = 0x100, .Comment = "why"};
    EXPECT_EQ(Hex(EnhancedPacket(packet)), "06000000 4c000000 00000000 00000000 00000000 15000000 14010000 "
                                           "000c0004 75647300 00230004 00000001 00000000 62000000 "
                                           "01000300 77687900 02000400 01000000 00000000 4c000000");
}

TEST(PcapngBlocks, ATextHasNoDirection)
{
    const std::uint8_t bytes[] = {'<', '6', '>'};
    const Packet packet = {.Dissector = "data", .Protocol = "KWP", .Payload = bytes, .Size = 3};
    EXPECT_EQ(Hex(EnhancedPacket(packet)),
              "06000000 3c000000 00000000 00000000 00000000 17000000 17000000 "
              "000c0004 64617461 00210004 4b575000 00000000 3c363e00 00000000 3c000000");
}

} // namespace
} // namespace marvane::tool::pcapng
