#include "logger/log/log_trimming.h"

#include <gtest/gtest.h>

#include "logger/state/process_texts.h"
#include "platform/files.h"
#include "tests/support/diagnostic_log.h"
#include "tests/support/logger_state.h"

namespace marvane {
namespace {

/// Trims a folder of the test's own; all records are kept.
class TrimLogFilesTest : public testing::LoggerState
{
protected:
    TrimLogFilesTest()
    {
        std::filesystem::create_directory(folder / "logs");
        LogDirectory = folder / "logs";
    }

    std::string Path(const std::string& name) const { return LogDirectory + platform::PathSeparator + name; }
    static std::string Name(const std::string& day)
    {
        return "D-PDU_API_Logger_" + day + "-03-2020_10-11-12.LGR";
    }
    void Make(std::initializer_list<const char*> days) const
    {
        for (const char* day : days)
            testing::WriteFileBytes(Path(Name(day)), "");
    }
    static std::string Record(const std::string& level, const std::string& message)
    {
        return level + "|logger/logger|TrimLogFiles|" + message + "\n";
    }
    /// The records of every trimming's beginning.
    static std::string Beginning()
    {
        return Record("DEBUG", "FileName=D-PDU_API_Logger") + Record("DEBUG", "SearchPath=" + LogDirectory);
    }

    const testing::DiagnosticLog log{5};
    std::string sole = "untouched";
};

TEST_F(TrimLogFilesTest, WithoutAFileTheSoleNameIsEmpty)
{
    TrimLogFiles(LogFamily::Api, sole);
    EXPECT_EQ(sole, "");
    EXPECT_EQ(log.Records(), Beginning());
}

TEST_F(TrimLogFilesTest, ErasesTheLowestNamesDownToTheLimitAndSaysSo)
{
    SetSetting(NumericKey::LogFileMaxNum, 1);
    Make({"30", "01", "15", "02"});
    TrimLogFiles(LogFamily::Api, sole);
    EXPECT_EQ(sole, "");
    EXPECT_EQ(log.Records(), Beginning() + Record("DEBUG", "NumFiles=4, Max=2") +
                                 Record("DEBUG1", "Erasing=" + Path(Name("01"))) +
                                 Record("DEBUG1", "Erasing=" + Path(Name("02"))));
    EXPECT_FALSE(std::filesystem::exists(Path(Name("01"))));
    EXPECT_FALSE(std::filesystem::exists(Path(Name("02"))));
    EXPECT_TRUE(std::filesystem::exists(Path(Name("15"))));
    EXPECT_TRUE(std::filesystem::exists(Path(Name("30"))));
}

TEST_F(TrimLogFilesTest, WithLogFileMaxNumZeroTheThirdOfThreeIsHandedBack)
{
    Make({"07", "09", "08"});
    TrimLogFiles(LogFamily::Api, sole);
    EXPECT_EQ(sole, Name("09"));
    EXPECT_EQ(log.Records(), Beginning() + Record("DEBUG", "NumFiles=3, Max=1") +
                                 Record("DEBUG1", "Erasing=" + Path(Name("07"))) +
                                 Record("DEBUG1", "Erasing=" + Path(Name("08"))) +
                                 Record("DEBUG", "SoleFile=" + Name("09")));
}

TEST_F(TrimLogFilesTest, AFolderWhoseNameFitsIsFoundButNotCounted)
{
    std::filesystem::create_directory(Path(Name("05")));
    TrimLogFiles(LogFamily::Api, sole);
    EXPECT_EQ(sole, "");
    EXPECT_EQ(log.Records(), Beginning() + Record("DEBUG", "NumFiles=0, Max=1"));
    EXPECT_TRUE(std::filesystem::is_directory(Path(Name("05"))));
}

TEST_F(TrimLogFilesTest, TheLargestLimitWrapsRoundAndErasesAll)
{
    SetSetting(NumericKey::LogFileMaxNum, 0xFFFFFFFF);
    Make({"01"});
    TrimLogFiles(LogFamily::Api, sole);
    EXPECT_EQ(sole, "");
    EXPECT_EQ(log.Records(), Beginning() + Record("DEBUG", "NumFiles=1, Max=0") +
                                 Record("DEBUG1", "Erasing=" + Path(Name("01"))));
    EXPECT_FALSE(std::filesystem::exists(Path(Name("01"))));
}

TEST_F(TrimLogFilesTest, TheOtherFamilyIsLeftAlone)
{
    Make({"01", "02", "03"});
    testing::WriteFileBytes(Path("D-PDU_API_Comms_04-03-2020_10-11-12.LGR"), "");
    TrimLogFiles(LogFamily::Comms, sole);
    EXPECT_EQ(sole, "D-PDU_API_Comms_04-03-2020_10-11-12.LGR");
    EXPECT_TRUE(std::filesystem::exists(Path(Name("01"))));
}

} // namespace
} // namespace marvane
