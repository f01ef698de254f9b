// What the commands say about requests and answers whose bytes are not all in the log.
#include <gtest/gtest.h>

#include "tests/logs/command_output.h"

namespace marvane::testing {
namespace {

TEST(AnswersWithoutBytes, AreNotTakenForMoreThanTheLogShows)
{
    EXPECT_EQ(CompareOutput("answers_without_bytes_errors", "errors %LOGS%/answers_without_bytes.LGR"), 1);
    EXPECT_EQ(CompareOutput("answers_without_bytes_talk", "talk %LOGS%/answers_without_bytes.LGR"), 0);
    EXPECT_EQ(CompareOutput("answers_without_bytes_summary", "summary %LOGS%/answers_without_bytes.LGR"), 0);
}

TEST(CutRefusals, AreStillRefusals)
{
    EXPECT_EQ(CompareOutput("refusal_cut_errors", "errors %LOGS%/refusal_cut.LGR"), 1);
    EXPECT_EQ(CompareOutput("refusal_cut_talk", "talk %LOGS%/refusal_cut.LGR"), 0);
}

TEST(CutPayloads, AreTheSameForSummaryAndErrors)
{
    EXPECT_EQ(CompareOutput("cut_payload_summary", "summary %LOGS%/cut_payload.LGR"), 0);
    EXPECT_EQ(CompareOutput("cut_payload_errors", "errors %LOGS%/cut_payload.LGR"), 1);
}

TEST(CutPayloads, AreNotCompared)
{
    EXPECT_EQ(
        CompareOutput("refusal_cut_diff", "diff %LOGS%/refusal_cut.LGR %LOGS%/answers_without_bytes.LGR"), 1);
}

TEST(LogsWithoutDecodedLines, SayWhichSettingWouldShowMore)
{
    EXPECT_EQ(CompareOutput("no_decoded_lines_errors", "errors %LOGS%/no_decoded_lines.LGR"), 1);
}

TEST(Summaries, ListEveryFunctionOnDemand)
{
    EXPECT_EQ(CompareOutput("demo_summary_all", "summary %LOGS%/demo --all"), 0);
}

} // namespace
} // namespace marvane::testing
