#include "logger/state/settings.h"

#include <string>

#include <gtest/gtest.h>

#include "logger/call/start_stop.h"
#include "tests/support/diagnostic_log.h"

namespace marvane {
namespace {

/// Leaves the store as a process has it at its start.
class SettingsTest : public ::testing::Test
{
protected:
    SettingsTest() { Reset(); }
    ~SettingsTest() override { Reset(); }

private:
    static void Reset()
    {
        for (const NumericKeyName& key : NumericKeyNames)
            SetSetting(key.Key, 0);
        for (std::string& text : StringSettings)
            text.clear();
    }
};

TEST(SettingKeys, NumbersHaveTheirNamesAndDefaultsInAscendingOrder)
{
    std::string keys;
    for (const NumericKeyName& key : NumericKeyNames)
        keys += std::to_string(static_cast<int>(key.Key)) + " " + key.Name + " " +
                std::to_string(key.Default) + "\n";
    EXPECT_EQ(keys, "0 LogEnabled 0\n"
                    "1 LogFileMaxSize 0\n"
                    "2 LogFileMaxNum 0\n"
                    "3 LogFlush 0\n"
                    "4 LogFnCalls 0\n"
                    "5 LogFnDecodeArgs 0\n"
                    "6 LogFnDecodeRsps 0\n"
                    "7 LogCbCalls 0\n"
                    "8 LogCallOuts 0\n"
                    "9 LogDoIPComms 0\n"
                    "10 LogCommsFile 0\n"
                    "11 LogMaxPduBuff 32\n"
                    "12 LogNewFileCfg 0\n"
                    "13 LogEngineeringMode 0\n"
                    "14 AppendLog 0\n"
                    "15 CustomerDoIPSupport 0\n"
                    "16 CustomerNRCHandling 0\n"
                    "17 CustomerAPIHandling 0\n"
                    "18 CustomerCLLEvtQTO 0\n"
                    "19 CustomerPDUStartCommReconRet 0\n"
                    "20 CustomerPDUConnectReconRet 0\n"
                    "21 DoIPReconnectDefTO 0\n"
                    "22 DoIPFilterNetworks 0\n"
                    "24 DoIPTlsRecordSizeLimit 0\n"
                    "25 LogTlsSessionKey 0\n");
}

TEST(SettingKeys, TextsHaveTheirNamesInAscendingOrder)
{
    std::string keys;
    for (const StringKeyName& key : StringKeyNames)
        keys += std::to_string(key.Key) + " " + key.Name + "\n";
    EXPECT_EQ(keys, "0 InstalledPath\n"
                    "1 ShortName\n"
                    "2 Version\n"
                    "3 TargetCustomer\n"
                    "4 InstallationType\n"
                    "5 PDUAPILibDll\n"
                    "6 DoIPEntityKey\n"
                    "7 DbgGENERAL\n"
                    "8 DbgAPP\n"
                    "9 DbgCLL\n"
                    "10 DbgCOMMS\n"
                    "11 DbgCOMPARAM\n"
                    "12 DbgCOP\n"
                    "13 DbgDATA\n"
                    "14 DbgEXCEPT\n"
                    "15 DbgMODULE\n"
                    "16 DbgPRTCL\n"
                    "17 DbgPRTCLAPP\n"
                    "18 DbgPRTCLPHY\n"
                    "19 DbgPRTCLTRANS\n"
                    "20 DbgTIMER\n"
                    "21 DbgTSTRPRS\n"
                    "22 DbgUSER1\n"
                    "23 DbgVCI\n"
                    "24 DbgVEHRX\n"
                    "25 DbgVEHTX\n"
                    "26 InternalLogFile\n"
                    "27 InternalLogDir\n"
                    "29 DoIPTlsPemCertificateFilePath\n"
                    "30 DoIPTlsPemCertificateHashFolderPath\n");
}

TEST_F(SettingsTest, EachNumericKeyHoldsANumberOfItsOwn)
{
    for (const NumericKeyName& key : NumericKeyNames)
        SetSetting(key.Key, 0xFFFF0000 + static_cast<std::uint32_t>(key.Key));
    for (const NumericKeyName& key : NumericKeyNames)
        EXPECT_EQ(Setting(key.Key), 0xFFFF0000 + static_cast<std::uint32_t>(key.Key)) << key.Name;
}

TEST_F(SettingsTest, TheLastTwoKeysAreTheHalvesOfTheDefaultCallback)
{
    SetSetting(NumericKey::DoIPTlsRecordSizeLimit, 5000);
    EXPECT_EQ(DefaultEventCallback, 5000u);
    SetSetting(NumericKey::LogTlsSessionKey, 0x12345678);
    EXPECT_EQ(DefaultEventCallback, 0x1234567800001388u);
    SetSetting(NumericKey::DoIPTlsRecordSizeLimit, 0xFFFFFFFF);
    EXPECT_EQ(DefaultEventCallback, 0x12345678FFFFFFFFu);
    SetSetting(NumericKey::LogTlsSessionKey, 0);
    EXPECT_EQ(DefaultEventCallback, 0xFFFFFFFFu);
}

TEST_F(SettingsTest, ADefaultCallbackShowsUnderTheLastTwoKeys)
{
    DefaultEventCallback = 0xAABBCCDD11223344;
    EXPECT_EQ(Setting(NumericKey::DoIPTlsRecordSizeLimit), 0x11223344u);
    EXPECT_EQ(Setting(NumericKey::LogTlsSessionKey), 0xAABBCCDDu);
    EXPECT_EQ(Setting(NumericKey::DoIPFilterNetworks), 0u);
}

/// A start of the logger under a configuration, and the end of it.
int Start(const testing::DiagnosticLog& log, const std::string& attributes)
{
    testing::WriteFileBytes(log.Folder() / "config.xml",
                            "<?xml?>\n<D_PDU_API_CFG>\n" + attributes + "</D_PDU_API_CFG>\n");
    const testing::EnvironmentValue path("PDU_CFG_FILE", log.Folder() / "config.xml");
    const int result = LOGGER_Initialise();
    LOGGER_Uninitialise();
    return result;
}

TEST_F(SettingsTest, WithoutAConfigurationFileAllAreAtTheirDefaultsAndNothingIsLogged)
{
    for (const NumericKeyName& key : NumericKeyNames)
        SetSetting(key.Key, 77);
    const testing::DiagnosticLog log(-2);
    const testing::EnvironmentValue path("PDU_CFG_FILE", log.Folder() / "none.xml");
    EXPECT_EQ(LOGGER_Initialise(), 1);
    EXPECT_EQ(LOGGER_Uninitialise(), 1);
    for (const NumericKeyName& key : NumericKeyNames)
        EXPECT_EQ(Setting(key.Key), key.Key == NumericKey::LogMaxPduBuff ? 32u : 0u) << key.Name;
    EXPECT_EQ(DefaultEventCallback, 0u);
    for (const std::string& text : StringSettings)
        EXPECT_EQ(text, "");
    EXPECT_FALSE(LoggingActive());
    EXPECT_FALSE(IsLoaded());
}

TEST_F(SettingsTest, EveryKeyOfAFileReachesItsPlace)
{
    std::string attributes;
    for (const NumericKeyName& key : NumericKeyNames)
        attributes += "<Attribute Name=\"" + std::string(key.Name) + "\" Type=\"UNUM32\" Value=\"" +
                      std::to_string(1000 + static_cast<int>(key.Key)) + "\"/>\n";
    // No names of debug levels among them, so the diagnostic log stays as it is.
    for (const StringKeyName& key : StringKeyNames)
        attributes += "<Attribute Name=\"" + std::string(key.Name) + "\" Type=\"String\" Value=\"text " +
                      std::to_string(key.Key) + "\"/>\n";
    const testing::DiagnosticLog log(-2);
    EXPECT_EQ(Start(log, attributes), 1);
    for (const NumericKeyName& key : NumericKeyNames)
        EXPECT_EQ(Setting(key.Key), 1000 + static_cast<std::uint32_t>(key.Key)) << key.Name;
    for (const StringKeyName& key : StringKeyNames)
        EXPECT_EQ(StringSettings[key.Key], "text " + std::to_string(key.Key)) << key.Name;
    EXPECT_EQ(StringSettings[28], "");
}

TEST_F(SettingsTest, AKeyThatALaterFileLacksFallsBackIfANumberAndStaysIfAText)
{
    const testing::DiagnosticLog log(-2);
    Start(log, "<Attribute Name=\"LogFlush\" Type=\"UNUM32\" Value=\"1\"/>\n"
               "<Attribute Name=\"LogMaxPduBuff\" Type=\"UNUM32\" Value=\"0\"/>\n"
               "<Attribute Name=\"LogTlsSessionKey\" Type=\"UNUM32\" Value=\"9\"/>\n"
               "<Attribute Name=\"ShortName\" Type=\"String\" Value=\"first\"/>\n");
    EXPECT_EQ(Setting(NumericKey::LogFlush), 1u);
    EXPECT_EQ(Setting(NumericKey::LogMaxPduBuff), 0u);
    EXPECT_EQ(DefaultEventCallback, std::uint64_t{9} << 32);
    EXPECT_EQ(StringSettings[1], "first");
    Start(log, "");
    EXPECT_EQ(Setting(NumericKey::LogFlush), 0u);
    EXPECT_EQ(Setting(NumericKey::LogMaxPduBuff), 32u);
    EXPECT_EQ(DefaultEventCallback, 0u);
    EXPECT_EQ(StringSettings[1], "first");
}

} // namespace
} // namespace marvane
