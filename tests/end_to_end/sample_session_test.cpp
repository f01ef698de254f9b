// The sample application with the simulated interface, directly and through the logger library.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "pdu/functions.h"
#include "platform/files.h"
#include "tests/support/child_program.h"
#include "tests/support/pattern.h"
#include "tests/support/sample_configuration.h"
#include "tests/support/session.h"

namespace marvane::testing {
namespace {

using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::SizeIs;
using ::testing::StartsWith;

constexpr const char* WholeSession = R"(Modules found: 1
  Simulated VCI, ConnectionType='USB' SerialNumber='000042'
  the module reports: the list of modules has changed
Connected: SimVci hardware, serial number 42, software SimVci D-PDU API by Marvane project
The module is ready
  its clock goes forward
Resources of the module: 2
Resource for UDS on CAN, pins 6 and 14: 400
  it is free
  resources in conflict with it: 1
Link 1 for ISO_15765_3_on_ISO_15765_2 is online
Parameters, read and written back:
  CP_RepeatReqCountApp: 3
  CP_TemperatureOffset: -40
  CP_P2Max: 50
  CP_TimeOffset: -250
  CP_Baudrate: 500000
  CP_ClockDrift: -100000
  CP_TesterPresentMessage: 3E 80
  CP_CanPhysReqIdList: 2016, 2017, 2018
  CP_SessionTiming_Ecu: timings of 2 sessions, P2 of the first 50
  CP_AccessTiming_Ecu: access timing set 4, P2 from 50 to 100
Control units that may answer: 2
  the module reports: the locks of a resource have changed
  the module reports: parameters of the bus have changed
Parameters in effect: 10
A second link, number 2, shares the resource:
  it is in use, its parameters are locked
  it can't lock the parameters too
  the module reports: the locks of a resource have changed
State of the link: communication started
VIN: WSIMVC1E2F3000042
Part number: 7P0907401
Trouble code 012345, state 2F
Trouble code 9A0411, state 08
An unknown identifier is refused: 7F 22 31
An unknown service: no answer in time
  the last error of the link is 0x0103
A wrong key is refused: 7F 27 35
Access granted
Memory erased, after 2 answers
Downloaded: 128 bytes
Tester present, three cycles: 3 answers
Endless tester present: executing
  then cancelled
Parameters restored, communication stopped
Battery voltage: 12640 mV
Ignition: on
Programming voltage on pin 15: 18000 mV
Cable: 4F 42 44 2D 43 41 42 4C 45 00 7F 80
Filters: 2 set, one stopped, all cleared
Event queue of the link: for 200 events
A self-test is no command of this module
Link 1 is offline
Vehicle WSIMVC1E2F3000042 asked for at 2 addresses
Ethernet on pin 8: switched on
Link 3 for ISO_14229_5_on_ISO_13400_2 is online
  logical address of its gateway: 1010
  testers connected: 1 of at most 8
VIN over DoIP: WSIMVC1E2F3000042
Link 3 is offline
Ethernet on pin 8: switched off
The module is reset
Session ended.
)";

/// A folder for the logs and the configuration of a program.
class SampleSession : public ::testing::Test
{
protected:
    static ProgramResult Run(const std::string& library, const std::string& more = "")
    {
        return RunProgram("diag_session", "--library " + Quoted(library) + more);
    }
    static std::string Library(const std::string& name) { return BuildFolder() + LibraryName(name); }

    /// The sample configuration with another target library, and nothing else changed.
    void Configure(const std::string& target)
    {
        WriteFileBytes(folder_ / "D_PDU_API_CFG.xml",
                       ReplaceMatches(FileBytes(SampleConfigurationPath()),
                                      "(Name=\"PDUAPILibDll\" .*Value=\")[^\"]*", "$1" + target));
    }

    /// The contents of the only API log file.
    std::string Log() const
    {
        std::vector<std::string> logs;
        for (const auto& entry : std::filesystem::directory_iterator(folder_.Path()))
            if (entry.path().extension() == ".LGR")
                logs.push_back(FileText(entry.path()));
        EXPECT_THAT(logs, SizeIs(1));
        return logs.empty() ? "" : logs[0];
    }

private:
    TemporaryFolder folder_;
    EnvironmentValue temp_{"TEMP", folder_.Path().string()};
    EnvironmentValue appData_{"APPDATA", folder_.Path().string()};
    EnvironmentValue configuration_{"PDU_CFG_FILE", folder_ / "D_PDU_API_CFG.xml"};
};

// The interface reports items that were never destroyed on standard error.

TEST_F(SampleSession, RunsDirectlyOnTheInterfaceAndLeaksNoItem)
{
    const ProgramResult result = Run(Library("SimVci"));
    EXPECT_EQ(result.Errors, "");
    EXPECT_EQ(result.Output, WholeSession);
    EXPECT_EQ(result.Status, 0);
}

TEST_F(SampleSession, RunsThroughTheLoggerLibraryAsItRunsDirectly)
{
    Configure(LibraryName("SimVci"));
    const ProgramResult result = Run(Library("Marvane"));
    EXPECT_EQ(result.Errors, "");
    EXPECT_EQ(result.Output, WholeSession);
    EXPECT_EQ(result.Status, 0);
    EXPECT_THAT(WithoutStamps(Log()), EndsWith("{stamp} + LOGGER_Uninitialise{Loaded=1}\n"
                                               "{stamp} - LOGGER_Uninitialise<PDU_STATUS_NOERROR (0x0000)>\n"
                                               "{stamp} # PDUDestruct - Close this log file\n"));
}

TEST_F(SampleSession, UsesEveryCallAndEveryKindOfItem)
{
    Configure(LibraryName("SimVci"));
    Run(Library("Marvane"), " --quiet");
    const std::string log = Log();
    for (const std::string_view call : FunctionNames)
        EXPECT_THAT(log, HasSubstr(std::string("- ").append(call) + "<PDU_STATUS_NOERROR (0x0000)>\n"));
    for (const char* shown :
         {"type= PDU_IT_RESULT (0x1300)", "type= PDU_IT_STATUS (0x1301)", "type= PDU_IT_ERROR (0x1302)",
          "type= PDU_IT_INFO (0x1303)", "= PDU_IT_IO_UNUM32 (", "= PDU_IT_IO_PROG_VOLTAGE (",
          "= PDU_IT_IO_BYTEARRAY (", "= PDU_IT_IO_FILTER (", "= PDU_IT_IO_EVENT_QUEUE_PROPERTY (",
          "= PDU_IT_IO_VEHICLE_ID_REQUEST (", "= <UNKNOWN> (65536)", "= PDU_IT_IO_ETH_SWITCH_STATE (",
          "= PDU_IT_IO_ENTITY_ADDRESS (", "= PDU_IT_IO_ENTITY_STATUS ("})
        EXPECT_THAT(log, HasSubstr(shown));
}

TEST_F(SampleSession, ShowsThatTheControlUnitTakesAtLeastTwoMillisecondsToAnswer)
{
    Configure(LibraryName("SimVci"));
    Run(Library("Marvane"), " --quiet");
    const std::vector<PatternMatch> answers =
        Matches(Log(), "<<< TxMsgDoneTimestamp  \t= (\\d+)\n[^\n]*<<< StartMsgTimestamp   \t= (\\d+)\n");
    for (const PatternMatch& answer : answers)
        EXPECT_GE(std::stol(answer[2]) - std::stol(answer[1]), 2000) << answer[0];
    EXPECT_GT(answers.size(), 10u);
}

TEST_F(SampleSession, PrintsNothingWhenQuiet)
{
    const ProgramResult result = Run(Library("SimVci"), " --quiet");
    EXPECT_EQ(result.Output + result.Errors, "");
    EXPECT_EQ(result.Status, 0);
}

TEST_F(SampleSession, RefusesWrongOptionsAndListsTheValidOnes)
{
    const ProgramResult help = RunProgram("diag_session", "--help");
    EXPECT_THAT(help.Output, StartsWith("Usage: diag_session --library PATH [--quiet] [--options STRING]\n"));
    EXPECT_EQ(help.Status, 0);

    const ProgramResult unknown = RunProgram("diag_session", "--nonsense");
    EXPECT_EQ(unknown.Errors, "diag_session: unknown option --nonsense\n\n" + help.Output);
    EXPECT_EQ(unknown.Status, 2);
    const ProgramResult none = RunProgram("diag_session", "");
    EXPECT_EQ(none.Errors, "diag_session: --library is missing\n\n" + help.Output);
    EXPECT_EQ(none.Status, 2);
    const ProgramResult noPath = RunProgram("diag_session", "--library");
    EXPECT_EQ(noPath.Errors, "diag_session: --library needs a path\n\n" + help.Output);
    EXPECT_EQ(noPath.Status, 2);
}

TEST_F(SampleSession, ReportsAMissingLibrary)
{
    const ProgramResult result = Run(Library("no_such_library"));
    EXPECT_EQ(result.Output, "");
    EXPECT_THAT(result.Errors, StartsWith("diag_session: cannot load " + Library("no_such_library") + ": "));
    EXPECT_EQ(result.Status, 1);
}

TEST_F(SampleSession, ReportsALibraryWithoutTheApi)
{
    const std::string library = BuildFolder() + "dependent" + platform::PathSeparator + "fake_dependency" +
                                std::filesystem::path(Library("SimVci")).extension().string();
    const ProgramResult result = Run(library);
    EXPECT_EQ(result.Errors,
              "diag_session: " + library + " has no function PDUConstruct: is it a D-PDU API library?\n");
    EXPECT_EQ(result.Status, 1);
}

TEST_F(SampleSession, ReportsThatTheLoggerLibraryHasNoTarget)
{
    Configure("no_such_library");
    const ProgramResult result = Run(Library("Marvane"));
    EXPECT_EQ(result.Output, "");
    EXPECT_EQ(result.Errors,
              "diag_session: PDUConstruct returned PDU_ERR_PDUAPI_NOT_CONSTRUCTED, expected was "
              "PDU_STATUS_NOERROR\n");
    EXPECT_EQ(result.Status, 1);
    EXPECT_THAT(Log(), EndsWith("PDUConstruct - Called but library not loaded!\n"));
}

} // namespace
} // namespace marvane::testing
