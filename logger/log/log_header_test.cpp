#include "logger/log/log_header.h"

#include "logger/state/process_texts.h"
#include "tests/support/logger_state.h"
#include "tests/support/session.h"

namespace marvane {
namespace {

class LogHeaderTest : public testing::LoggerState
{
protected:
    static std::string Header()
    {
        PhaseText text(PhaseTime(7, 8, 9, 10));
        LogHeader(text);
        return testing::WithoutStamps(std::string(text.Text()));
    }

    /// What follows a line of the header.
    static std::string After(const std::string& header, const std::string& line)
    {
        const std::size_t at = header.find(line);
        return at == std::string::npos ? "no such line" : header.substr(at + line.size());
    }

    static constexpr const char* LastKey =
        "{stamp} Config setting: DoIPTlsPemCertificateHashFolderPath = ''\n";
};

TEST_F(LogHeaderTest, BeforeTheFirstStartIsCompleteItEndsAfterTheTexts)
{
    const std::string text = Header();
    EXPECT_TRUE(text.starts_with("{stamp} ########## D-PDU API LOGGER VERSION: <UNREAD> ##########\n"
                                 "{stamp} LogHeader{Loaded=0}\n"
                                 "{stamp} Config setting: LogEnabled           =         1 (0x00000001)\n"))
        << text;
    EXPECT_EQ(After(text, LastKey), "");
}

TEST_F(LogHeaderTest, AfterwardsItGoesOnWithFolderAndTarget)
{
    Loaded = 1;
    LogDirectory = "the folder";
    LoggerVersionText = "R01.002.0003.0004";
    TargetVersionText = "R05.006.0007.0008";
    TargetLibraryPath = "the target";
    const std::string text = Header();
    EXPECT_TRUE(text.starts_with("{stamp} ########## D-PDU API LOGGER VERSION: R01.002.0003.0004 ##########\n"
                                 "{stamp} LogHeader{Loaded=1}\n"))
        << text;
    EXPECT_EQ(After(text, LastKey), "{stamp} Config setting: LogFileDir=the folder\n"
                                    "{stamp}    <--  LOADED:  Version 'R05.006.0007.0008' of 'the target'\n");
}

TEST_F(LogHeaderTest, OnlyAnEmptyFolderIsCalledANullString)
{
    Loaded = 1;
    const std::string text = Header();
    EXPECT_EQ(After(text, LastKey), "{stamp} Config setting: LogFileDir=<NULL STRING>\n"
                                    "{stamp}    <--  LOADED:  Version '<UNREAD>' of ''\n");
    EXPECT_NE(text.find("{stamp} Config setting: ShortName            = ''\n"), std::string::npos);
}

TEST_F(LogHeaderTest, WithLogEnabledZeroTheTargetIsNotNamed)
{
    Loaded = 1;
    LogDirectory = "the folder";
    SetSetting(NumericKey::LogEnabled, 0);
    SetSetting(NumericKey::LogNewFileCfg, 1);
    EXPECT_EQ(After(Header(), LastKey), "{stamp} Config setting: LogFileDir=the folder\n");
}

TEST_F(LogHeaderTest, EngineeringModeAddsOneLineUnlessItIsZero)
{
    std::string without = Header();
    SetSetting(NumericKey::LogEngineeringMode, 2);
    const std::string before = "{stamp} Config setting: LogNewFileCfg        =         0 (0x00000000)\n";
    const std::size_t at = without.find(before);
    ASSERT_NE(at, std::string::npos);
    EXPECT_EQ(Header(),
              without.insert(at + before.size(),
                             "{stamp} Config setting: LogEngineeringMode   =         2 (0x00000002)\n"));
}

TEST_F(LogHeaderTest, ValuesThatFillTheBufferDropAllThatFollowsTheMarker)
{
    Loaded = 1;
    LogDirectory = "the folder";
    StringSettings[1] = std::string(14000, 'v');
    const std::string text = Header();
    EXPECT_EQ(text.find("\t\t\t\t...\n"), text.size() - 8);
    EXPECT_EQ(text.find("LogFileDir="), std::string::npos);
    EXPECT_EQ(text.find("LOADED:"), std::string::npos);
}

TEST_F(LogHeaderTest, WithLoggingOffItAddsNothingAndItsCommitWritesNothing)
{
    SetSetting(NumericKey::LogEnabled, 0);
    PhaseText text(PhaseTime(7, 8, 9, 10));
    LogHeader(text);
    EXPECT_EQ(text.Text(), "");
    WritePhase(text, ApiLogFile);
    EXPECT_EQ(Log(), "");
}

} // namespace
} // namespace marvane
