// What the commands print about the golden logs of the logger library, whose stamps get a time.
#include <fstream>
#include <regex>

#include <gtest/gtest.h>

#include "tests/logs/command_output.h"
#include "tests/logs/log_digest.h"
#include "tests/support/child_program.h"
#include "tests/support/temporary_folder.h"

namespace marvane::testing {
namespace {

class GoldenOutput : public ::testing::TestWithParam<const char*>
{
};

/// The golden log with "{time - T1}" made a stamp of thread 1.
std::string Stamped(const std::string& name)
{
    const std::string text = FileText(HandMadeLog("../golden/" + name + ".log"));
    return std::regex_replace(text, std::regex("\\{time - T(\\d)\\}"), "{10:00:00.000 - 0000000$1}");
}

TEST_P(GoldenOutput, IsAsExpected)
{
    const std::string name = GetParam();
    const TemporaryFolder folder;
    const auto log = folder.Path() / "D-PDU_API_Logger_21-11-2026_10-00-00.LGR";
    std::ofstream(log, std::ios::binary) << Stamped(name);
    const std::string path = Quoted(log.string());
    EXPECT_EQ(CompareOutput(name + "_summary", "summary " + path), 0);
    EXPECT_EQ(CompareOutput(name + "_talk", "talk " + path), 0);
    EXPECT_EQ(CompareOutput(name + "_errors", "errors " + path), 1);
    EXPECT_EQ(CompareOutput(name + "_params", "params " + path), 0);
}

INSTANTIATE_TEST_SUITE_P(Sessions, GoldenOutput,
                         ::testing::Values("diagnostic_session", "error_session", "traffic_session"),
                         [](const auto& session) { return std::string(session.param); });

} // namespace
} // namespace marvane::testing
