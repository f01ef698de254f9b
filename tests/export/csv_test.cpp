// Cells of tables for spreadsheets.
#include <algorithm>

#include <gtest/gtest.h>

#include "tests/support/child_program.h"

namespace marvane::testing {
namespace {

const std::string Name = "D-PDU_API_Logger_25-11-2026_14-03-00.LGR";

/// The rows of a table of a log with these lines.
std::string Table(const std::string& table, const std::string& log)
{
    const TemporaryFolder folder;
    WriteFileBytes(folder / Name, log);
    const ProgramResult result =
        RunProgram("marvane", "export --format csv --zone Z --table " + table + " " + Quoted(folder / Name));
    EXPECT_EQ(result.Status, 0) << result.Errors;
    return result.Output;
}

/// The cell with these arguments of a call, as far as the comma before the next cell that is not empty.
std::string Cell(const std::string& arguments)
{
    const std::string rows =
        Table("calls", "{14:03:01.000 - 00001A2C} + PDUGetVersion(" + arguments + ")\n" +
                           "{14:03:01.000 - 00001A2C} - PDUGetVersion<PDU_STATUS_NOERROR (0x0000)>\n");
    const std::string before = ",2026-11-25T14:03:01.000+00:00," + Name + ",2,";
    const std::size_t begin = rows.find(before) + before.size();
    return rows.substr(begin, rows.find(",,," + Name, begin) - begin);
}

TEST(Csv, CellsAreQuotedOnlyIfTheyMustBe)
{
    EXPECT_EQ(Cell("plain; text"), "plain; text");
    EXPECT_EQ(Cell("a, b"), "\"a, b\"");
    EXPECT_EQ(Cell("\"a\""), "\"\"\"a\"\"\"");
}

TEST(Csv, AFormulaIsNoFormula)
{
    EXPECT_EQ(Cell("=cmd|'/c calc'!A1"), "\"'=cmd|'/c calc'!A1\"");
    EXPECT_EQ(Cell("+1"), "\"'+1\"");
    EXPECT_EQ(Cell("-1"), "\"'-1\"");
    EXPECT_EQ(Cell("@SUM(A1)"), "\"'@SUM(A1)\"");
}

TEST(Csv, WhatIsNoUtf8IsReplacedAndSaid)
{
    EXPECT_EQ(Cell("\xC3\xA4 \xE4"), "\xC3\xA4 \xEF\xBF\xBD");
    const std::string rows = Table("calls", "{14:03:01.000 - 00001A2C} + PDUGetVersion(\xE4)\n");
    EXPECT_TRUE(rows.ends_with("," + Name + ",1,,1\n")) << rows;
}

TEST(Csv, ARequestWhoseCallNeverReturnedIsACallAndNoExchange)
{
    const std::string log = "{14:03:01.000 - 00001A2C} + PDUStartComPrimitive\n";
    EXPECT_EQ(std::ranges::count(Table("exchanges", log), '\n'), 1) << "not only the names of the columns";
    EXPECT_NE(Table("calls", log).find(",PDUStartComPrimitive,6700,in_flight,"), std::string::npos);
}

TEST(Csv, ATableThatIsUnknownIsWrongUsage)
{
    const TemporaryFolder folder;
    WriteFileBytes(folder / Name, "{14:03:01.000 - 00001A2C} + PDUGetVersion(x)\n");
    const ProgramResult result =
        RunProgram("marvane", "export --format csv --table call " + Quoted(folder / Name));
    EXPECT_EQ(result.Status, 2);
    EXPECT_EQ(result.Errors, "marvane: --format csv has no table 'call'; did you mean 'calls'?\n"
                             "Try 'marvane export --help'.\n");
}

} // namespace
} // namespace marvane::testing
