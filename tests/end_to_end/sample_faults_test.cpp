// What marvane says of logs of sessions in which something goes wrong.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/child_process.h"
#include "tests/support/child_program.h"
#include "tests/support/log_summary.h"
#include "tests/support/pattern.h"
#include "tests/support/sample_configuration.h"
#include "tests/support/session.h"

namespace marvane::testing {
namespace {

using ::testing::HasSubstr;
using ::testing::StartsWith;

/// Times, places in the log and counts of polls, which differ from run to run, as "N"; each finding on one
/// line.
std::string WithoutFigures(const std::string& text)
{
    const std::string joined = ReplaceMatches(text, "\n {49}(?! )", " ");
    const std::string rows = ReplaceMatches(joined, "(^|\n) *\\d+ +\\+\\d+\\.\\d+", "$1N");
    const std::string number = "[\\d,]*\\d(\\.\\d)?";
    return ReplaceMatches(rows, "(lines? |after |came )" + number + "|\\b" + number + "(?= ms| empty queues)",
                          "$1N");
}

std::string Said(const std::string& command, const std::string& log)
{
    return WithoutFigures(RunProgram("marvane", command + " " + Quoted(log)).Output);
}

/// The sample application with the simulated interface and the logger library between them.
class SampleFaults : public ::testing::Test
{
protected:
    SampleFaults()
    {
        std::string text = FileBytes(SampleConfigurationPath());
        const auto change = [&](const std::string& key, const std::string& value) {
            text = ReplaceMatches(text, "(Name=\"" + key + "\" .*Value=\")[^\"]*", "$1" + value);
        };
        change("PDUAPILibDll", LibraryName("SimVci"));
        change("LogFileDir", folder_ / "logs");
        WriteFileBytes(folder_ / "D_PDU_API_CFG.xml", text);
    }

    /// Runs the sample application; `more` are further arguments.
    static ProgramResult Run(const std::string& more)
    {
        return RunProgram("diag_session",
                          "--quiet --library " + Quoted(BuildFolder() + LibraryName("Marvane")) + more);
    }
    static ProgramResult RunWith(const std::string& fault)
    {
        return Run(" --options " + Quoted("Fault='" + fault + "'"));
    }
    std::string LogFolder() const { return folder_ / "logs"; }
    std::string Errors() const { return Said("errors", LogFolder()); }

private:
    TemporaryFolder folder_;
    EnvironmentValue temp_{"TEMP", folder_.Path().string()};
    EnvironmentValue appData_{"APPDATA", folder_.Path().string()};
    EnvironmentValue configuration_{"PDU_CFG_FILE", folder_ / "D_PDU_API_CFG.xml"};
};

// The refusals that each session has.
const std::string Lock = R"(N  PDULockResource, link 2          RSC_LOCKED_BY_OTHER_CLL (0x00A1)
                link 1 holds the lock since line N
)";
const std::string Refusals = R"(N  22 FF FF, link 1                 7F 22 31  requestOutOfRange, after N ms
N  BA 00, link 1                    EVT_RX_TIMEOUT (0x0103), N ms after sending
N  27 02 00 00 00 00, link 1        7F 27 35  invalidKey, after N ms
)";
const std::string SelfTest = R"(N  PDUGetObjectId                   ID_NOT_SUPPORTED (0x0062)
                "PDU_IOCTL_SELF_TEST" is unknown to the library
)";
const std::string TimedOut =
    "N  19 02 FF, link 1                 EVT_RX_TIMEOUT (0x0103), N ms after sending\n";

/// The lines after the findings of a log.
std::string Ending(const std::string& found, const std::string& rest)
{
    return "\n" + found + " found.  N empty queues are normal and left out (--all).\n" + rest;
}
const std::string AllIsWell =
    "Every call has returned; nothing was cut; no event was lost; no line is damaged.\n";

TEST_F(SampleFaults, ASlowControlUnitAnswersLaterAndNothingElseChanges)
{
    const ProgramResult result = RunWith("slow:30");
    EXPECT_EQ(result.Output + result.Errors, "");
    EXPECT_EQ(result.Status, 0);
    const std::string slow = RunProgram("marvane", "talk --slow 30 " + Quoted(LogFolder())).Output;
    EXPECT_THAT(slow, HasSubstr("\n15 requests: 12 good, 2 refused (X), 1 silent (X)"));
}

TEST_F(SampleFaults, AnAnswerBeyondTheTimeoutIsLate)
{
    EXPECT_EQ(RunWith("slow:80@19").Errors, "diag_session: no answer to 19 02 FF\n");
    EXPECT_EQ(Errors(),
              Lock + TimedOut + TimedOut +
                  "N  19 02 FF, link 1                 59 02 FF 01 23 45 2F 9A +3  came N ms after its end\n"
                  "                requested in line N\n" +
                  Ending("4", AllIsWell));
}

TEST_F(SampleFaults, ASilentControlUnitDoesNotAnswer)
{
    EXPECT_EQ(RunWith("silent@19").Errors, "diag_session: no answer to 19 02 FF\n");
    EXPECT_EQ(Errors(), Lock + TimedOut + TimedOut + Ending("3", AllIsWell));
}

TEST_F(SampleFaults, AControlUnitRefusesWithTheCodeAskedFor)
{
    EXPECT_EQ(RunWith("refuse:22@31").Status, 0);
    EXPECT_THAT(Errors(),
                StartsWith(Lock + Refusals +
                           "N  31 01 FF 00, link 1              7F 31 22  conditionsNotCorrect, after N ms\n"
                           "                at that moment: session programmingSession, security level 1 "
                           "unlocked\n" +
                           SelfTest + Ending("6", "Every call has returned; no call was cut;")));
}

TEST_F(SampleFaults, AFullQueueLosesResultsAndSaysSo)
{
    const auto lost = [](const std::string& request) {
        return "N  " + request + "no answer, after N ms\n" +
               "                perhaps lost: the event queue overflowed meanwhile (line N)\n" +
               "N  PDUCallbackTrap, link 1          PDU_EVT_DATA_LOST (0x0802): the event queue overflowed\n";
    };
    EXPECT_EQ(RunWith("lose:3").Errors, "diag_session: the answer to 37 is 7F 37 24\n");
    EXPECT_THAT(
        Errors(),
        StartsWith(
            Lock + lost("19 02 FF, link 1                 ") +
            "N  22 FF FF, link 1                 7F 22 31  requestOutOfRange, after N ms\n"
            "N  BA 00, link 1                    EVT_RX_TIMEOUT (0x0103), N ms after sending\n" +
            lost("10 02, link 1                    ") + lost("27 02 00 00 00 00, link 1        ") +
            lost("31 01 FF 00, link 1              ") + lost("37, link 1                       ") +
            "N  37, link 1                       7F 37 24  requestSequenceError, after N ms\n"
            "                at that moment: session programmingSession, security level 1 unlocked\n"));
}

TEST_F(SampleFaults, ACrashLeavesTheCallInWhichItHappened)
{
    // Before the first link no callback can be open on another thread.
    EXPECT_NE(RunWith("crash@PDUGetVersion").Status, 0);
    EXPECT_EQ(Errors(), "N  PDUGetVersion, module 1          entered, never returned: the log ends here\n"
                        "\n1 found.  1 empty queue is normal and left out (--all).\n"
                        "Nothing was cut; no event was lost; no line is damaged.\n");
}

TEST_F(SampleFaults, ACrashInAStartLeavesTheRequest)
{
    EXPECT_NE(RunWith("crash:12@PDUStartComPrimitive").Status, 0);
    EXPECT_THAT(Errors(),
                HasSubstr("N  PDUStartComPrimitive, link 1     entered, never returned: the log ends here\n"
                          "                its request: 31 01 FF 00, start routine\n"));
}

/// The folder that one test process, in another role, had for its logs.
std::filesystem::path LogFolderOf(const TemporaryFolder& folder)
{
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder.Path()))
        if (entry.path().filename() == "logs")
            return entry.path();
    return {};
}

void HangInACall()
{
    const Session session({{"LogFnDecodeArgs", "2"}, {"LogFnDecodeRsps", "2"}, {"LogCbCalls", "1"}},
                          "SimVci");
    CHAR8 options[] = "Fault='hang@PDUGetVersion'";
    session.Api().PDUConstruct(options, nullptr);
    PDU_VERSION_DATA version;
    session.Api().PDUGetVersion(1, &version);
}

TEST(HangingCall, IsTheLastOneOfTheLog)
{
    if (ChildRole() == "hanging")
        return HangInACall();
    const TemporaryFolder folder;
    ChildProcess child("hanging", folder);
    const auto isInTheCall = [&] {
        const std::filesystem::path logs = LogFolderOf(folder);
        return !logs.empty() && LogInOrder(logs).find(" + PDUGetVersion(") != std::string::npos;
    };
    ASSERT_TRUE(child.RunsUntil(isInTheCall)) << child.Output();
    child.Kill();
    child.Wait();
    EXPECT_EQ(Said("errors", LogFolderOf(folder).string()),
              "N  PDUGetVersion, module 1          entered, never returned: the log ends here\n\n1 found.\n"
              "Nothing was cut; no event was lost; no line is damaged.\n");
}

TEST_F(SampleFaults, ASlowCallIsSeenAsSuch)
{
    EXPECT_EQ(RunWith("slow-call:60@PDUGetVersion").Status, 0);
    const std::string summary = RunProgram("marvane", "summary --all " + Quoted(LogFolder())).Output;
    const PatternMatch row = FirstMatch(summary, "\n +1 +(\\d+) .* PDUGetVersion\n");
    ASSERT_FALSE(row.empty()) << summary;
    EXPECT_GE(std::stol(row[1]), 60);
}

TEST_F(SampleFaults, AnApplicationThatDestroysNoAnswersLeaksThem)
{
    EXPECT_EQ(Run(" --leak").Errors, "SimVci: 17 items were not destroyed\n");
    EXPECT_THAT(Errors(),
                StartsWith(Lock + Refusals + SelfTest +
                           "N  PDUDestruct                      17 items of 93 not destroyed\n"
                           "                not destroyed: 17 results of PDUGetEventItem, lines N"));
}

TEST_F(SampleFaults, AnApplicationThatPausesTakesItsTime)
{
    EXPECT_EQ(Run(" --pause 20").Status, 0);
    const std::string summary = RunProgram("marvane", "summary " + Quoted(LogFolder())).Output;
    const PatternMatch time = FirstMatch(summary, "\\ntime .* (\\d+)\\.(\\d+) s in the application\n");
    ASSERT_FALSE(time.empty()) << summary;
    EXPECT_GE(std::stol(time[1]) * 1000 + std::stol(time[2]), 15 * 20) << "15 requests, 20 ms before each";
}

TEST_F(SampleFaults, AnApplicationThatGivesUpEndsInTheCallThatHangs)
{
    const ProgramResult result =
        Run(" --give-up 1 --options " + Quoted("Fault='hang:12@PDUStartComPrimitive'"));
    EXPECT_EQ(result.Status, 3);
    EXPECT_EQ(result.Errors, "diag_session: no end after 1 s: given up\n");
    EXPECT_THAT(RunProgram("marvane", "talk " + Quoted(LogFolder())).Output,
                HasSubstr("X call never returned"));
}

TEST_F(SampleFaults, AnApplicationThatIsDoneInTimeDoesNotGiveUp)
{
    const ProgramResult result = Run(" --give-up 1000");
    EXPECT_EQ(result.Output + result.Errors, "");
    EXPECT_EQ(result.Status, 0);
}

TEST_F(SampleFaults, ANumberIsNeededWhereOneIsMeant)
{
    EXPECT_THAT(Run(" --pause 20ms").Errors,
                StartsWith("diag_session: --pause needs a number, and 20ms is none\n"));
    EXPECT_EQ(Run(" --pause 20ms").Status, 2);
    EXPECT_THAT(Run(" --give-up").Errors, StartsWith("diag_session: --give-up needs a number\n"));
    EXPECT_EQ(Run(" --give-up").Status, 2);
}

TEST_F(SampleFaults, AnUnknownFaultIsRefusedWithAListOfAll)
{
    const ProgramResult result = RunWith("sloow");
    EXPECT_THAT(result.Errors,
                StartsWith("SimVci: unknown fault \"sloow\"\n"
                           "A fault is NAME[:VALUE][@PLACE], several are separated by commas:\n"));
    EXPECT_EQ(result.Status, 1);
}

TEST_F(SampleFaults, TheEnvironmentVariableIsReadToo)
{
    const EnvironmentValue fault("SIMVCI_FAULT", "silent@19");
    EXPECT_EQ(RunWith("silent@22").Errors, "diag_session: no answer to 22 F1 90\n");
    EXPECT_EQ(Run("").Errors, "diag_session: no answer to 19 02 FF\n");
}

} // namespace
} // namespace marvane::testing
