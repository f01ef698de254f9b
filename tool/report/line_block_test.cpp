#include "tool/report/line_block.h"

#include <gtest/gtest.h>

#include "tests/support/page_block.h"

namespace marvane::tool {
namespace {

using namespace std::string_literals;

/// A line of a file; its stamp has 26 characters, as a log's.
read::Line LineAt(std::uint32_t file, std::uint64_t number, std::int64_t ms, std::string_view whole,
                  bool hasStamp = true)
{
    read::Line line;
    line.At = {file, number, 0};
    line.Time = {ms};
    line.HasStamp = hasStamp;
    line.Whole = whole;
    return line;
}

constexpr const char* First = "{10:00:00.000 - 00000001} + PDUConnect(1)";
constexpr const char* Same = "{10:00:00.000 - 00000001} - PDUConnect<0>";
constexpr const char* Other = "{10:00:00.001 - 00000001} + PDUDisconnect(1)";

TEST(LineBlock, WritesAStampOnceWhileItIsTheSame)
{
    LineBlock block({});
    block.Add(LineAt(0, 1, 0, First));
    block.Add(LineAt(0, 2, 0, Same));
    block.Add(LineAt(0, 3, 0, "no stamp", false));
    block.Add(LineAt(0, 4, 0, Same));
    block.Add(LineAt(0, 5, 1, Other));
    EXPECT_EQ(testing::Unpacked(block.Finish()),
              First + "\n\1- PDUConnect<0>\n\2no stamp\n\1- PDUConnect<0>\n"s + Other + "\n");
}

TEST(LineBlock, CountsLinesOverAllFiles)
{
    LineBlock block({});
    block.Add(LineAt(0, 1, 0, First));
    block.Add(LineAt(0, 2, 0, Same));
    block.Add(LineAt(2, 1, 0, Other));
    EXPECT_EQ(block.IndexOf({0, 2, 0}), 1u);
    EXPECT_EQ(block.IndexOf({0, 3, 0}), std::nullopt);
    EXPECT_EQ(block.IndexOf({0, 0, 0}), std::nullopt);
    EXPECT_EQ(block.IndexOf({1, 1, 0}), std::nullopt);
    EXPECT_EQ(block.IndexOf({2, 1, 0}), 2u);
    EXPECT_EQ(block.IndexOf({3, 1, 0}), std::nullopt);
    EXPECT_EQ(block.StretchOf(1).Count, 0u);
    EXPECT_EQ(block.Count(), 3u);
}

TEST(LineBlock, HoldsOneStretchOfEachFile)
{
    LineBlock block({read::LogTime{10}, read::LogTime{20}});
    block.Add(LineAt(0, 1, 9, "before", false));
    block.Add(LineAt(0, 2, 10, "first", false));
    block.Add(LineAt(0, 3, 9, "clock set back", false));
    block.Add(LineAt(0, 4, 20, "last", false));
    block.Add(LineAt(0, 5, 21, "after", false));
    block.Add(LineAt(0, 6, 20, "after, clock set back", false));
    block.Add(LineAt(1, 1, 15, "other file", false));
    EXPECT_EQ(block.Begin().Ms, 10);
    EXPECT_EQ(block.StretchOf(0).First, 2u);
    EXPECT_EQ(block.IndexOf({0, 2, 0}), 0u);
    EXPECT_EQ(block.IndexOf({0, 5, 0}), std::nullopt);
    EXPECT_EQ(block.LastIndexOf({0, 3, 0}, {0, 5, 0}), 2u);
    EXPECT_EQ(block.IndexOf({1, 1, 0}), 3u);
    EXPECT_EQ(testing::Unpacked(block.Finish()), "\2first\n\2clock set back\n\2last\n\2other file\n");
}

} // namespace
} // namespace marvane::tool
