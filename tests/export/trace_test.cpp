// --format trace: what viewers rely on holds for every log of the tests.
#include <algorithm>
#include <filesystem>

#include <gtest/gtest.h>

#include "tests/support/child_program.h"
#include "tests/support/pattern.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/trace_checker.h"

namespace marvane::testing {
namespace {

const std::string Logs = MARVANE_SOURCE_DIR "/tests/logs/";

std::string TraceOf(const std::string& log, const std::string& options = "")
{
    const ProgramResult result = RunProgram("marvane", "export --format trace " + options + Quoted(log));
    EXPECT_EQ(result.Status, 0) << log << ": " << result.Errors;
    return result.Output;
}

TEST(Trace, ItsCheckFindsWhatIsWrong)
{
    const auto event = [](const std::string& phase, int time, const std::string& name) {
        return "{\"ph\":\"" + phase + "\",\"pid\":1,\"tid\":2,\"ts\":" + std::to_string(time) +
               ",\"name\":\"" + name + "\",\"id\":\"7\"},\n";
    };
    EXPECT_EQ(CheckTrace(event("B", 1, "a") + event("B", 1, "b") + event("E", 2, "a")).Faults,
              "time does not grow: B b on 1/2 at 1\nends what is not innermost: E a on 1/2 at 2\n");
    EXPECT_EQ(CheckTrace(event("b", 1, "l") + event("b", 2, "a") + event("b", 3, "b")).Faults,
              "two requests in one row: b b on 1/2 at 3\n");
    EXPECT_EQ(CheckTrace(event("e", 1, "a")).Faults, "belongs to nothing: e a on 1/2 at 1\n");
    EXPECT_EQ(CheckTrace(event("s", 2, "x") + event("f", 1, "x") + event("B", 1, "a")).Faults,
              "flow back in time: f x on 1/2 at 1\n");
    EXPECT_EQ(CheckTrace(event("s", 2, "x")).Faults, "flow without two ends: s x on 1/2 at 2\n");
}

bool IsLog(const std::filesystem::directory_entry& entry)
{
    return entry.path().extension() == ".LGR";
}

bool IsFolderOfLogs(const std::filesystem::directory_entry& entry)
{
    return entry.is_directory() && std::ranges::any_of(std::filesystem::directory_iterator(entry), IsLog);
}

TEST(Trace, NestsRightForEachLogOfTheTests)
{
    std::size_t logs = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(Logs)) {
        if (!IsLog(entry) && !IsFolderOfLogs(entry))
            continue;
        ++logs;
        EXPECT_EQ(CheckTrace(TraceOf(entry.path().string())).Faults, "") << entry.path();
    }
    EXPECT_GT(logs, 30u);
}

TEST(Trace, NestsRightForTheGoldenLogs)
{
    for (const char* const name : {"diagnostic_session", "error_session", "traffic_session"}) {
        const TemporaryFolder folder;
        const std::string log = folder / "D-PDU_API_Logger_21-11-2026_10-00-00.LGR";
        const std::string golden = FileText(MARVANE_SOURCE_DIR "/tests/golden/" + std::string(name) + ".log");
        WriteFileBytes(log, ReplaceMatches(golden, "\\{time - T(\\d)\\}", "{10:00:00.000 - 0000000$1}"));
        const TraceCheck check = CheckTrace(TraceOf(log));
        EXPECT_EQ(check.Faults, "") << name;
        EXPECT_GT(check.Slices, 10u) << name;
    }
}

TEST(Trace, TheDemoHasItsCallsRequestsAndFlows)
{
    const TraceCheck check = CheckTrace(TraceOf(Logs + "demo"));
    EXPECT_EQ(check.Faults, "");
    EXPECT_EQ(check.Slices, 429u);
    EXPECT_EQ(check.Open, 0u);
    EXPECT_EQ(check.Requests, 23u);
    EXPECT_EQ(check.OpenRequests, 0u);
    EXPECT_EQ(check.Flows, 14u);
}

TEST(Trace, ACallInFlightHasNoEnd)
{
    const TraceCheck check = CheckTrace(TraceOf(Logs + "in_flight.LGR"));
    EXPECT_EQ(check.Faults, "");
    EXPECT_EQ(check.Open, 3u);
}

TEST(Trace, APartOfALogNestsRight)
{
    const TraceCheck check = CheckTrace(TraceOf(Logs + "demo", "--since 00:27:36.990 --until 00:27:37.060 "));
    EXPECT_EQ(check.Faults, "");
    EXPECT_GT(check.Slices, 10u);
    EXPECT_LT(check.Slices, 429u);
}

TEST(Trace, HasALineAnEvent)
{
    const TemporaryFolder folder;
    const std::string log = folder / "D-PDU_API_Logger_21-11-2026_10-00-00.LGR";
    WriteFileBytes(log, "{10:00:00.005 - 0000000A} + PDUConnect(hMod=0x00000001, hCLL=0x00000002)\n"
                        "{10:00:00.005 - 0000000A}     <PDUConnect\n"
                        "{10:00:00.007 - 0000000A} - PDUConnect<PDU_STATUS_NOERROR (0x0000)>\n");
    std::string trace = TraceOf(log);
    trace.erase(trace.find("\n],")); // the program's version
    EXPECT_EQ(
        trace,
        "{\"traceEvents\":[\n"
        "{\"ph\":\"M\",\"pid\":1,\"tid\":0,\"ts\":0,\"name\":\"process_name\","
        "\"args\":{\"name\":\"process 1\"}},\n"
        "{\"ph\":\"M\",\"pid\":1,\"tid\":10,\"ts\":0,\"name\":\"thread_name\","
        "\"args\":{\"name\":\"thread 0000000A\"}},\n"
        "{\"ph\":\"B\",\"pid\":1,\"tid\":10,\"ts\":1795255200005000,\"name\":\"PDUConnect\",\"cat\":\"call\","
        "\"args\":{\"line\":\"1\",\"arguments\":\"hMod=0x00000001, hCLL=0x00000002\"}},\n"
        "{\"ph\":\"E\",\"pid\":1,\"tid\":10,\"ts\":1795255200007000,\"name\":\"PDUConnect\","
        "\"args\":{\"status\":\"PDU_STATUS_NOERROR (0x0000)\"}}");
}

} // namespace
} // namespace marvane::testing
