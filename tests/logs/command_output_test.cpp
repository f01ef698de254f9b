// What the commands print about the logs of this folder.
#include <gtest/gtest.h>

#include "tests/logs/command_output.h"

namespace marvane::testing {
namespace {

struct Row
{
    const char* Name; ///< of the file with the expected output
    const char* Arguments;
    int Status;
};

class CommandOutput : public ::testing::TestWithParam<Row>
{
};

std::string NameOf(const ::testing::TestParamInfo<Row>& info)
{
    return info.param.Name;
}

TEST_P(CommandOutput, IsAsExpected)
{
    EXPECT_EQ(CompareOutput(GetParam().Name, GetParam().Arguments), GetParam().Status);
}

const Row Demo[] = {
    {"demo_talk", "talk %LOGS%/demo", 0},
    {"demo_talk_link", "talk %LOGS%/demo --link 3", 0},
    {"demo_talk_service", "talk %LOGS%/demo --service 22", 0},
    {"demo_talk_did", "talk %LOGS%/demo --did F190 --link ISO_15765", 0},
    {"demo_talk_nrc", "talk %LOGS%/demo --nrc 31", 0},
    {"demo_talk_slow", "talk %LOGS%/demo --slow 20", 0},
    {"demo_talk_nothing", "talk %LOGS%/demo --service 2E", 1},
    {"demo_talk_by_link", "talk %LOGS%/demo --by-link", 0},
    {"demo_errors", "errors %LOGS%/demo", 1},
    {"demo_errors_json", "errors %LOGS%/demo --json", 1},
    {"demo_summary", "summary %LOGS%/demo", 0},
    {"demo_summary_json", "summary %LOGS%/demo --json", 0},
    {"demo_params", "params %LOGS%/demo", 0},
    {"demo_params_json", "params %LOGS%/demo --json", 0},
    {"demo_params_nothing", "params %LOGS%/demo --link 9", 1},
    {"demo_diff_same", "diff %LOGS%/demo %LOGS%/demo", 0},
};
INSTANTIATE_TEST_SUITE_P(Demo, CommandOutput, ::testing::ValuesIn(Demo), NameOf);

const Row Talks[] = {
    {"cyclic_talk", "talk %LOGS%/cyclic.LGR", 0},
    {"functional_talk", "talk %LOGS%/functional.LGR", 0},
    {"no_answer_wanted_talk", "talk %LOGS%/no_answer_wanted.LGR", 0},
    {"cancelled_talk", "talk %LOGS%/cancelled.LGR", 0},
    {"timeout_talk", "talk %LOGS%/timeout.LGR", 0},
    {"late_answer_talk", "talk %LOGS%/late_answer.LGR", 0},
    {"pending_talk", "talk %LOGS%/pending.LGR", 0},
    {"cut_payload_talk", "talk %LOGS%/cut_payload.LGR", 0},
    {"open_and_failed_talk", "talk %LOGS%/open_and_failed.LGR", 0},
    {"refused_start_talk", "talk %LOGS%/refused_start.LGR", 0},
    {"refused_start_link", "talk %LOGS%/refused_start.LGR --by-link --service 3E", 0},
    {"two_processes_talk", "talk %LOGS%/two_processes", 0},
    {"kwp_talk", "talk %LOGS%/kwp.LGR", 0},
    {"calls_only_talk", "talk %LOGS%/calls_only", 0},
    {"no_decoded_lines_talk", "talk %LOGS%/no_decoded_lines.LGR", 0},
    {"folds_talk", "talk %LOGS%/folds.LGR", 0},
    {"crlf_talk", "talk %LOGS%/crlf.LGR", 0},
    {"other_thread_talk", "talk %LOGS%/answer_on_other_thread.LGR", 0},
    {"late_sending_talk", "talk %LOGS%/late_sending.LGR", 0},
    {"lost_data_and_errors_talk", "talk %LOGS%/lost_data_and_errors.LGR", 0},
    {"refused_state_talk", "talk %LOGS%/refused_state.LGR", 0},
    {"param_changes_talk", "talk %LOGS%/param_changes.LGR", 0},
    {"request_never_returned_talk", "talk %LOGS%/request_never_returned.LGR", 0},
    {"request_never_returned_by_link", "talk %LOGS%/request_never_returned.LGR --by-link --link 1", 0},
};
INSTANTIATE_TEST_SUITE_P(Talks, CommandOutput, ::testing::ValuesIn(Talks), NameOf);

const Row Errors[] = {
    {"mark_own_line_errors", "errors %LOGS%/mark_own_line.LGR", 1},
    {"mark_in_entry_half_errors", "errors %LOGS%/mark_in_entry_half.LGR", 1},
    {"mark_after_exit_errors", "errors %LOGS%/mark_after_exit.LGR", 0},
    {"unstamped_errors", "errors %LOGS%/unstamped.LGR", 1},
    {"error_items_errors", "errors %LOGS%/error_items.LGR --mdf %LOGS%/module_description.xml", 1},
    {"not_loaded_errors", "errors %LOGS%/not_loaded", 1},
    {"load_failure_errors", "errors %LOGS%/load_failure.LGR", 1},
    {"in_flight_errors", "errors %LOGS%/in_flight.LGR", 1},
    {"calls_only_errors", "errors %LOGS%/calls_only --all", 1},
    {"late_answer_errors", "errors %LOGS%/late_answer.LGR", 1},
    {"pending_errors", "errors %LOGS%/pending.LGR --all", 1},
    {"lost_data_and_errors_errors", "errors %LOGS%/lost_data_and_errors.LGR", 1},
    {"late_sending_errors", "errors %LOGS%/late_sending.LGR", 1},
    {"leak_errors", "errors %LOGS%/leak.LGR", 1},
    {"refused_state_errors", "errors %LOGS%/refused_state.LGR", 1},
    {"wrong_handles_errors", "errors %LOGS%/wrong_handles.LGR", 1},
    {"not_utf8_errors", "errors %LOGS%/not_utf8.LGR", 0},
    {"mark_after_stamp_errors", "errors %LOGS%/mark_after_stamp.LGR", 1},
    {"mark_after_arrow_errors", "errors %LOGS%/mark_after_arrow.LGR", 1},
    {"mark_in_entry_line_errors", "errors %LOGS%/mark_in_entry_line.LGR", 1},
    {"mark_that_is_an_indent_errors", "errors %LOGS%/mark_that_is_an_indent.LGR", 0},
    {"timeout_errors", "errors %LOGS%/timeout.LGR", 1},
    {"open_and_failed_errors", "errors %LOGS%/open_and_failed.LGR", 1},
    {"functional_errors", "errors %LOGS%/functional.LGR", 0},
    {"no_answer_wanted_errors", "errors %LOGS%/no_answer_wanted.LGR", 0},
    {"two_processes_errors", "errors %LOGS%/two_processes", 0},
    {"continuation_errors", "errors %LOGS%/continuation", 0},
    {"request_never_returned_errors", "errors %LOGS%/request_never_returned.LGR", 1},
};
INSTANTIATE_TEST_SUITE_P(Errors, CommandOutput, ::testing::ValuesIn(Errors), NameOf);

const Row Others[] = {
    {"continuation_summary", "summary %LOGS%/continuation", 0},
    {"two_processes_summary", "summary %LOGS%/two_processes", 0},
    {"calls_only_summary", "summary %LOGS%/calls_only", 0},
    {"not_loaded_summary", "summary %LOGS%/not_loaded", 0},
    {"midnight_summary", "summary %LOGS%/midnight", 0},
    {"refused_start_summary", "summary %LOGS%/refused_start.LGR", 0},
    {"refused_start_summary_json", "summary %LOGS%/refused_start.LGR --json", 0},
    {"refused_start_diff", "diff %LOGS%/refused_start.LGR %LOGS%/open_and_failed.LGR", 1},
    {"request_never_returned_summary", "summary %LOGS%/request_never_returned.LGR", 0},
    {"mark_that_is_an_indent_params", "params %LOGS%/mark_that_is_an_indent.LGR", 0},
    {"param_changes_params", "params %LOGS%/param_changes.LGR", 0},
    {"diff_first_second", "diff %LOGS%/diff_first.LGR %LOGS%/diff_second.LGR", 1},
    {"diff_first_second_json", "diff %LOGS%/diff_first.LGR %LOGS%/diff_second.LGR --json", 1},
    {"never_returned_diff", "diff %LOGS%/cookbook/crash %LOGS%/demo", 1},
};
const Row Followed[] = {
    {"demo_follow_talk", "talk -f %LOGS%/demo --until-match requestOutOfRange", 0},
    {"demo_follow_errors", "errors -f %LOGS%/demo --timeout 0", 1},
    {"not_loaded_follow_errors", "errors -f %LOGS%/not_loaded.LGR --until-match \"2 more calls\" --timeout 0",
     0},
    {"continuation_follow_show", "show -f --call ModuleConnect %LOGS%/continuation --timeout 0", 1},
};
INSTANTIATE_TEST_SUITE_P(Followed, CommandOutput, ::testing::ValuesIn(Followed), NameOf);

INSTANTIATE_TEST_SUITE_P(Others, CommandOutput, ::testing::ValuesIn(Others), NameOf);

} // namespace
} // namespace marvane::testing
