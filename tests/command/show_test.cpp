// show, cut and the finding of logs, run as a program.
#include <ctime>

#include <gtest/gtest.h>

#include "config/file_rules.h"
#include "config/paths.h"
#include "line/file_names.h"
#include "tests/command/sample_log.h"
#include "tests/support/child_program.h"
#include "tool/commands/shared_options.h"

namespace marvane::testing {
namespace {

const std::string Lock = LogLine(2, "+ PDULockResource(hMod=0x00000001, hCLL=0x00000002, LockMask=1)") +
                         LogLine(2, "- PDULockResource<PDU_ERR_RSC_LOCKED_BY_OTHER_CLL (0x00A1)>");
const std::string Connect = LogCall(3, "PDUModuleConnect", "hMod=0x00000001");
const std::string Construct = LogCall(1, "PDUConstruct", "OptionStr=\"\", pAPITag=0x0");

class Show : public ::testing::Test
{
protected:
    Show() { WriteFileBytes(folder_ / LogName, SampleLog()); }

    ProgramResult Run(const std::string& arguments) const
    {
        return RunProgram("marvane", arguments + " " + Quoted(folder_ / LogName));
    }

    TemporaryFolder folder_;
};

TEST_F(Show, WithoutFiltersShowsTheWholeLog)
{
    const ProgramResult result = Run("show");
    EXPECT_EQ(result.Status, 0);
    EXPECT_EQ(result.Output, SampleLog());
    EXPECT_EQ(result.Errors, "");
}

TEST_F(Show, FiltersByWhatCallsAre)
{
    const char* const meantLock[] = {
        "--errors",
        "--link 2",
        "--status 0xA1",
        "--status RSC_LOCKED_BY_OTHER_CLL",
        "--call lockresource",
        "--calls 2",
        "--calls 2-2",
        "--grep LockMask=1",
        "-e LockMask --thread 1a2c",
        "--since 14:03:02 --until 14:03:02",
        "--module 1 -n 1",
    };
    for (const char* const filter : meantLock) {
        const ProgramResult result = Run("show " + std::string(filter));
        EXPECT_EQ(result.Output, Lock) << filter;
        EXPECT_EQ(result.Status, 0) << filter;
    }
}

TEST_F(Show, ShowsWholeACallThatWasOpenAtTheTime)
{
    const std::string open = LogLine(5, "+ PDUGetVersion(hMod=0x00000001)");
    const std::string closed = LogLine(7, "- PDUGetVersion<PDU_STATUS_NOERROR (0x0000)>");
    const std::string never = "{14:03:06.000 - 00000002} + PDUConnect(hMod=0x00000001, hCLL=0x00000001)\n";
    WriteFileBytes(folder_ / LogName, open + never + closed + LogCall(9, "PDUGetTimestamp"));
    EXPECT_EQ(Run("show --since 14:03:06 --until 14:03:08").Output, open + closed + never);
    EXPECT_EQ(Run("show --since 14:03:08").Output, never + LogCall(9, "PDUGetTimestamp"));
}

TEST_F(Show, IsStatusOneIfNothingMatches)
{
    for (const char* const filter : {"--link 9", "--status 0x20", "--call GetVersion", "--calls 100-",
                                     "--grep nowhere", "--thread 1", "--module 7"}) {
        const ProgramResult result = Run("show " + std::string(filter));
        EXPECT_EQ(result.Output, "") << filter;
        EXPECT_EQ(result.Status, 1) << filter;
    }
}

TEST_F(Show, InvertsTheText)
{
    EXPECT_EQ(Run("show --calls 1-3 --grep LockMask -v").Output, Construct + Connect);
}

TEST_F(Show, ShowsCallsBeforeAndAfter)
{
    const std::string destruct = LogCall(4, "PDUDestruct");
    EXPECT_EQ(Run("show --errors -A 1").Output, Lock + Connect);
    EXPECT_EQ(Run("show --errors -B 1").Output, Construct + Lock);
    EXPECT_EQ(Run("show --errors -C 1").Output, Construct + Lock + Connect);
    EXPECT_EQ(Run("show --grep OptionStr --grep PDUDestruct -A 1").Output,
              Construct + Lock + "--\n" + destruct);
}

TEST_F(Show, CountsTimesFromTheBeginningOrFromTheLastLine)
{
    EXPECT_EQ(Run("show --errors --time rel").Output,
              "{      +2.000 - 00001A2C} + PDULockResource(hMod=0x00000001, hCLL=0x00000002, LockMask=1)\n"
              "{      +2.000 - 00001A2C} - PDULockResource<PDU_ERR_RSC_LOCKED_BY_OTHER_CLL (0x00A1)>\n");
    EXPECT_EQ(Run("show --call PDULockResource --call PDUDestruct --time delta").Output,
              "{      +2.000 - 00001A2C} + PDULockResource(hMod=0x00000001, hCLL=0x00000002, LockMask=1)\n"
              "{      +0.000 - 00001A2C} - PDULockResource<PDU_ERR_RSC_LOCKED_BY_OTHER_CLL (0x00A1)>\n"
              "{      +2.000 - 00001A2C} + PDUDestruct()\n"
              "{      +0.000 - 00001A2C} - PDUDestruct<PDU_STATUS_NOERROR (0x0000)>\n");
}

TEST_F(Show, HasColoursIfTheyAreAskedFor)
{
    EXPECT_EQ(Run("show --errors --color=always").Output,
              "\x1b[2m{14:03:02.000 - 00001A2C} \x1b[0m"
              "\x1b[1m+ PDULockResource(hMod=0x00000001, hCLL=0x00000002, LockMask=1)\x1b[0m\n"
              "\x1b[2m{14:03:02.000 - 00001A2C} \x1b[0m"
              "\x1b[31m- PDULockResource<PDU_ERR_RSC_LOCKED_BY_OTHER_CLL (0x00A1)>\x1b[0m\n");
}

TEST_F(Show, ReadsStandardInput)
{
    const ProgramResult result = RunProgram("marvane", "show --errors -", folder_ / LogName);
    EXPECT_EQ(result.Output, Lock);
    EXPECT_EQ(result.Errors, "");
}

TEST_F(Show, CutAndAroundReadStandardInput)
{
    const std::string input = folder_ / LogName;
    for (const std::string arguments : {"cut --since 14:03:02 --until 14:03:03", "around --line 9"}) {
        const ProgramResult result = RunProgram("marvane", arguments + " -", input);
        EXPECT_EQ(result.Output, Run(arguments).Output) << arguments;
        EXPECT_EQ(result.Errors, "") << arguments;
        EXPECT_EQ(result.Status, 0) << arguments;
    }
    WriteFileBytes(folder_ / LogName, "no log\n");
    const ProgramResult result = RunProgram("marvane", "around --line 1 -", input);
    EXPECT_EQ(result.Errors, "marvane: -: is no log\nmarvane: the log has no line 1\n");
    EXPECT_EQ(result.Status, 2);
}

TEST_F(Show, AroundSaysWhichFileIsNoLog)
{
    WriteFileBytes(folder_ / LogName, "no log\n");
    const ProgramResult result = Run("around --at 10:00");
    EXPECT_EQ(result.Errors, "marvane: " + folder_ / LogName + ": is no log\n");
    EXPECT_EQ(result.Status, 2);
}

TEST_F(Show, KeepsTheLinesOfACallTogether)
{
    const std::string other = "{14:03:05.001 - 00000002} ";
    WriteFileBytes(folder_ / LogName, LogLine(5, "+ PDUGetVersion(hMod=0x00000001)") + other +
                                          "+ PDUGetStatus(hMod=0x00000001)\n" +
                                          LogLine(5, "- PDUGetVersion<PDU_STATUS_NOERROR (0x0000)>") + other +
                                          "- PDUGetStatus<PDU_STATUS_NOERROR (0x0000)>\n");
    EXPECT_EQ(Run("show").Output, LogCall(5, "PDUGetVersion", "hMod=0x00000001") + other +
                                      "+ PDUGetStatus(hMod=0x00000001)\n" + other +
                                      "- PDUGetStatus<PDU_STATUS_NOERROR (0x0000)>\n");
}

TEST_F(Show, TakesTheNewestSessionOfTheConfigurationWithoutALog)
{
    WriteFileBytes(folder_ / NextLogName, SampleLog() + LogCall(5, "PDUGetVersion"));
    WriteFileBytes(folder_ / "cfg.xml", "<?xml version=\"1.0\"?>\n" + std::string(OpeningTag) +
                                            "\n<Attribute Name=\"LogFileDir\" Type=\"String\" Value=\"" +
                                            (folder_ / "") + "\"/>\n" + ClosingTag + "\n");
    const EnvironmentValue configuration(ConfigurationVariable, folder_ / "cfg.xml");
    const ProgramResult result = RunProgram("marvane", "show");
    EXPECT_EQ(result.Output, SampleLog() + LogCall(5, "PDUGetVersion"));
    EXPECT_EQ(result.Errors, "");
}

TEST_F(Show, SaysWhatIsMissingWithoutALogAndAConfiguration)
{
    const EnvironmentValue configuration(ConfigurationVariable, folder_ / "absent.xml");
    const ProgramResult result = RunProgram("marvane", "show");
    EXPECT_EQ(result.Status, 2);
    EXPECT_EQ(result.Errors, "marvane: no LOG given, and no log folder found: " + folder_ / "absent.xml" +
                                 " is no configuration that can be read, and no installed entry has a log\n");
}

TEST_F(Show, FollowingEndsWithTheTextOrTheTimeOut)
{
    EXPECT_EQ(Run("show -f --until-match LOCKED_BY").Output.substr(SampleLog().find(Lock)), Lock);
    EXPECT_EQ(Run("show -f --until-match LOCKED_BY").Status, 0);
    const ProgramResult late = Run("show -f --until-match nowhere --timeout 0");
    EXPECT_EQ(late.Status, 1);
    EXPECT_EQ(late.Output, SampleLog());
}

TEST_F(Show, FollowingReadsStandardInputToItsEnd)
{
    const std::string input = folder_ / LogName;
    EXPECT_EQ(RunProgram("marvane", "show -f -", input).Output, SampleLog());
    EXPECT_EQ(RunProgram("marvane", "show -f -", input).Status, 0);
    EXPECT_EQ(RunProgram("marvane", "show --until-match nowhere -f -", input).Status, 1);
    const ProgramResult found = RunProgram("marvane", "errors --until-match LOCKED -f -", input);
    EXPECT_NE(found.Output.find("RSC_LOCKED_BY_OTHER_CLL (0x00A1)"), std::string::npos);
    EXPECT_EQ(found.Status, 0);
    EXPECT_EQ(RunProgram("marvane", "talk -f -", input).Status, 0);
}

TEST_F(Show, FollowingWaitsForALogUpToTheTimeOut)
{
    for (const char* const command : {"show", "talk", "errors"}) {
        const ProgramResult result =
            RunProgram("marvane", std::string(command) + " -f --timeout 0 " + Quoted(folder_ / "absent.LGR"));
        EXPECT_EQ(result.Status, 1) << command;
        EXPECT_EQ(result.Errors, "") << command;
    }
}

TEST_F(Show, CutWritesThePartWithTheHeaderOfItsSession)
{
    const std::string header = SampleLog().substr(0, SampleLog().find(Construct));
    const ProgramResult part = Run("cut --since 14:03:02 --until 14:03:03");
    EXPECT_EQ(part.Status, 0);
    EXPECT_EQ(part.Output, header + Lock + Connect);
    EXPECT_EQ(Run("cut --until 14:03:01").Output, header + Construct);
    EXPECT_EQ(Run("cut --since 14:59").Status, 1);
}

TEST_F(Show, CutCutsNoCallAndKeepsLineEnds)
{
    const std::string open = LogLine(5, "+ PDUGetVersion(hMod=0x00000001)");
    const std::string closed = LogLine(7, "- PDUGetVersion<PDU_STATUS_NOERROR (0x0000)>");
    const std::string inside = "{14:03:06.000 - 00000002} + PDUGetStatus(hMod=0x00000001)\r\n"
                               "{14:03:06.500 - 00000002} - PDUGetStatus<PDU_STATUS_NOERROR (0x0000)>\r\n";
    WriteFileBytes(folder_ / LogName, open + inside + closed);
    EXPECT_EQ(FileBytes(folder_ / LogName).size(), (open + inside + closed).size());
    EXPECT_EQ(Run("cut --since 14:03:06").Output,
              FileText(folder_ / LogName).substr(open.size(), inside.size() - 2));
    EXPECT_EQ(Run("cut --until 14:03:05").Output, open + closed);
}

/// A log that is long enough for its beginning to be skipped: of the last two hours, with a call each quarter
/// of a second, and one of another thread that is open from the second second on.
class LongLog
{
public:
    LongLog() : begin_(std::time(nullptr) - 7200)
    {
        Text = Line(0, "########## INITIALISE ##########") + Line(0, "LogHeader{Loaded=0}") +
               Line(0, "Config setting: LogCbCalls           =         1 (0x00000001)");
        Header = Text;
        for (int i = 0; i < 4 * 7000; ++i) {
            if (i == 8)
                Text += OpenBegin();
            if (i == 4 * 6000)
                Text += OpenEnd();
            Text += Call(i);
        }
    }

    std::string Text;
    std::string Header;

    std::string Call(int i) const
    {
        return Line(i, "+ PDUGetTimestamp(hMod=0x00000001)") +
               Line(i, "- PDUGetTimestamp<PDU_STATUS_NOERROR (0x0000)>");
    }
    std::string OpenBegin() const { return Line(8, "+ PDUConnect(hMod=0x00000001, hCLL=0x00000001)", 2); }
    std::string OpenEnd() const { return Line(4 * 6000, "- PDUConnect<PDU_STATUS_NOERROR (0x0000)>", 2); }
    std::string Name() const { return MakeLogFileName(LogFamily::Api, TimeOf(0)); }
    /// The time of a call, for the command line.
    std::string Clock(int i) const
    {
        const std::tm time = TimeOf(i);
        char text[80];
        std::snprintf(text, sizeof text, "%04d-%02d-%02dT%02d:%02d:%02d.%03d", time.tm_year + 1900,
                      time.tm_mon + 1, time.tm_mday, time.tm_hour, time.tm_min, time.tm_sec, i % 4 * 250);
        return text;
    }

private:
    std::tm TimeOf(int i) const
    {
        const std::time_t time = begin_ + i / 4;
        return *std::localtime(&time);
    }
    std::string Line(int i, const std::string& text, int thread = 1) const
    {
        return "{" + Clock(i).substr(11) + " - 0000000" + std::to_string(thread) + "} " + text + "\n";
    }

    std::time_t begin_;
};

TEST(LongLogs, ArePartlyReadWithTheSameResult)
{
    const TemporaryFolder folder;
    const LongLog log;
    const std::string path = folder / log.Name();
    WriteFileBytes(path, log.Text);
    const int from = 4 * 5000;
    const std::string range =
        " --since " + log.Clock(from) + " --until " + log.Clock(from + 2) + " " + Quoted(path);
    const std::string calls = log.Call(from) + log.Call(from + 1) + log.Call(from + 2);
    EXPECT_EQ(RunProgram("marvane", "cut" + range).Output, log.Header + calls);
    EXPECT_EQ(RunProgram("marvane", "show" + range).Output, log.OpenBegin() + log.OpenEnd() + calls);
    EXPECT_EQ(
        RunProgram("marvane", "around --before 0.1 --after 0.1 --at " + log.Clock(from) + " " + Quoted(path))
            .Output,
        "         thread 1 (application)                       thread 2 (application)\n"
        "+5000.000 GetTimestamp" +
            std::string(74, ' ') + "|\n");
}

TEST(Around, ShowsNoMoreThanAnybodyReads)
{
    const TemporaryFolder folder;
    std::string log = SampleLog();
    for (unsigned i = 0; i < 50'001; ++i)
        log += LogCall(5, "PDUGetTimestamp", "hMod=0x00000001");
    WriteFileBytes(folder / LogName, log);
    const ProgramResult result = RunProgram("marvane", "around --at 14:03:05 " + Quoted(folder / LogName));
    EXPECT_EQ(result.Status, 0);
    EXPECT_EQ(result.Errors,
              "marvane: more than 50,000 calls and reports: the rest of that time is not shown\n");
    EXPECT_EQ(result.Output, "         thread 1A2C (application)\n"
                             "+5.000   GetTimestamp  50000 times\n"
                             "\n"
                             "Repetitions are folded (--all)\n");
}

} // namespace
} // namespace marvane::testing
