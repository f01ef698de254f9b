#include "logger/log/log_files.h"

#include <gtest/gtest.h>

#include "logger/state/process_texts.h"
#include "platform/files.h"
#include "tests/support/logger_state.h"
#include "tests/support/pattern.h"

namespace marvane {
namespace {

const bool OnLinux = platform::PathSeparator == '/';
const std::string Separator(1, platform::PathSeparator);
const std::string Stamp = "_[0-3]\\d-[01]\\d-2\\d{3}_[0-2]\\d-[0-5]\\d-[0-5]\\d\\.LGR";

/// The paths are composed for folders that need not exist; what is trimmed lies in an empty one.
class LogPathsTest : public testing::LoggerState
{
protected:
    LogPathsTest()
    {
        std::filesystem::create_directory(folder / "empty");
        LogDirectory = folder / "empty";
    }

    static bool IsStamped(const std::string& path, const std::string& front)
    {
        return path.starts_with(front) && testing::HasForm(path.substr(front.size()), Stamp);
    }
};

TEST_F(LogPathsTest, AFolderWithoutASeparatorAtItsEndHasTheCommsFileBesideIt)
{
    const LogPaths paths = ComposeLogPaths("logs", true);
    EXPECT_TRUE(IsStamped(paths.Api, "logs" + Separator + "D-PDU_API_Logger")) << paths.Api;
    EXPECT_TRUE(IsStamped(paths.Comms, "logsD-PDU_API_Comms")) << paths.Comms;
}

TEST_F(LogPathsTest, AFolderWithASeparatorAtItsEndGetsAnotherInFrontOfTheApiFile)
{
    const LogPaths paths = ComposeLogPaths("logs" + Separator, true);
    EXPECT_TRUE(IsStamped(paths.Api, "logs" + Separator + Separator + "D-PDU_API_Logger")) << paths.Api;
    EXPECT_TRUE(IsStamped(paths.Comms, "logs" + Separator + "D-PDU_API_Comms")) << paths.Comms;
}

TEST_F(LogPathsTest, AnEmptyFolderPutsTheApiFileIntoTheRootAndTheCommsFileWhereWeAre)
{
    const LogPaths paths = ComposeLogPaths("", true);
    EXPECT_TRUE(IsStamped(paths.Api, Separator + "D-PDU_API_Logger")) << paths.Api;
    EXPECT_TRUE(IsStamped(paths.Comms, "D-PDU_API_Comms")) << paths.Comms;
}

TEST_F(LogPathsTest, BothFilesOfAMomentHaveOneStamp)
{
    const LogPaths paths = ComposeLogPaths("logs", true);
    EXPECT_EQ(paths.Api.substr(paths.Api.size() - 24), paths.Comms.substr(paths.Comms.size() - 24));
}

TEST_F(LogPathsTest, WithoutACommsFamilyThereIsNoCommsPath)
{
    EXPECT_EQ(ComposeLogPaths("logs", false).Comms, "");
}

TEST_F(LogPathsTest, ASoleFileIsReusedAndASoleCommsFileThatIsMissingLeavesTheFolder)
{
    testing::WriteFileBytes(folder.Path() / "empty" / "D-PDU_API_Logger_05-03-2020_10-11-12.LGR", "");
    const LogPaths paths = ComposeLogPaths("logs", true);
    EXPECT_EQ(paths.Api, "logs" + Separator + "D-PDU_API_Logger_05-03-2020_10-11-12.LGR");
    EXPECT_EQ(paths.Comms, "logs" + Separator);
    testing::WriteFileBytes(folder.Path() / "empty" / "D-PDU_API_Comms_06-03-2020_10-11-12.LGR", "");
    EXPECT_EQ(ComposeLogPaths("logs", true).Comms,
              "logs" + Separator + "D-PDU_API_Comms_06-03-2020_10-11-12.LGR");
}

TEST_F(LogPathsTest, ASoleCommsFileIsNotReusedBesideANewApiFile)
{
    testing::WriteFileBytes(folder.Path() / "empty" / "D-PDU_API_Comms_06-03-2020_10-11-12.LGR", "");
    const LogPaths paths = ComposeLogPaths("logs", true);
    EXPECT_TRUE(IsStamped(paths.Api, "logs" + Separator + "D-PDU_API_Logger")) << paths.Api;
    EXPECT_TRUE(IsStamped(paths.Comms, "logsD-PDU_API_Comms")) << paths.Comms;
}

TEST(LogDirectoryTest, AnEmptyNameCountsAsMade)
{
    EXPECT_TRUE(MakeLogDirectory(""));
}

TEST(LogDirectoryTest, AChainIsMadeAndWhatExistsIsFine)
{
    const testing::TemporaryFolder folder;
    const std::string chain = folder / "a" + Separator + "b" + Separator;
    EXPECT_TRUE(MakeLogDirectory(chain));
    EXPECT_TRUE(std::filesystem::is_directory(folder.Path() / "a" / "b"));
    EXPECT_TRUE(MakeLogDirectory(chain));
}

TEST(LogDirectoryTest, ASeparatorInFrontIsTheRootWhereThereIsOneAndElseCanNotBeMade)
{
    // Nothing is made: it is the root, or a prefix of no characters.
    EXPECT_EQ(MakeLogDirectory(Separator), OnLinux);
}

TEST(LogDirectoryTest, AFailureStaysNotedHoweverWellTheRestGoes)
{
    const testing::TemporaryFolder folder;
    testing::WriteFileBytes(folder / "file", "");
    EXPECT_FALSE(MakeLogDirectory(folder / "file" + Separator + "logs"));
}

TEST(LogDirectoryTest, ANameIsCutAt255Characters)
{
    if (!OnLinux)
        GTEST_SKIP() << "this system makes no folder of so long a name";
    const testing::TemporaryFolder folder;
    std::string path = folder / "a" + Separator;
    path.resize(254, 'x');
    EXPECT_TRUE(MakeLogDirectory(path + "yz"));
    EXPECT_TRUE(std::filesystem::is_directory(path + "y"));
    EXPECT_FALSE(std::filesystem::exists(path + "yz"));
}

class LogStreamTest : public testing::LoggerState
{
};

TEST_F(LogStreamTest, TheSizeCountsWhatIsNotFlushedYet)
{
    WriteToLog(ApiLogFile, "12345");
    EXPECT_EQ(GetLogFileSize(), 5u);
    WriteToLog(ApiLogFile, "678");
    EXPECT_EQ(GetLogFileSize(), 8u);
    EXPECT_EQ(Log(), "12345678");
}

TEST_F(LogStreamTest, TheSizeOfNoFileIsZero)
{
    CloseLogFiles();
    EXPECT_EQ(GetLogFileSize(), 0u);
}

TEST_F(LogStreamTest, LogFlushOneAloneBringsATextToTheDiscAtOnce)
{
    SetSetting(NumericKey::LogFlush, 2);
    WriteToLog(ApiLogFile, "one ");
    EXPECT_EQ(testing::FileText(LogPath()), "");
    SetSetting(NumericKey::LogFlush, 1);
    WriteToLog(ApiLogFile, "two");
    EXPECT_EQ(testing::FileText(LogPath()), "one two");
}

TEST_F(LogStreamTest, WritingAPhaseKeepsItsText)
{
    PhaseText text;
    text.Add("text"_fmt);
    WritePhase(text, ApiLogFile);
    WritePhase(text, ApiLogFile);
    EXPECT_EQ(text.Text(), "text");
    EXPECT_EQ(Log(), "texttext");
}

TEST_F(LogStreamTest, WritingAPhaseNeedsActiveLoggingAndAStream)
{
    PhaseText text;
    text.Add("text"_fmt);
    WritePhase(text, CommsLogFile);
    SetSetting(NumericKey::LogEnabled, 0);
    WritePhase(text, ApiLogFile);
    EXPECT_EQ(Log(), "");
}

TEST_F(LogStreamTest, AStreamThatServesBothLogsIsClosedOnce)
{
    CommsLogFile = ApiLogFile.load();
    CloseLogFiles();
    EXPECT_EQ(ApiLogFile, nullptr);
    EXPECT_EQ(CommsLogFile, nullptr);
}

} // namespace
} // namespace marvane
