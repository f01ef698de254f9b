#include "config/attribute_line.h"

#include <gtest/gtest.h>

namespace marvane {
namespace {

/// "kind name|type|value number" of a line.
std::string Scanned(const std::string& line)
{
    static constexpr const char* kinds[] = {"none",    "no name", "no type", "no value",
                                            "unknown", "String",  "UNUM32"};
    const AttributeLine attribute = ScanAttributeLine(line);
    return std::string(kinds[static_cast<std::size_t>(attribute.Kind)]) + " " + attribute.Name.Text + "|" +
           attribute.Type.Text + "|" + attribute.Value.Text + " " + std::to_string(attribute.Number);
}

TEST(AttributeLine, YieldsItsThreeFieldsInAnyOrder)
{
    EXPECT_EQ(Scanned("<Attribute Name=\"A\" Type=\"String\" Value=\"x y\"/>"), "String A|String|x y 0");
    EXPECT_EQ(Scanned("\t<Attribute Value=\"12\" Type=\"UNUM32\" Name=\"B\""), "UNUM32 B|UNUM32|12 12");
}

TEST(AttributeLine, SaysWhereAFieldIs)
{
    const AttributeLine attribute = ScanAttributeLine("<Attribute Type=\"String\" Value=\"x\"/>");
    EXPECT_FALSE(attribute.Name.HasMarker);
    EXPECT_EQ(attribute.Name.Begin, 5u);
    EXPECT_TRUE(attribute.Value.HasMarker);
    EXPECT_EQ(attribute.Value.Begin, 32u);
}

TEST(AttributeLine, WithoutAMarkerYieldsWhatTheFixedOffsetHolds)
{
    EXPECT_EQ(Scanned("<Attribute Type=\"String\" Value=\"x\"/>"), "String ibute Type=|String|x 0");
    EXPECT_EQ(Scanned("<Attribute Name=\"A\" Value=\"1\"/>"), "unknown A|ibute Name=|1 0");
    EXPECT_EQ(Scanned("<Attribute Name=\"A\" Type=\"String\"/>"), "String A|String|bute Name= 0");
}

TEST(AttributeLine, WithoutAClosingQuoteEndsAtThatField)
{
    EXPECT_EQ(Scanned("<Attribute Type=\"String\" Value=\"x\" Name=\"A"), "no name || 0");
    EXPECT_EQ(Scanned("<Attribute Name=\"A\" Value=\"x\" Type=\"String"), "no type A|| 0");
    EXPECT_EQ(Scanned("<Attribute Name=\"A\" Type=\"String\" Value=\"x"), "no value A|String| 0");
}

TEST(AttributeLine, NeedsTheTagWithItsBlank)
{
    EXPECT_EQ(Scanned(""), "none || 0");
    EXPECT_EQ(Scanned("<Attribute"), "none || 0");
    EXPECT_EQ(Scanned("<Attribute\tName=\"A\" Type=\"String\" Value=\"x\"/>"), "none || 0");
    EXPECT_EQ(Scanned("<Attribute "), "no name || 0");
}

TEST(AttributeLine, InACommentCounts)
{
    EXPECT_EQ(Scanned("<!-- <Attribute Name=\"A\" Type=\"UNUM32\" Value=\"1\"/> -->"), "UNUM32 A|UNUM32|1 1");
}

TEST(AttributeNumber, IsDecimalWithSignAndSaturates)
{
    EXPECT_EQ(ToNumber(" +12abc"), 12u);
    EXPECT_EQ(ToNumber("0x10"), 0u);
    EXPECT_EQ(ToNumber(""), 0u);
    EXPECT_EQ(ToNumber("-1"), 4294967295u);
    EXPECT_EQ(ToNumber("4294967295"), 2147483647u);
    EXPECT_EQ(ToNumber("-99999999999999999999999"), 2147483648u);
}

} // namespace
} // namespace marvane
