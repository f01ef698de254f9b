#include "tool/report/base64.h"

#include <gtest/gtest.h>

namespace marvane::tool {
namespace {

TEST(Base64, FillsUpTheLastGroup)
{
    EXPECT_EQ(Base64Text(""), "");
    EXPECT_EQ(Base64Text("f"), "Zg==");
    EXPECT_EQ(Base64Text("fo"), "Zm8=");
    EXPECT_EQ(Base64Text("foo"), "Zm9v");
    EXPECT_EQ(Base64Text("foob"), "Zm9vYg==");
    EXPECT_EQ(Base64Text("fooba"), "Zm9vYmE=");
    EXPECT_EQ(Base64Text("foobar"), "Zm9vYmFy");
}

TEST(Base64, TakesEveryByte)
{
    using namespace std::string_literals;
    EXPECT_EQ(Base64Text("\x00\xFF\x80"s), "AP+A");
    EXPECT_EQ(Base64Text("\xFF\xFF\xFE"s), "///+");
}

TEST(Base64, IsTheSameInPieces)
{
    const std::string bytes = "any carnal pleasure";
    for (std::size_t size = 1; size <= bytes.size(); ++size) {
        Base64 encoder;
        std::string text;
        for (std::size_t at = 0; at < bytes.size(); at += size)
            encoder.Append(text, std::string_view(bytes).substr(at, size));
        encoder.Finish(text);
        EXPECT_EQ(text, "YW55IGNhcm5hbCBwbGVhc3VyZQ==") << size;
    }
}

} // namespace
} // namespace marvane::tool
