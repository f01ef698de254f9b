#include "tool/report/json_stream.h"

#include <vector>

#include <gtest/gtest.h>

#include "tests/support/page_block.h"
#include "tool/report/string_table.h"

namespace marvane::tool {
namespace {

struct Row
{
    std::uint64_t Line;
    int Status;
};

TEST(JsonStream, WritesMembersAndColumns)
{
    const std::vector<Row> rows = {{5, -1}, {9, 0}, {7, 12}};
    PackedText packed;
    JsonStream out(packed);
    out.Member("format", "\"x/1\"");
    out.Member("begin", 1795307256984);
    out.BeginColumns("records");
    out.Differences("line", rows, [](const Row& row) { return row.Line; });
    out.Column("status", rows, [](const Row& row) { return row.Status; });
    out.EndColumns();
    out.BeginColumns("none");
    out.Column("line", std::vector<Row>(), [](const Row& row) { return row.Line; });
    out.EndColumns();
    out.Member("last", "null");
    out.Finish();
    EXPECT_EQ(testing::Unpacked(packed.Finish()),
              R"({"format":"x/1","begin":1795307256984,"records":{"line":[5,4,-2],"status":[-1,0,12]},)"
              R"("none":{"line":[]},"last":null})");
}

TEST(JsonStream, WritesLongColumnsWhole)
{
    std::vector<Row> rows;
    std::string expected = "{\"status\":[";
    for (int i = 0; i < 50'000; ++i) {
        rows.push_back({0, i});
        expected += (i == 0 ? "" : ",") + std::to_string(i);
    }
    PackedText packed;
    JsonStream out(packed);
    out.Column("status", rows, [](const Row& row) { return row.Status; });
    out.Finish();
    EXPECT_EQ(testing::Unpacked(packed.Finish()), expected + "]}");
}

TEST(StringTable, WritesEachStringOnce)
{
    StringTable strings;
    EXPECT_EQ(strings.Number(""), 0u);
    EXPECT_EQ(strings.Number("62 F1 90"), 1u);
    EXPECT_EQ(strings.Number("a \"b\"\n"), 2u);
    EXPECT_EQ(strings.Number("62 F1 90"), 1u);
    EXPECT_EQ(strings.Number("\xFF"), 3u);
    EXPECT_EQ(strings.Json(), "[\"\",\"62 F1 90\",\"a \\\"b\\\"\\n\",\"\xEF\xBF\xBD\"]");
}

} // namespace
} // namespace marvane::tool
