#include <gtest/gtest.h>

#include "logger/diagnostics/CLog.h"
#include "logger/state/CConfigData.h"
#include "tests/support/diagnostic_log.h"

namespace marvane {
namespace {

using testing::DiagnosticLog;

/// Puts the keys of a configuration in force.
class DebugLevels : public ::testing::Test
{
protected:
    void Process(std::initializer_list<std::pair<const char*, const char*>> keys)
    {
        std::string text = "<?xml?>\n<D_PDU_API_CFG>\n";
        for (const auto& [key, value] : keys)
            text +=
                "<Attribute Name=\"" + std::string(key) + "\" Type=\"String\" Value=\"" + value + "\"/>\n";
        testing::WriteFileBytes(log.Folder() / "config.xml", text + "</D_PDU_API_CFG>\n");
        config.ProcessConfigurationElements(log.Folder() / "config.xml");
        config.ProcessLogLevels();
    }

    static constexpr const char* Switched =
        "INFO|class CConfigData|CConfigData::ProcessLogLevels|Switched to config file log levls\n";

    DiagnosticLog log{3};
    CConfigData config{"D_PDU_API_CFG"};
};

TEST_F(DebugLevels, WithoutAKeyTheSharedTableStaysInForce)
{
    Process({});
    EXPECT_EQ(log.Records(), "");
    EXPECT_TRUE(CLog::Wanted(DebugLevel::Info, Subsystem::APP));
}

TEST_F(DebugLevels, AnInvalidTextIsAnAbsentKey)
{
    Process({{"DbgAPP", "debug"}, {"DbgDATA", "8"}});
    EXPECT_EQ(log.Records(), "");
    EXPECT_TRUE(CLog::Wanted(DebugLevel::Info, Subsystem::APP));
}

TEST_F(DebugLevels, OneValidKeyPutsAllOthersToWarn)
{
    Process({{"DbgDATA", "INFO"}});
    EXPECT_EQ(log.Records(), Switched);
    EXPECT_TRUE(CLog::Wanted(DebugLevel::Info, Subsystem::DATA));
    EXPECT_FALSE(CLog::Wanted(DebugLevel::Debug, Subsystem::DATA));
    EXPECT_TRUE(CLog::Wanted(DebugLevel::Warn, Subsystem::APP));
    EXPECT_FALSE(CLog::Wanted(DebugLevel::Notice, Subsystem::APP));
}

TEST_F(DebugLevels, AChangeOfTheSharedTableDoesNotReachTheConfiguredOne)
{
    Process({{"DbgDATA", "INFO"}});
    std::array<std::int32_t, SubsystemCount> levels;
    levels.fill(7);
    testing::WriteFileBytes(log.LevelFile(), testing::LevelBytes(levels));
    EXPECT_FALSE(CLog::Wanted(DebugLevel::Debug, Subsystem::DATA));
    EXPECT_FALSE(CLog::Wanted(DebugLevel::Notice, Subsystem::APP));
}

TEST_F(DebugLevels, TheClosingMessageObeysTheNewTable)
{
    Process({{"DbgDATA", "ERROR"}});
    EXPECT_EQ(log.Records(), "");
    EXPECT_FALSE(CLog::Wanted(DebugLevel::Warn, Subsystem::DATA));
}

TEST(DebugLevelsDetail, ShowsEachSubsystemWithThePaddedLabel)
{
    const DiagnosticLog log(5);
    {
        CConfigData config("D_PDU_API_CFG");
        testing::WriteFileBytes(log.Folder() / "config.xml",
                                "<?xml?>\n<D_PDU_API_CFG>\n<Attribute Name=\"DbgGENERAL\" Type=\"String\" "
                                "Value=\"WARN\"/>\n</D_PDU_API_CFG>\n");
        config.ProcessConfigurationElements(log.Folder() / "config.xml");
        config.ProcessLogLevels();
    }
    const std::string where = "|class CConfigData|CConfigData::ProcessLogLevels|";
    EXPECT_NE(log.Records().find("DEBUG" + where + "\nDEBUG1" + where +
                                 "Getting level for Subsys=GENERAL, using XML=`DbgGENERAL`\nDEBUG1" + where +
                                 "Config setting for `GENERAL`= WARN   (WARN)\nDEBUG" + where +
                                 "Set level for Subsys=GENERAL, to= WARN   \nDEBUG1" + where +
                                 "Getting level for Subsys=APP, using XML=`DbgAPP`\nDEBUG" + where +
                                 "Set level for Subsys=APP, to= WARN   \n"),
              std::string::npos)
        << log.Records();
}

TEST(DebugLevelsEnd, WithTheConfigurationTheSharedTableComesBack)
{
    const DiagnosticLog log(3);
    {
        CConfigData config("D_PDU_API_CFG");
        testing::WriteFileBytes(log.Folder() / "config.xml",
                                "<?xml?>\n<D_PDU_API_CFG>\n<Attribute Name=\"DbgAPP\" Type=\"String\" "
                                "Value=\"ERROR\"/>\n</D_PDU_API_CFG>\n");
        config.ProcessConfigurationElements(log.Folder() / "config.xml");
        config.ProcessLogLevels();
        EXPECT_FALSE(CLog::Wanted(DebugLevel::Warn, Subsystem::APP));
    }
    EXPECT_TRUE(CLog::Wanted(DebugLevel::Info, Subsystem::APP));
    // The records go to the init log again, anew.
    EXPECT_TRUE(std::filesystem::exists(log.InitLog()));
}

TEST(LevelTexts, HaveALabelForEachNumberAndOneForAllOthers)
{
    EXPECT_STREQ(LevelLabel(0), " ERROR  ");
    EXPECT_STREQ(LevelLabel(7), " DEBUG3 ");
    EXPECT_STREQ(LevelLabel(8), "Invalid Level");
    EXPECT_STREQ(SubsystemName(0), "GENERAL");
    EXPECT_STREQ(SubsystemName(18), "TIMER");
    EXPECT_STREQ(SubsystemName(19), "Invalid SubSys");
}

} // namespace
} // namespace marvane
