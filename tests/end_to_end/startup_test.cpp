// Start-up and configuration as seen from outside.
#include <gtest/gtest.h>

#include "tests/support/diagnostic_log.h"
#include "tests/support/session.h"

namespace marvane::testing {
namespace {

TEST(StartUp, WithoutLogFileDirConstructIsRefusedWithoutAFileOrATarget)
{
    Session session({{"LogFileDir", "-"}});
    EXPECT_EQ(session.Construct(), PDU_ERR_PDUAPI_NOT_CONSTRUCTED);
    EXPECT_EQ(session.Api().PDUModuleConnect(1), PDU_ERR_PDUAPI_NOT_CONSTRUCTED);
    EXPECT_EQ(session.Fake().TakeNames(), "");
    EXPECT_TRUE(session.LogNames().empty());
}

TEST(StartUp, AMissingConfigurationIsReportedInTheDiagnosticLogAndNoOtherIsTried)
{
    Session session;
    const EnvironmentValue elsewhere("PDU_CFG_FILE", session.Folder() / "none.xml");
    EXPECT_EQ(session.Construct(), PDU_ERR_PDUAPI_NOT_CONSTRUCTED);
    EXPECT_EQ(
        DiagnosticLog::Stripped(session.Diagnostics()),
        "WARN|class CConfigData|CConfigData::ProcessConfigurationElements|Could not open configuration file: " +
            (session.Folder() / "none.xml") + "\n");
    EXPECT_EQ(session.Fake().TakeNames(), "");
    EXPECT_FALSE(std::filesystem::exists(session.LogFolder()));
}

TEST(StartUp, AConfigurationAppearsAndTheNextConstructWorks)
{
    Session session({{"LogFileDir", "-"}});
    EXPECT_EQ(session.Construct(), PDU_ERR_PDUAPI_NOT_CONSTRUCTED);
    session.Configure({});
    EXPECT_EQ(session.Construct(), PDU_STATUS_NOERROR);
}

TEST(StartUp, ALogFolderThatCanNotBeCreatedIsRefusedAlthoughTheTargetWouldWork)
{
    Session session;
    WriteFileBytes(session.Folder().Path() / "file", "");
    session.Configure({{"LogFileDir", (session.Folder().Path() / "file" / "logs").string()}});
    EXPECT_EQ(session.Construct(), PDU_ERR_PDUAPI_NOT_CONSTRUCTED);
    EXPECT_EQ(session.Fake().TakeNames(), "");
    session.Configure({});
    EXPECT_EQ(session.Construct(), PDU_STATUS_NOERROR);
}

TEST(StartUp, AFaultInTheTargetsConstructLeavesTheStartUpLinesInTheFile)
{
    Session session;
    std::string seen;
    session.Fake().Answer = [&](const FakeCall&) {
        if (seen.empty())
            seen = WithoutStamps(session.Log());
        return PDU_STATUS_NOERROR;
    };
    session.Construct();
    EXPECT_TRUE(seen.starts_with("{stamp} ########## INITIALISE ##########\n"));
    EXPECT_TRUE(seen.ends_with("{stamp} - LOGGER_Initialise<PDU_STATUS_NOERROR (0x0000)>\n"
                               "{stamp} + PDUConstruct(OptionStr= \"<NULL STRING>\", pAPITag= " +
                               PointerText(nullptr) + ")\n"));
}

TEST(StartUp, WhenTheTargetIsLoadedTheLinesUpToItsVersionAreInTheFile)
{
    Session session({}, "watching_target");
    // A sole file is reused, so its name is known in advance.
    const std::string log = (session.LogFolder() / "D-PDU_API_Logger_05-03-2020_10-11-12.LGR").string();
    std::filesystem::create_directories(session.LogFolder());
    WriteFileBytes(log, "");
    const EnvironmentValue watched("MARVANE_TEST_WATCHED_LOG", log);
    EXPECT_EQ(session.Construct(), PDU_STATUS_NOERROR);
    const std::string seen = WithoutStamps(FileText(log + ".at_load"));
    const std::string target = BuildFolder() + LibraryName("watching_target");
    EXPECT_TRUE(seen.starts_with("{stamp} ########## INITIALISE ##########\n")) << seen;
    EXPECT_TRUE(seen.ends_with("{stamp} Config setting: LogFileDir=" + session.LogFolder().string() +
                               "\n"
                               "{stamp}    -->  LOADING: DLL = \"" +
                               target +
                               "\"\n"
                               "{stamp}    <--  LOADED:  Version 'R04.003.0002.0001' of '" +
                               target + "'\n"))
        << seen;
}

TEST(StartUp, ASecondConstructGivesASecondHeaderInTheSameFile)
{
    Session session;
    session.Construct();
    const std::string text = session.Logged([&] { session.Construct(); });
    EXPECT_EQ(session.LogNames().size(), 1u);
    EXPECT_TRUE(text.starts_with("{stamp} ########## INITIALISE ##########\n"
                                 "{stamp} ########## D-PDU API LOGGER VERSION: R01.000.0000.0000 ##########\n"
                                 "{stamp} LogHeader{Loaded=1}\n"));
    EXPECT_EQ(text.find("LOADING: DLL"), std::string::npos);
    EXPECT_EQ(session.Fake().TakeNames(),
              "PDUConstruct PDU_MS_SetLogCallback PDUConstruct PDU_MS_SetLogCallback");
}

TEST(StartUp, ASecondConstructTakesNewSettingsButNoNewFolderOrTarget)
{
    Session session;
    session.Construct();
    session.Configure(
        {{"LogFnCalls", "1"}, {"LogFileDir", session.Folder() / "other"}, {"PDUAPILibDll", "none"}});
    EXPECT_EQ(session.Construct(), PDU_STATUS_NOERROR);
    EXPECT_EQ(session.Logged([&] { session.Api().PDUModuleConnect(1); }),
              "{stamp} + PDUModuleConnect\n{stamp} - PDUModuleConnect<PDU_STATUS_NOERROR (0x0000)>\n");
    EXPECT_FALSE(std::filesystem::exists(session.Folder().Path() / "other"));
}

TEST(StartUp, AnAbsentStringKeepsItsFormerValueAndAnAbsentNumberGetsItsDefault)
{
    Session session({{"ShortName", "first"}, {"LogMaxPduBuff", "77"}});
    session.Construct();
    session.Configure({});
    const std::string text = session.Logged([&] { session.Construct(); });
    EXPECT_NE(text.find("Config setting: ShortName            = 'first'\n"), std::string::npos);
    EXPECT_NE(text.find("Config setting: LogMaxPduBuff        =        32 (0x00000020)\n"),
              std::string::npos);
}

TEST(StartUp, ADroppedLogFlushIsZeroInTheNextHeader)
{
    Session session;
    session.Construct();
    session.Configure({{"LogFlush", "-"}});
    // The end of the session writes what is no longer flushed.
    const std::string text = session.Logged([&] {
        session.Construct();
        session.Api().PDUDestruct();
    });
    EXPECT_NE(text.find("Config setting: LogFlush             =         0 (0x00000000)\n"),
              std::string::npos);
}

TEST(StartUp, AZeroInTheFileIsNotTheDefault)
{
    Session session({{"LogMaxPduBuff", "0"}});
    session.Construct();
    EXPECT_NE(session.Log().find("Config setting: LogMaxPduBuff        =         0 (0x00000000)\n"),
              std::string::npos);
}

TEST(StartUp, AMisspelledKeyIsIgnoredSilently)
{
    Session session({{"logflush", "7"}, {"NoSuchKey", "8"}});
    // All subsystems at INFO.
    std::array<std::int32_t, SubsystemCount> levels;
    levels.fill(3);
    const auto folder = session.Folder().Path() / "Kestrix" / "PDUAPI";
    std::filesystem::create_directories(folder);
    WriteFileBytes(folder / "DEBUG.CFG", LevelBytes(levels));
    session.Construct();
    EXPECT_NE(session.Log().find("Config setting: LogFlush             =         1 (0x00000001)\n"),
              std::string::npos);
    EXPECT_EQ(session.Diagnostics(), "");
}

TEST(StartUp, ANumberDeclaredAsStringGetsItsDefault)
{
    Session session;
    std::string text = FileBytes(session.ConfigurationPath());
    const std::string close = "</D_PDU_API_CFG>\n";
    text.insert(text.size() - close.size(), "<Attribute Name=\"LogCallOuts\" Type=\"String\" Value=\"1\"/>\n"
                                            "<Attribute Name=\"ShortName\" Type=\"UNUM32\" Value=\"9\"/>\n");
    session.ConfigureText(text);
    session.Construct();
    EXPECT_NE(session.Log().find("Config setting: LogCallOuts          =         0 (0x00000000)\n"),
              std::string::npos);
    EXPECT_NE(session.Log().find("Config setting: ShortName            = ''\n"), std::string::npos);
}

TEST(StartUp, AValueOfMinusOneIsAllBits)
{
    Session session({{"LogMaxPduBuff", "-1"}});
    session.Construct();
    EXPECT_NE(session.Log().find("Config setting: LogMaxPduBuff        = 4294967295 (0xFFFFFFFF)\n"),
              std::string::npos);
}

TEST(StartUp, EnvironmentReferencesInStringsAreExpanded)
{
    const EnvironmentValue variable("MARVANE_TEST_NAME", "expanded");
    Session session({{"ShortName", "<%MARVANE_TEST_NAME%> %NO_SUCH_VARIABLE_HERE%"}});
    session.Construct();
    EXPECT_NE(session.Log().find("ShortName            = '<expanded> %NO_SUCH_VARIABLE_HERE%'\n"),
              std::string::npos);
}

TEST(StartUp, ADebugLevelKeyEnablesTheRecordsOfTheStartUp)
{
    Session session({{"DbgAPP", "DEBUG1"}, {"DbgDATA", "INFO"}});
    session.Construct();
    const std::string text = session.Diagnostics();
    EXPECT_NE(text.find(":class CConfigData:"), std::string::npos) << text;
    EXPECT_NE(text.find(":CConfigData::ProcessLogLevels:Switched to config file log levls\n"),
              std::string::npos);
    EXPECT_NE(text.find(":logger/logger:"), std::string::npos);
    EXPECT_NE(text.find(":TrimLogFiles:FileName=D-PDU_API_Logger\n"), std::string::npos);
}

TEST(StartUp, WithLogEnabledZeroAndLogNewFileCfgTheLinesOfLogEnabledAreMissing)
{
    Session session({{"LogEnabled", "0"}, {"LogNewFileCfg", "1"}, {"InstalledPath", "."}});
    session.Construct();
    const std::string text = WithoutStamps(session.Log());
    EXPECT_EQ(text.find("LOADING"), std::string::npos);
    EXPECT_EQ(text.find("LOADED:"), std::string::npos);
    EXPECT_EQ(text.find("StandAlone"), std::string::npos);
    EXPECT_EQ(text.find("LOGGER_Initialise<"), std::string::npos);
    EXPECT_TRUE(text.starts_with("{stamp} ########## INITIALISE ##########\n"));
}

TEST(StartUp, AnUnsupportedLogEnabledAnswersEveryCallWithNotConstructed)
{
    Session session({{"LogEnabled", "2"}});
    EXPECT_EQ(session.Construct(), PDU_ERR_PDUAPI_NOT_CONSTRUCTED);
    EXPECT_EQ(session.Api().PDUModuleConnect(1), PDU_ERR_PDUAPI_NOT_CONSTRUCTED);
    EXPECT_TRUE(session.LogNames().empty());
}

} // namespace
} // namespace marvane::testing
