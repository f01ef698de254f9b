// What the commands print about the golden logs of the logger library, whose stamps get a time.
#include <fstream>
#include <sstream>

#include <gtest/gtest.h>

#include "tests/logs/command_output.h"
#include "tests/logs/log_digest.h"
#include "tests/support/child_program.h"
#include "tests/support/pattern.h"
#include "tests/support/temporary_folder.h"

namespace marvane::testing {
namespace {

struct Row
{
    const char* Session;
    const char* What; ///< of the file with the expected output, behind the session's name
    const char* Command;
    int Status;
};

/// The golden log with "{time - T1}" made a stamp of thread 1. Each entry line is a millisecond after the one
/// before it.
std::string Stamped(const std::string& name)
{
    std::istringstream lines(FileText(HandMadeLog("../golden/" + name + ".log")));
    std::string log;
    int entries = 0;
    for (std::string line; std::getline(lines, line);) {
        for (const PatternMatch& found : Matches(line, "^\\{time - T(\\d)\\} (\\+)?")) {
            entries += found[2].empty() ? 0 : 1;
            char time[16];
            std::snprintf(time, sizeof time, "10:00:00.%03d", entries);
            line.replace(0, found[0].length() - found[2].length(),
                         std::string("{") + time + " - 0000000" + found[1] + "} ");
        }
        log += line + '\n';
    }
    return log;
}

class GoldenOutput : public ::testing::TestWithParam<Row>
{
};

TEST_P(GoldenOutput, IsAsExpected)
{
    const Row& row = GetParam();
    const TemporaryFolder folder;
    const std::string log = folder / "D-PDU_API_Logger_21-11-2026_10-00-00.LGR";
    WriteFileBytes(log, Stamped(row.Session));
    const std::string output = std::string(row.Session) + "_" + row.What;
    EXPECT_EQ(CompareOutput(output, row.Command + std::string(" ") + Quoted(log)), row.Status);
}

std::string NameOf(const ::testing::TestParamInfo<Row>& info)
{
    return std::string(info.param.Session) + "_" + info.param.What;
}

constexpr const char* Diagnostic = "diagnostic_session";
constexpr const char* Error = "error_session";
constexpr const char* Traffic = "traffic_session";

const Row Rows[] = {
    {Diagnostic, "summary", "summary", 0},
    {Diagnostic, "talk", "talk", 0},
    {Diagnostic, "errors", "errors", 1},
    {Diagnostic, "params", "params", 0},
    {Diagnostic, "show_requests", "show --call StartComPrimitive --call CancelComPrimitive --time rel", 0},
    {Diagnostic, "show_callbacks", "show --call PDUCallbackTrap -C 1 --time delta", 0},
    {Diagnostic, "around_line", "around --line 413 --before 0.003 --after 0.004", 0},
    {Diagnostic, "around_hcop", "around --hcop 9", 0},
    {Diagnostic, "cut", "cut --since 10:00:00.057 --until 10:00:00.059", 0},
    {Diagnostic, "follow_talk", "talk -f --timeout 0", 1},
    {Diagnostic, "follow_errors", "errors -f --timeout 0", 1},
    {Diagnostic, "follow_show", "show -f --call PDUGetTimestamp --until-match PDUGetTimestamp", 0},
    {Error, "summary", "summary", 0},
    {Error, "talk", "talk", 0},
    {Error, "errors", "errors", 1},
    {Error, "params", "params", 0},
    {Error, "show_errors", "show --errors --time rel", 0},
    {Error, "around_line", "around --line 498 --before 0.002 --after 0.002", 0},
    {Error, "cut", "cut --since 10:00:00.100 --until 10:00:00.102", 0},
    {Error, "follow_talk", "talk -f --timeout 0", 1},
    {Error, "follow_errors", "errors -f --timeout 0", 1},
    {Traffic, "summary", "summary", 0},
    {Traffic, "talk", "talk", 0},
    {Traffic, "errors", "errors", 1},
    {Traffic, "params", "params", 0},
    {Traffic, "show_calls", "show --calls 1-", 0},
    {Traffic, "around_line", "around --line 109 --before 0.003 --after 0.003", 0},
    {Traffic, "cut", "cut --since 10:00:00.012 --until 10:00:00.013", 0},
    {Traffic, "follow_talk", "talk -f --timeout 0", 1},
};
INSTANTIATE_TEST_SUITE_P(Sessions, GoldenOutput, ::testing::ValuesIn(Rows), NameOf);

TEST(GoldenOutput, ASessionIsTheSameAsItself)
{
    const TemporaryFolder folder;
    for (const char* const session : {Diagnostic, Error, Traffic}) {
        const std::string log = folder / "D-PDU_API_Logger_21-11-2026_10-00-00.LGR";
        WriteFileBytes(log, Stamped(session));
        const std::string output = std::string(session) + "_diff_same";
        EXPECT_EQ(CompareOutput(output, "diff " + Quoted(log) + " " + Quoted(log)), 0);
    }
}

} // namespace
} // namespace marvane::testing
