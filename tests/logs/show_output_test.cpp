// What show, around and cut print about the logs of this folder.
#include <algorithm>
#include <filesystem>
#include <sstream>
#include <vector>

#include <gtest/gtest.h>

#include "tests/logs/command_output.h"
#include "tests/logs/log_digest.h"
#include "tests/support/child_program.h"
#include "tool/read/log_files.h"

namespace marvane::testing {
namespace {

namespace fs = std::filesystem;

struct Row
{
    const char* Name; ///< of the file with the expected output
    const char* Arguments;
    int Status;
};

class ShowOutput : public ::testing::TestWithParam<Row>
{
};

std::string NameOf(const ::testing::TestParamInfo<Row>& info)
{
    return info.param.Name;
}

TEST_P(ShowOutput, IsAsExpected)
{
    EXPECT_EQ(CompareOutput(GetParam().Name, GetParam().Arguments), GetParam().Status);
}

const Row Demo[] = {
    {"demo_show_errors", "show %LOGS%/demo --errors", 0},
    {"demo_show_link_name", "show %LOGS%/demo --link ISO_14229 --call StartComPrimitive", 0},
    {"demo_show_context", "show %LOGS%/demo --status ID_NOT_SUPPORTED -C 1 --time rel", 0},
    {"demo_show_delta", "show %LOGS%/demo --calls 1-6 --time delta", 0},
    {"demo_show_callbacks", "show %LOGS%/demo --call PDUCallbackTrap -n 3", 0},
    {"demo_show_grep", "show %LOGS%/demo --grep RX_TIMEOUT", 0},
    {"demo_show_nothing", "show %LOGS%/demo --status 0x20", 1},
    {"demo_around_hcop", "around %LOGS%/demo --hcop 7", 0},
    {"demo_around_line", "around %LOGS%/demo --line 989 --before 0.005 --after 0.003", 0},
    {"demo_around_all", "around %LOGS%/demo --line 989 --before 0.005 --after 0.003 --all", 0},
    {"demo_around_destroyed_item", "around %LOGS%/demo --line 765 --before 0 --after 0", 0},
};
INSTANTIATE_TEST_SUITE_P(Demo, ShowOutput, ::testing::ValuesIn(Demo), NameOf);

const Row HandMade[] = {
    {"in_flight_show", "show %LOGS%/in_flight.LGR --errors", 0},
    {"not_loaded_show", "show %LOGS%/not_loaded.LGR --errors", 0},
    {"mark_after_exit_show", "show %LOGS%/mark_after_exit.LGR --calls 1-", 0},
    {"midnight_show", "show %LOGS%/midnight --since 00:00 --time rel", 0},
    {"mark_own_line_show", "show %LOGS%/mark_own_line.LGR --errors", 0},
    {"mark_in_entry_half_show", "show %LOGS%/mark_in_entry_half.LGR --calls 1", 0},
    {"unstamped_show", "show %LOGS%/unstamped.LGR --calls 1-", 0},
    {"report_before_results_show", "show %LOGS%/report_before_results.LGR --call IoCtl", 0},
    {"two_processes_show", "show %LOGS%/two_processes --link 1 --call StartComPrimitive", 0},
    {"in_flight_around", "around %LOGS%/in_flight.LGR --line 27", 0},
    {"not_loaded_around", "around %LOGS%/not_loaded.LGR --line 23", 0},
    {"continuation_around", "around %LOGS%/continuation --line 25", 0},
    {"midnight_around", "around %LOGS%/midnight --line 25", 0},
    {"two_processes_around", "around %LOGS%/two_processes --line 78", 0},
    {"mark_own_line_around", "around %LOGS%/mark_own_line.LGR --line 22", 0},
    {"report_before_results_around", "around %LOGS%/report_before_results.LGR --line 23", 0},
    {"cyclic_around", "around %LOGS%/cyclic.LGR --hcop 7", 0},
    {"late_answer_around", "around %LOGS%/late_answer.LGR --hcop 15", 0},
    {"pending_around", "around %LOGS%/pending.LGR --hcop 18", 0},
    {"continuation_cut", "cut %LOGS%/continuation --since 2025-12-01", 0},
    {"midnight_cut", "cut %LOGS%/midnight --until 23:59:59.996", 0},
    {"two_processes_cut", "cut %LOGS%/two_processes --until 10:00:00.003", 0},
    {"in_flight_cut", "cut %LOGS%/in_flight.LGR --since 10:00:00.004", 0},
    {"other_thread_around", "around %LOGS%/answer_on_other_thread.LGR --line 30", 0},
};
INSTANTIATE_TEST_SUITE_P(HandMade, ShowOutput, ::testing::ValuesIn(HandMade), NameOf);

std::vector<std::string> SortedLines(const std::string& text)
{
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    std::ranges::sort(lines);
    return lines;
}

TEST(ShowOutput, WithoutFiltersHasEveryLineOfEveryLogOnce)
{
    std::size_t logs = 0;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(HandMadeLog(""))) {
        if (entry.path().extension() != ".LGR")
            continue;
        ++logs;
        const ProgramResult shown = RunProgram("marvane", "show " + Quoted(entry.path().string()));
        EXPECT_EQ(SortedLines(shown.Output), SortedLines(FileText(entry.path()))) << entry.path();
    }
    EXPECT_GT(logs, 20u);
}

TEST(ShowOutput, ACutOfTheWholeLogIsTheLog)
{
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(HandMadeLog(""))) {
        if (entry.path().extension() != ".LGR")
            continue;
        const ProgramResult cut =
            RunProgram("marvane", "cut --since 1990-01-01 " + Quoted(entry.path().string()));
        EXPECT_EQ(cut.Output, FileText(entry.path())) << entry.path();
    }
}

TEST(ShowOutput, APartOfALogIsALogItself)
{
    const TemporaryFolder folder;
    const std::string part = folder / "part.LGR";
    const ProgramResult cut =
        RunProgram("marvane", "cut " + Quoted(HandMadeLog("demo")) + " --since -300ms --until -100ms");
    ASSERT_EQ(cut.Status, 0);
    WriteFileBytes(part, cut.Output);
    EXPECT_EQ(RunProgram("marvane", "show --call StartComPrimitive " + Quoted(part)).Status, 0);
    struct Problems : read::LogSink
    {
        std::string Found;
        void OnProblem(const read::Problem& problem) override { Found += std::string(problem.Text) + "\n"; }
    } problems;
    read::LogReader reader(problems);
    for (const read::LogFile& file : read::FindLogFiles({part}).Files)
        read::ReadLogFile(file, reader);
    reader.Finish();
    EXPECT_EQ(problems.Found, "");
    EXPECT_GT(reader.Counts().Calls, 0u);
    EXPECT_EQ(reader.FindSession(1)->TargetVersion, "R01.004.0002.0007");
}

} // namespace
} // namespace marvane::testing
