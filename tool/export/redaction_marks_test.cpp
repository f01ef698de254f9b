#include "tool/export/redaction_marks.h"

#include <array>

#include <gtest/gtest.h>

namespace marvane::tool {
namespace {

using Data = std::vector<std::uint8_t>;

TEST(RedactionMarks, KnowTheLinesOfEachFile)
{
    RedactionMarks marks;
    marks.AddLine(1, 5);
    marks.AddLine(1, 9);
    marks.AddLine(2, 7);
    EXPECT_TRUE(marks.IsChanged(1, 5));
    EXPECT_FALSE(marks.IsChanged(1, 7));
    EXPECT_FALSE(marks.IsChanged(3, 5));
    EXPECT_TRUE(marks.IsChanged(1, 6, 9));
    EXPECT_FALSE(marks.IsChanged(1, 6, 8));
    EXPECT_FALSE(marks.IsChanged(3, 1, 100));
    EXPECT_EQ(marks.LineCount(), 3u);
}

TEST(RedactionMarks, OfAFileThatBeginsAnewAreGone)
{
    RedactionMarks marks;
    marks.AddLine(1, 5);
    marks.AddLine(2, 5);
    marks.BeginFile(1);
    EXPECT_FALSE(marks.IsChanged(1, 5));
    EXPECT_TRUE(marks.IsChanged(2, 5));
    EXPECT_EQ(marks.LineCount(), 2u);
}

TEST(RedactionMarks, OfACallAreThoseOfItsLines)
{
    const std::array in = {read::CallLine{12, ""}};
    const std::array out = {read::CallLine{3, ""}};
    read::Call call;
    call.Begin = {1, 10};
    call.End = {2, 4};
    call.LinesIn = in;
    call.LinesOut = out;
    const auto isChangedBy = [&](std::uint32_t file, std::uint64_t line) {
        RedactionMarks marks;
        marks.AddLine(file, line);
        return marks.IsChanged(call);
    };
    EXPECT_TRUE(isChangedBy(1, 10));
    EXPECT_TRUE(isChangedBy(1, 11)); // arguments go on there
    EXPECT_TRUE(isChangedBy(1, 12));
    EXPECT_TRUE(isChangedBy(2, 3));
    EXPECT_FALSE(isChangedBy(1, 3));
    EXPECT_FALSE(isChangedBy(2, 12));
}

TEST(RedactionMarks, OfAReportAreThoseOfItsLines)
{
    const std::array lines = {read::CallLine{11, ""}};
    read::Comms report;
    report.At = {1, 10};
    report.Lines = lines;
    RedactionMarks marks;
    marks.AddLine(1, 12);
    EXPECT_FALSE(marks.IsChanged(report));
    marks.BeginFile(1);
    marks.AddLine(1, 11);
    EXPECT_TRUE(marks.IsChanged(report));
}

TEST(RedactionMarks, FindBytesInRequestsAndAnswers)
{
    const Data bytes = {0x62, 0xF1, 0x90, 0x30};
    RedactionMarks marks;
    marks.AddPayload(bytes);
    EXPECT_TRUE(marks.IsChanged(read::Bytes(bytes)));
    EXPECT_FALSE(marks.IsChanged(read::Bytes(bytes).first(3)));
    EXPECT_FALSE(marks.IsChanged(read::Bytes()));
    read::Exchange exchange;
    exchange.Request = {0x22, 0xF1, 0x90};
    EXPECT_FALSE(marks.IsChanged(exchange));
    exchange.Answers.emplace_back().Data = bytes;
    EXPECT_TRUE(marks.IsChanged(exchange));
}

TEST(RedactionMarks, OfVeryManyTheFirstAreForgotten)
{
    RedactionMarks marks;
    for (std::uint64_t line = 1; line <= RedactionMarks::MostLines + 1; ++line)
        marks.AddLine(1, line);
    EXPECT_FALSE(marks.IsChanged(1, 1));
    EXPECT_TRUE(marks.IsChanged(1, 2));
    EXPECT_TRUE(marks.IsChanged(1, RedactionMarks::MostLines + 1));
    EXPECT_EQ(marks.LineCount(), RedactionMarks::MostLines + 1);
}

} // namespace
} // namespace marvane::tool
