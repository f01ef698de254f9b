// What marvane report puts into its page about the logs of this folder.

#include <gtest/gtest.h>

#include "tests/logs/command_output.h"
#include "tests/logs/dated_logs.h"
#include "tests/support/child_program.h"
#include "tests/support/page_block.h"
#include "tests/support/pattern.h"

namespace marvane::testing {
namespace {

struct Row
{
    const char* Name; ///< of the file with the expected model
    const char* Log;
    const char* Options;
};

class ReportOutput : public ::testing::TestWithParam<Row>
{
};

/// The model with a line a column, without what is different at each run.
std::string Readable(std::string model)
{
    model = ReplaceMatches(model, "\"program\":\"[^\"]*\",\"made\":\"[^\"]*\",", "");
    return ReplaceMatches(model, "(\\]|\\}),(\"|\\{)", "$1,\n$2") + "\n";
}

TEST_P(ReportOutput, IsAsExpected)
{
    const Row& row = GetParam();
    const DatedLogs logs;
    const ProgramResult result =
        RunProgram("marvane", "report -o - " + std::string(row.Options) + " " + Quoted(logs.Path(row.Log)));
    EXPECT_EQ(result.Status, 0);
    EXPECT_EQ(result.Errors, "");
    CompareText(row.Name, Readable(PageBlock(result.Output, "model")));
}

std::string NameOf(const ::testing::TestParamInfo<Row>& info)
{
    return info.param.Name;
}

const Row Rows[] = {
    {"demo_report", "demo", ""},
    {"demo_report_part", "demo", "--since 00:27:37.030 --until 00:27:37.139"},
    {"midnight_report", "midnight", ""},
    {"two_processes_report", "two_processes", ""},
    {"late_answer_report", "late_answer.LGR", ""},
    {"lost_data_and_errors_report", "lost_data_and_errors.LGR", ""},
    {"mark_in_entry_half_report", "mark_in_entry_half.LGR", ""},
    {"not_loaded_report", "not_loaded.LGR", ""},
    {"late_sending_report", "late_sending.LGR", ""},
    {"refused_start_report", "refused_start.LGR", ""},
    {"request_never_returned_report", "request_never_returned.LGR", ""},
};
INSTANTIATE_TEST_SUITE_P(Logs, ReportOutput, ::testing::ValuesIn(Rows), NameOf);

} // namespace
} // namespace marvane::testing
