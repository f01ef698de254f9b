#include "line/dump_columns.h"

#include <numeric>
#include <string>

#include <gtest/gtest.h>

#include "line/dump_line.h"

namespace marvane {
namespace {

constexpr Arrow Received(Direction::FromTarget, 1);

std::array<std::uint8_t, 16> BytesFrom(std::uint8_t first)
{
    std::array<std::uint8_t, 16> bytes;
    std::iota(bytes.begin(), bytes.end(), first);
    return bytes;
}

/// The last line of a listing, without stamp and line break.
std::string Last(std::uint32_t offset, const std::array<std::uint8_t, 16>& bytes, std::size_t count, bool cut,
                 std::string_view label = "pDataBytes")
{
    DumpLine line({}, Received, label);
    std::string text(line.Last(offset, bytes.data(), count, cut));
    EXPECT_EQ(text.back(), '\n');
    text.pop_back();
    return text;
}

std::optional<DumpRow> Parsed(const std::string& line)
{
    EXPECT_EQ(ParseArrow(line), Received);
    return ParseDumpRow(std::string_view(line).substr(ArrowLength));
}

TEST(DumpLine, OfSixteenBytesHasItsStamp)
{
    const DumpLine line("{14:03:07.250 - 00001A2C} ", Received, "pDataBytes");
    std::string text(line.Length(), '\0');
    line.PutWhole(text.data(), 0x20, BytesFrom('A').data());
    EXPECT_EQ(text,
              "{14:03:07.250 - 00001A2C}     <<< pDataBytes     |00000020 <41 42 43 44 45 46 47 48 49 4A 4B "
              "4C 4D 4E 4F 50>  ABCDEFGHIJKLMNOP|\n");
}

TEST(DumpLine, OfFewerBytesIsPadded)
{
    EXPECT_EQ(
        Last(16, BytesFrom('0'), 4, false),
        "    <<< pDataBytes     |00000010 <30 31 32 33>                                      0123            |");
}

TEST(DumpLine, OfACutListingHasTheMarkOverItsEnd)
{
    EXPECT_EQ(Last(0, BytesFrom('A'), 16, true),
              "    <<< pDataBytes     |00000000 <41 42 43 44 45 46 47 48 49 4A 4B 4C 4D 4E 4F 50>  "
              "ABCDEFGHIJKLMNOP|( ...)|");
    EXPECT_EQ(
        Last(0, BytesFrom('A'), 2, true),
        "    <<< pDataBytes     |00000000 <41 42>                                            AB ( ...)|");
}

TEST(DumpRow, IsReadBack)
{
    for (const bool cut : {false, true})
        for (std::size_t count = 1; count <= 16; ++count)
            for (unsigned first = 0; first < 256; first += 5) {
                auto bytes = BytesFrom(static_cast<std::uint8_t>(first));
                const std::string line = Last(first << 20, bytes, count, cut);
                std::fill(bytes.begin() + static_cast<std::ptrdiff_t>(count), bytes.end(), std::uint8_t{0});
                EXPECT_EQ(Parsed(line), (DumpRow{"pDataBytes", first << 20, bytes, count, cut})) << line;
            }
}

TEST(DumpRow, HasItsLabelWithoutPadding)
{
    const auto bytes = BytesFrom(0);
    EXPECT_EQ(Parsed(Last(0, bytes, 16, false, ""))->Label, "");
    EXPECT_EQ(Parsed(Last(0, bytes, 16, false, "A label |<"))->Label, "A label |<");
    EXPECT_EQ(Parsed(Last(0, bytes, 16, false, "pByteArrayArray"))->Label, "pByteArrayArra");
}

TEST(DumpRow, WithOneWrongCharacterIsNone)
{
    for (const bool cut : {false, true})
        for (const std::size_t count : {1u, 7u, 15u, 16u}) {
            const std::string good = Last(0x10, BytesFrom('a'), count, cut);
            for (std::size_t i = dump_columns::LabelEnd; i < good.size(); ++i) {
                std::string wrong = good;
                wrong[i] = '?';
                EXPECT_EQ(Parsed(wrong), std::nullopt) << wrong;
            }
        }
}

TEST(DumpRow, ThatEndsEarlyOrLateIsNone)
{
    for (const bool cut : {false, true}) {
        const std::string good = Last(0, BytesFrom('a'), 5, cut);
        for (std::size_t length = ArrowLength; length < good.size(); ++length)
            EXPECT_EQ(Parsed(good.substr(0, length)), std::nullopt) << length;
        EXPECT_EQ(Parsed(good + ' '), std::nullopt);
    }
}

TEST(PrintableBytes, KeepsPrintableAsciiAlone)
{
    for (unsigned byte = 0; byte < 256; ++byte) {
        const std::uint64_t shown = byte >= 0x20 && byte <= 0x7E ? byte : '.';
        for (unsigned place = 0; place < 64; place += 8)
            EXPECT_EQ(PrintableBytes(std::uint64_t{byte} << place) >> place & 0xFF, shown);
    }
}

} // namespace
} // namespace marvane
