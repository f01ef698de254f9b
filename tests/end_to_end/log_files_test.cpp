// The log files: their folders, names, trimming and headers.

#include <gtest/gtest.h>

#include "platform/files.h"
#include "tests/support/pattern.h"
#include "tests/support/session.h"

namespace marvane::testing {
namespace {

const std::string Separator(1, platform::PathSeparator);

/// Creates API log files in a session's log folder, one for each day.
void MakeLogs(const Session& session, std::initializer_list<const char*> days)
{
    std::filesystem::create_directories(session.LogFolder());
    for (const char* day : days)
        WriteFileBytes(
            session.LogFolder() / ("D-PDU_API_Logger_" + std::string(day) + "-03-2020_10-11-12.LGR"), day);
}

std::string Days(const Session& session)
{
    std::string days;
    for (const std::string& name : session.LogNames())
        if (name.find("-03-2020_10-11-12.LGR") != std::string::npos)
            days += name.substr(17, 2) + " ";
    return days;
}

TEST(LogFiles, ANameHoldsTheSecondInWhichTheFileBegan)
{
    Session session;
    session.Construct();
    ASSERT_EQ(session.LogNames().size(), 1u);
    EXPECT_TRUE(
        HasForm(session.LogNames()[0],
                "D-PDU_API_Logger_[0-3][0-9]-[01][0-9]-20[0-9][0-9]_[0-2][0-9]-[0-5][0-9]-[0-5][0-9]\\.LGR"))
        << session.LogNames()[0];
}

TEST(LogFiles, AFolderWithASeparatorAtItsEndHasTheCommsFileInside)
{
    Session session({{"LogDoIPComms", "1"}, {"LogCommsFile", "1"}});
    session.Configure({{"LogFileDir", session.LogFolder().string() + Separator},
                       {"LogDoIPComms", "1"},
                       {"LogCommsFile", "1"}});
    session.Construct();
    EXPECT_EQ(session.LogNames().size(), 1u);
    EXPECT_EQ(session.LogNames("D-PDU_API_Comms_").size(), 1u);
}

TEST(LogFiles, AFolderAndItsMissingParentsAreCreated)
{
    Session session;
    const auto folder = session.LogFolder() / "deep" / "deeper";
    session.Configure({{"LogFileDir", folder.string()}});
    EXPECT_EQ(session.Construct(), PDU_STATUS_NOERROR);
    EXPECT_TRUE(std::filesystem::is_directory(folder));
}

/// Names of the comms files in the log folder after a start that finds three of them.
std::vector<std::string> CommsNamesAfterStart(const char* logCommsFile, const char* logDoIPComms)
{
    Session session;
    session.Configure({{"LogFileDir", session.LogFolder().string() + Separator},
                       {"LogFileMaxNum", "1"},
                       {"LogCommsFile", logCommsFile},
                       {"LogDoIPComms", logDoIPComms}});
    std::filesystem::create_directories(session.LogFolder());
    for (const char* day : {"01", "02", "03"})
        WriteFileBytes(
            session.LogFolder() / ("D-PDU_API_Comms_" + std::string(day) + "-03-2020_10-11-12.LGR"), "");
    EXPECT_EQ(session.Construct(), PDU_STATUS_NOERROR);
    EXPECT_EQ(session.LogNames().size(), 1u);
    return session.LogNames("D-PDU_API_Comms_");
}

TEST(LogFiles, WithLogCommsFileOneAndLogDoIPCommsZeroCommsFilesAreTrimmedAndNoneIsOpened)
{
    EXPECT_EQ(CommsNamesAfterStart("1", "0"),
              (std::vector<std::string>{"D-PDU_API_Comms_02-03-2020_10-11-12.LGR",
                                        "D-PDU_API_Comms_03-03-2020_10-11-12.LGR"}));
}

const std::vector<std::string> UntouchedCommsNames = {"D-PDU_API_Comms_01-03-2020_10-11-12.LGR",
                                                      "D-PDU_API_Comms_02-03-2020_10-11-12.LGR",
                                                      "D-PDU_API_Comms_03-03-2020_10-11-12.LGR"};

TEST(LogFiles, WithLogCommsFileTwoCommsFilesAreNeitherTrimmedNorOpened)
{
    EXPECT_EQ(CommsNamesAfterStart("2", "1"), UntouchedCommsNames);
}

TEST(LogFiles, WithLogCommsFile256CommsFilesAreNeitherTrimmedNorOpened)
{
    EXPECT_EQ(CommsNamesAfterStart("256", "1"), UntouchedCommsNames);
}

TEST(LogFiles, LoggingGoesOnWithoutACommsFileThatCanNotBeOpened)
{
    // The sole API file is reused. There is no comms file to reuse, so the comms path is that of the folder.
    Session session({{"LogDoIPComms", "1"}, {"LogCommsFile", "1"}});
    MakeLogs(session, {"05"});
    EXPECT_EQ(session.Construct(), PDU_STATUS_NOERROR);
    EXPECT_EQ(Days(session), "05 ");
    EXPECT_TRUE(session.LogNames("D-PDU_API_Comms_").empty());
}

TEST(LogFiles, AFolderThatIsRemovedIsNotCreatedAgain)
{
    Session session;
    session.Construct();
    session.Api().PDUDestruct();
    std::filesystem::remove_all(session.LogFolder());
    EXPECT_EQ(session.Construct(), PDU_ERR_PDUAPI_NOT_CONSTRUCTED);
    EXPECT_FALSE(std::filesystem::exists(session.LogFolder()));
}

TEST(Trimming, TheLimitIsOneMoreThanLogFileMaxNum)
{
    Session four({{"LogFileMaxNum", "3"}});
    MakeLogs(four, {"01", "02", "03", "04"});
    four.Construct();
    EXPECT_EQ(Days(four), "01 02 03 04 ");
    EXPECT_EQ(four.LogNames().size(), 5u);
}

TEST(Trimming, OneFileAboveTheLimitIsErased)
{
    Session five({{"LogFileMaxNum", "3"}});
    MakeLogs(five, {"01", "02", "03", "04", "05"});
    five.Construct();
    EXPECT_EQ(Days(five), "02 03 04 05 ");
}

TEST(Trimming, TwoFilesAboveTheLimitAreErased)
{
    Session six({{"LogFileMaxNum", "3"}});
    MakeLogs(six, {"01", "02", "03", "04", "05", "06"});
    six.Construct();
    EXPECT_EQ(Days(six), "03 04 05 06 ");
}

TEST(Trimming, WithLogFileMaxNumZeroTheFileWithTheLastNameIsAppendedTo)
{
    Session session;
    MakeLogs(session, {"07", "09", "08"});
    session.Construct();
    EXPECT_EQ(Days(session), "09 ");
    EXPECT_EQ(session.LogNames().size(), 1u);
    EXPECT_TRUE(WithoutStamps(session.Log()).starts_with("09{stamp} ########## INITIALISE ##########\n"));
}

TEST(Trimming, NamesThatMerelyResembleThePatternAreNotCounted)
{
    Session session({{"LogFileMaxNum", "1"}});
    MakeLogs(session, {"01", "02"});
    for (const char* name : {"D-PDU_API_Logger_01-03-2020_10-11-12.TXT", "D-PDU_API_Logger_1-3-20_1-1-1.LGR",
                             "Other_01-03-2020_10-11-12.LGR"})
        WriteFileBytes(session.LogFolder() / name, "");
    session.Construct();
    EXPECT_EQ(Days(session), "01 02 ");
    EXPECT_TRUE(std::filesystem::exists(session.LogFolder() / "Other_01-03-2020_10-11-12.LGR"));
    EXPECT_TRUE(std::filesystem::exists(session.LogFolder() / "D-PDU_API_Logger_01-03-2020_10-11-12.TXT"));
}

TEST(Trimming, AnyCharactersMatchThoseOfTheDateAndTime)
{
    Session session({{"LogFileMaxNum", "1"}});
    MakeLogs(session, {"01", "02"});
    WriteFileBytes(session.LogFolder() / "D-PDU_API_Logger_ab-cd-efgh_ij-kl-mn.LGR", "");
    session.Construct();
    EXPECT_EQ(Days(session), "02 ");
    EXPECT_TRUE(std::filesystem::exists(session.LogFolder() / "D-PDU_API_Logger_ab-cd-efgh_ij-kl-mn.LGR"));
}

TEST(Trimming, AFolderWhoseNameMatchesIsNotCounted)
{
    Session session({{"LogFileMaxNum", "1"}});
    MakeLogs(session, {"02", "03"});
    std::filesystem::create_directory(session.LogFolder() / "D-PDU_API_Logger_01-03-2020_10-11-12.LGR");
    session.Construct();
    EXPECT_EQ(Days(session), "01 02 03 ");
}

TEST(Trimming, AFolderWhoseNameMatchesIsNoSoleFile)
{
    Session session;
    std::filesystem::create_directories(session.LogFolder() / "D-PDU_API_Logger_01-03-2020_10-11-12.LGR");
    EXPECT_EQ(session.Construct(), PDU_STATUS_NOERROR);
    EXPECT_EQ(session.LogNames().size(), 2u);
}

TEST(Trimming, TheLargestLogFileMaxNumErasesEveryFile)
{
    Session session({{"LogFileMaxNum", "-1"}});
    MakeLogs(session, {"01", "02"});
    session.Construct();
    EXPECT_EQ(Days(session), "");
    EXPECT_EQ(session.LogNames().size(), 1u);
}

TEST(Trimming, InARotationTheFileJustClosedIsErasedFirstIfItsNameIsTheLowest)
{
    Session session({{"LogNewFileCfg", "1"}, {"LogFileMaxNum", "1"}});
    MakeLogs(session, {"98", "99"});
    session.Construct();
    ASSERT_EQ(session.LogNames().size(), 3u);
    session.Api().PDUModuleDisconnect(1);
    EXPECT_EQ(Days(session), "98 99 ");
    ASSERT_EQ(session.LogNames().size(), 3u);
    const std::string text = WithoutStamps(FileText(session.LogFolder() / session.LogNames().front()));
    EXPECT_TRUE(text.starts_with("{stamp} # PDUModuleDisconnect - Continuation file\n")) << text;
}

TEST(Trimming, CommsFilesBesideTheFolderAreNeverTrimmed)
{
    Session session({{"LogFileMaxNum", "-1"}, {"LogDoIPComms", "1"}, {"LogCommsFile", "1"}});
    const auto beside = session.Folder().Path() / "logsD-PDU_API_Comms_01-03-2020_10-11-12.LGR";
    WriteFileBytes(beside, "");
    session.Construct();
    EXPECT_TRUE(std::filesystem::exists(beside));
}

TEST(Header, AWholeFirstHeader)
{
    Session session({{"LogFlush", "1"}, {"ShortName", "bench 'A'"}});
    session.Construct();
    const std::string text = WithoutStamps(session.Log());
    const std::string folder = BuildFolder();
    const std::string expected =
        "{stamp} ########## INITIALISE ##########\n"
        "{stamp} ########## D-PDU API LOGGER VERSION: R01.000.0000.0000 ##########\n"
        "{stamp} LogHeader{Loaded=0}\n"
        "{stamp} Config setting: LogEnabled           =         1 (0x00000001)\n"
        "{stamp} Config setting: LogFileMaxSize       =         0 (0x00000000)\n"
        "{stamp} Config setting: LogFileMaxNum        =         0 (0x00000000)\n"
        "{stamp} Config setting: LogFlush             =         1 (0x00000001)\n"
        "{stamp} Config setting: LogFnCalls           =         2 (0x00000002)\n"
        "{stamp} Config setting: LogFnDecodeArgs      =         0 (0x00000000)\n"
        "{stamp} Config setting: LogFnDecodeRsps      =         0 (0x00000000)\n"
        "{stamp} Config setting: LogCbCalls           =         0 (0x00000000)\n"
        "{stamp} Config setting: LogCallOuts          =         0 (0x00000000)\n"
        "{stamp} Config setting: LogDoIPComms         =         0 (0x00000000)\n"
        "{stamp} Config setting: LogCommsFile         =         0 (0x00000000)\n"
        "{stamp} Config setting: LogMaxPduBuff        =        32 (0x00000020)\n"
        "{stamp} Config setting: LogNewFileCfg        =         0 (0x00000000)\n"
        "{stamp} Config setting: AppendLog            =         0 (0x00000000)\n"
        "{stamp} Config setting: CustomerDoIPSupport  =         0 (0x00000000)\n"
        "{stamp} Config setting: CustomerNRCHandling  =         0 (0x00000000)\n"
        "{stamp} Config setting: CustomerAPIHandling  =         0 (0x00000000)\n"
        "{stamp} Config setting: CustomerCLLEvtQTO    =         0 (0x00000000)\n"
        "{stamp} Config setting: CustomerPDUStartCommReconRet =         0 (0x00000000)\n"
        "{stamp} Config setting: CustomerPDUConnectReconRet =         0 (0x00000000)\n"
        "{stamp} Config setting: DoIPReconnectDefTO   =         0 (0x00000000)\n"
        "{stamp} Config setting: DoIPFilterNetworks   =         0 (0x00000000)\n"
        "{stamp} Config setting: DoIPTlsRecordSizeLimit =         0 (0x00000000)\n"
        "{stamp} Config setting: LogTlsSessionKey     =         0 (0x00000000)\n"
        "{stamp} Config setting: InstalledPath        = '" +
        folder +
        "'\n"
        "{stamp} Config setting: ShortName            = 'bench 'A''\n"
        "{stamp} Config setting: Version              = ''\n"
        "{stamp} Config setting: TargetCustomer       = ''\n"
        "{stamp} Config setting: InstallationType     = ''\n"
        "{stamp} Config setting: PDUAPILibDll         = '" +
        LibraryName("fake_target") +
        "'\n"
        "{stamp} Config setting: DoIPEntityKey        = ''\n"
        "{stamp} Config setting: DbgGENERAL           = ''\n"
        "{stamp} Config setting: DbgAPP               = ''\n"
        "{stamp} Config setting: DbgCLL               = ''\n"
        "{stamp} Config setting: DbgCOMMS             = ''\n"
        "{stamp} Config setting: DbgCOMPARAM          = ''\n"
        "{stamp} Config setting: DbgCOP               = ''\n"
        "{stamp} Config setting: DbgDATA              = ''\n"
        "{stamp} Config setting: DbgEXCEPT            = ''\n"
        "{stamp} Config setting: DbgMODULE            = ''\n"
        "{stamp} Config setting: DbgPRTCL             = ''\n"
        "{stamp} Config setting: DbgPRTCLAPP          = ''\n"
        "{stamp} Config setting: DbgPRTCLPHY          = ''\n"
        "{stamp} Config setting: DbgPRTCLTRANS        = ''\n"
        "{stamp} Config setting: DbgTIMER             = ''\n"
        "{stamp} Config setting: DbgTSTRPRS           = ''\n"
        "{stamp} Config setting: DbgUSER1             = ''\n"
        "{stamp} Config setting: DbgVCI               = ''\n"
        "{stamp} Config setting: DbgVEHRX             = ''\n"
        "{stamp} Config setting: DbgVEHTX             = ''\n"
        "{stamp} Config setting: InternalLogFile      = ''\n"
        "{stamp} Config setting: InternalLogDir       = ''\n"
        "{stamp} Config setting: DoIPTlsPemCertificateFilePath = ''\n"
        "{stamp} Config setting: DoIPTlsPemCertificateHashFolderPath = ''\n"
        "{stamp} Config setting: LogFileDir=" +
        session.LogFolder().string() +
        "\n"
        "{stamp}    -->  LOADING: DLL = \"" +
        folder + LibraryName("fake_target") +
        "\"\n"
        "{stamp}    <--  LOADED:  Version 'R04.003.0002.0001' of '" +
        folder + LibraryName("fake_target") +
        "'\n"
        "{stamp} - LOGGER_Initialise<PDU_STATUS_NOERROR (0x0000)>\n"
        "{stamp} + PDUConstruct(OptionStr= \"<NULL STRING>\", pAPITag= " +
        PointerText(nullptr) +
        ")\n"
        "{stamp} - PDUConstruct<PDU_STATUS_NOERROR (0x0000)>\n";
    EXPECT_EQ(text, expected);
}

TEST(Header, LogEngineeringModeHasALineOnlyWhenItIsNotZero)
{
    Session session({{"LogEngineeringMode", "3"}});
    session.Construct();
    EXPECT_NE(session.Log().find("Config setting: LogEngineeringMode   =         3 (0x00000003)\n"),
              std::string::npos);
}

TEST(Header, WithLogEnabledZeroAContinuationHeaderEndsAfterTheFolder)
{
    Session session(
        {{"LogEnabled", "0"}, {"LogNewFileCfg", "1"}, {"LogFileMaxSize", "1"}, {"LogFileMaxNum", "5"}});
    session.Construct();
    const std::string text = session.Logged([&] { session.Api().PDUModuleConnect(1); });
    EXPECT_TRUE(text.ends_with("Config setting: LogFileDir=" + session.LogFolder().string() + "\n")) << text;
}

TEST(Header, LongValuesEndTheHeaderWithOneMarker)
{
    Session session;
    std::string text = "<?xml?>\n<D_PDU_API_CFG>\n";
    for (const StringKeyName& key : StringKeyNames)
        text += "<Attribute Name=\"" + std::string(key.Name) + "\" Type=\"String\" Value=\"" +
                std::string(800, 'v') + "\"/>\n";
    text += "<Attribute Name=\"LogEnabled\" Type=\"UNUM32\" Value=\"1\"/>\n"
            "<Attribute Name=\"LogFlush\" Type=\"UNUM32\" Value=\"1\"/>\n"
            "<Attribute Name=\"LogFileDir\" Type=\"String\" Value=\"" +
            session.LogFolder().string() + "\"/>\n</D_PDU_API_CFG>\n";
    session.ConfigureText(text);
    session.Construct();
    const std::string log = session.Log();
    const std::size_t marker = log.find("\t\t\t\t...\n");
    ASSERT_NE(marker, std::string::npos);
    EXPECT_EQ(log.find("\t\t\t\t...\n", marker + 1), std::string::npos);
    EXPECT_EQ(log.find("LogFileDir="), std::string::npos);
}

} // namespace
} // namespace marvane::testing
