// Finding and loading the target library.

#include <gtest/gtest.h>

#include "platform/files.h"
#include "platform/library.h"
#include "tests/support/pattern.h"
#include "tests/support/session.h"

namespace marvane::testing {
namespace {

std::string HeaderOf(const Session& session)
{
    return WithoutStamps(session.Log());
}

TEST(TargetLibrary, ALibraryThatLacksAFunctionLoadsAndItsOthersWork)
{
    Session session({}, "fake_target_no_lock");
    EXPECT_EQ(session.Construct(), PDU_STATUS_NOERROR);
    EXPECT_EQ(session.Api().PDUConnect(1, 2), PDU_STATUS_NOERROR);
}

TEST(TargetLibraryDeathTest, ACallToAMissingFunctionFaults)
{
    Session session({}, "fake_target_no_lock");
    session.Construct();
    EXPECT_DEATH(session.Api().PDULockResource(1, 2, 3), "");
}

TEST(TargetLibrary, ADependencyBesideTheTargetIsFound)
{
    const std::string name =
        platform::PathSeparator == '/' ? "fake_target_dependent.so" : "fake_target_dependent.dll";
    const std::string folder = BuildFolder() + "dependent" + platform::PathSeparator;
    Session session({{"InstalledPath", folder}, {"PDUAPILibDll", name}}, "target_of_another_folder");
    EXPECT_EQ(session.Construct(), PDU_STATUS_NOERROR);
    UNUM32 time = 0;
    EXPECT_EQ(session.Api().PDUGetTimestamp(1, &time), PDU_STATUS_NOERROR);
    EXPECT_EQ(time, 4711u);
}

TEST(TargetLibrary, AMissingLibraryGivesNotConstructedAndALineForEachCall)
{
    Session session({}, "no_such_library");
    EXPECT_EQ(session.Construct(), PDU_ERR_PDUAPI_NOT_CONSTRUCTED);
    const std::string path = BuildFolder() + LibraryName("no_such_library");
    EXPECT_TRUE(HeaderOf(session).ends_with("{stamp}    -->  LOADING: DLL = \"" + path +
                                            "\"\n"
                                            "{stamp}    <--  LOADING:  Failed to load - '" +
                                            path +
                                            "'\n"
                                            "{stamp} - LOGGER_Initialise<PDU_STATUS_NOERROR (0x0000)>\n"
                                            "{stamp} PDUConstruct - Called but library not loaded!\n"))
        << HeaderOf(session);
}

TEST(TargetLibrary, AFileThatIsNoLibraryIsAFailedLoad)
{
    Session session({}, "no_such_library");
    WriteFileBytes(session.Folder().Path() / "text.so", "no library at all");
    session.Configure({{"InstalledPath", session.Folder().Path().string() + platform::PathSeparator},
                       {"PDUAPILibDll", "text.so"}});
    EXPECT_EQ(session.Construct(), PDU_ERR_PDUAPI_NOT_CONSTRUCTED);
}

TEST(TargetLibrary, TheLoggerItselfAsTargetIsAFailedLoad)
{
    Session session({}, "Marvane");
    EXPECT_EQ(session.Construct(), PDU_ERR_PDUAPI_NOT_CONSTRUCTED);
    EXPECT_TRUE(HeaderOf(session).ends_with("{stamp} PDUConstruct - Called but library not loaded!\n"));
}

TEST(TargetLibrary, WithAnUnsupportedLogEnabledAFailedLoadShowsPathAndReason)
{
    // Only an unsupported LogEnabled writes these lines, and LogNewFileCfg must keep logging active.
    Session session({}, "no_such_library");
    session.Construct();
    session.Configure({{"LogEnabled", "2"}, {"LogNewFileCfg", "1"}, {"LogFnDecodeRsps", "1"}});
    const std::string text = session.Logged([&] { session.Construct(); });
    const std::string path = BuildFolder() + LibraryName("no_such_library");
    EXPECT_NE(text.find("{stamp}    -->  Unsupported LogEnabled=2 setting\n"), std::string::npos) << text;
    EXPECT_NE(
        text.find("{stamp}    <--  LOAD FAILURE: Unable to load " + path + "\n\t\t\t\t\tDescription:- "),
        std::string::npos)
        << text;
    EXPECT_NE(text.find("{stamp}    <--  DLL Load *FAILED*\n"
                        "{stamp} - LOGGER_Initialise<PDU_STATUS_NOERROR (0x0000)>\n"),
              std::string::npos)
        << text;
}

TEST(TargetLibrary, AnEmptyPathIsAFailedLoadAndIsShownEmpty)
{
    // With this value of LogEnabled no path is composed.
    Session session({{"LogEnabled", "2"}, {"LogNewFileCfg", "1"}, {"LogFnDecodeRsps", "1"}});
    EXPECT_EQ(session.Construct(), PDU_ERR_PDUAPI_NOT_CONSTRUCTED);
    const std::string reason = platform::LoadTargetLibrary("").Error;
    EXPECT_FALSE(reason.empty());
    EXPECT_TRUE(HeaderOf(session).ends_with("{stamp}    -->  Unsupported LogEnabled=2 setting\n"
                                            "{stamp}    <--  LOADING:  Failed to load - ''\n"
                                            "{stamp}    <--  LOAD FAILURE: Unable to load \n"
                                            "\t\t\t\t\tDescription:- " +
                                            reason +
                                            "\n"
                                            "{stamp}    <--  DLL Load *FAILED*\n"
                                            "{stamp} - LOGGER_Initialise<PDU_STATUS_NOERROR (0x0000)>\n"
                                            "{stamp} PDUConstruct - Called but library not loaded!\n"))
        << HeaderOf(session);
}

TEST(TargetLibrary, WithAnUnsupportedLogEnabledLoadingAndUnloadingAreLogged)
{
    // The path of the first start is kept, so the second start loads although it composes none.
    Session session;
    session.Construct();
    session.Api().PDUDestruct();
    session.Configure(
        {{"LogEnabled", "2"}, {"LogNewFileCfg", "1"}, {"LogFnDecodeArgs", "1"}, {"LogFnDecodeRsps", "1"}});
    const std::string start = session.Logged([&] { EXPECT_EQ(session.Construct(), PDU_STATUS_NOERROR); });
    const std::size_t at = start.find("{stamp}    -->  Unsupported LogEnabled=2 setting\n");
    ASSERT_NE(at, std::string::npos) << start;
    EXPECT_EQ(ReplaceMatches(start.substr(at), "Loaded @ +[0-9A-Fa-fx]+\n", "Loaded @ pointer\n"),
              "{stamp}    -->  Unsupported LogEnabled=2 setting\n"
              "{stamp}    <--  LOADED:  Version 'R04.003.0002.0001' of '" +
                  BuildFolder() + LibraryName("fake_target") +
                  "'\n"
                  "{stamp}    <--  DLL Loaded @ pointer\n"
                  "{stamp} - LOGGER_Initialise<PDU_STATUS_NOERROR (0x0000)>\n"
                  "{stamp} + PDUConstruct(OptionStr= \"<NULL STRING>\", pAPITag= " +
                  PointerText(nullptr) +
                  ")\n"
                  "{stamp} - PDUConstruct<PDU_STATUS_NOERROR (0x0000)>\n");
    EXPECT_EQ(session.Logged([&] { session.Api().PDUDestruct(); }),
              "{stamp} + PDUDestruct()\n"
              "{stamp} - PDUDestruct<PDU_STATUS_NOERROR (0x0000)>\n"
              "{stamp} + LOGGER_Uninitialise{Loaded=1}\n"
              "{stamp}    -->  Deleting DLL\n"
              "{stamp}    <--  DLL Deleted\n"
              "{stamp} - LOGGER_Uninitialise<PDU_STATUS_NOERROR (0x0000)>\n"
              "{stamp} # PDUDestruct - Close this log file\n");
}

TEST(TargetLibrary, AfterDestructTheFunctionsOfAnotherTargetAreLookedUp)
{
    Session session;
    Target other(BuildFolder() + LibraryName("fake_target_no_log"));
    session.Construct();
    session.Api().PDUDestruct();
    session.Fake().TakeCalls();
    session.Configure({{"PDUAPILibDll", LibraryName("fake_target_no_log")}});
    EXPECT_EQ(session.Construct(), PDU_STATUS_NOERROR);
    session.Api().PDUConnect(1, 2);
    session.Api().PDUDestruct();
    EXPECT_EQ(other.TakeNames(), "PDUConstruct PDUConnect PDUDestruct");
    EXPECT_EQ(session.Fake().TakeNames(), "");
}

TEST(TargetLibrary, TheLoggersOwnNameIsExplainedInTheReason)
{
    Session session({}, "Marvane");
    session.Construct();
    session.Configure({{"LogEnabled", "2"}, {"LogNewFileCfg", "1"}, {"LogFnDecodeRsps", "1"}});
    EXPECT_NE(session.Logged([&] { session.Construct(); }).find("this is the logger library itself"),
              std::string::npos);
}

TEST(TargetLibrary, CallsOfTheTargetToItselfDoNotComeBackThroughTheLogger)
{
#ifdef MARVANE_SANITIZED
    GTEST_SKIP() << "sanitizers forbid the deep binding that this needs";
#endif
    Session session({}, "fake_target_self");
    session.Construct();
    session.Fake().TakeCalls();
    EXPECT_EQ(session.Logged([&] { session.Api().PDULockResource(1, 2, 3); }),
              "{stamp} + PDULockResource(hMod=0x00000001, hCLL=0x00000002, LockMask=3)\n"
              "{stamp} - PDULockResource<PDU_STATUS_NOERROR (0x0000)>\n");
    EXPECT_EQ(session.Fake().TakeNames(), "PDUGetTimestamp PDULockResource");
}

TEST(LibraryPath, AStandAloneTargetIsFoundBesideTheLogger)
{
    Session session({{"InstalledPath", "."}});
    EXPECT_EQ(session.Construct(), PDU_STATUS_NOERROR);
    const std::string path = BuildFolder() + LibraryName("fake_target");
    EXPECT_NE(HeaderOf(session).find("{stamp}    -->  StandAlone installation\n"
                                     "{stamp}    -->  LOADING: DLL = \"" +
                                     path + "\"\n"),
              std::string::npos)
        << HeaderOf(session);
}

TEST(LibraryPath, WithoutATrailingSeparatorTheNameIsAppendedDirectly)
{
    std::string folder = BuildFolder();
    folder.pop_back();
    Session session({{"InstalledPath", folder}});
    EXPECT_EQ(session.Construct(), PDU_ERR_PDUAPI_NOT_CONSTRUCTED);
    EXPECT_NE(HeaderOf(session).find("LOADING: DLL = \"" + folder + LibraryName("fake_target") + "\"\n"),
              std::string::npos);
}

TEST(LibraryPath, ADotWithASeparatorIsARelativePrefixNotTheStandAloneForm)
{
    const std::string prefix = std::string(".") + platform::PathSeparator;
    Session session({{"InstalledPath", prefix}, {"PDUAPILibDll", "no_such_library"}});
    EXPECT_EQ(session.Construct(), PDU_ERR_PDUAPI_NOT_CONSTRUCTED);
    EXPECT_EQ(HeaderOf(session).find("StandAlone installation"), std::string::npos);
    EXPECT_NE(HeaderOf(session).find("LOADING: DLL = \"" + prefix + "no_such_library\"\n"),
              std::string::npos);
}

TEST(LibraryPath, ALongPrefixIsCutAndLeavesNoRoomForTheName)
{
    const std::string prefix(300, 'p');
    Session session({{"InstalledPath", prefix}});
    EXPECT_EQ(session.Construct(), PDU_ERR_PDUAPI_NOT_CONSTRUCTED);
    EXPECT_NE(HeaderOf(session).find("LOADING: DLL = \"" + prefix.substr(0, 260) + "\"\n"),
              std::string::npos);
}

TEST(LibraryPath, AnAbsentFileNameIsReportedAndTheFolderAloneIsTried)
{
    Session session({{"PDUAPILibDll", "-"}});
    EXPECT_EQ(session.Construct(), PDU_ERR_PDUAPI_NOT_CONSTRUCTED);
    EXPECT_NE(HeaderOf(session).find("{stamp} Logger 'PDUAPILibDll' not in config\n"
                                     "{stamp}    -->  LOADING: DLL = \"" +
                                     BuildFolder() + "\"\n"),
              std::string::npos);
}

TEST(LibraryPath, WithoutAFolderTheNameAloneIsTried)
{
    Session session({{"InstalledPath", "-"}, {"PDUAPILibDll", "no_such_library"}});
    EXPECT_EQ(session.Construct(), PDU_ERR_PDUAPI_NOT_CONSTRUCTED);
    EXPECT_NE(HeaderOf(session).find("LOADING: DLL = \"no_such_library\"\n"), std::string::npos);
}

TEST(LibraryVersion, TheProductVersionOfTheTargetIsShown)
{
    Session session;
    session.Construct();
    EXPECT_NE(HeaderOf(session).find("{stamp}    <--  LOADED:  Version 'R04.003.0002.0001' of '" +
                                     BuildFolder() + LibraryName("fake_target") + "'\n"),
              std::string::npos)
        << HeaderOf(session);
}

TEST(LibraryVersion, AFileWithoutAVersionShowsTheFallbackInTheNextHeader)
{
    Session session({{"LogNewFileCfg", "1"}, {"LogFileMaxNum", "5"}}, "no_such_library");
    WriteFileBytes(session.Folder().Path() / "text.so", "no library at all");
    session.Configure({{"InstalledPath", session.Folder().Path().string() + platform::PathSeparator},
                       {"PDUAPILibDll", "text.so"},
                       {"LogFileMaxSize", "1"},
                       {"LogFileMaxNum", "5"}});
    session.Construct();
    const std::string path = (session.Folder().Path() / "text.so").string();
    EXPECT_NE(HeaderOf(session).find("{stamp}    <--  LOADING:  Failed to load - '" + path + "'\n"),
              std::string::npos);
    // The rotation of the start-up writes a complete header.
    EXPECT_NE(HeaderOf(session).find("{stamp}    <--  LOADED:  Version '<UNKNOWN' of '" + path + "'\n"),
              std::string::npos)
        << HeaderOf(session);
}

TEST(LibraryVersion, TheLoggersOwnVersionIsInTheFirstHeader)
{
    Session session;
    session.Construct();
    EXPECT_TRUE(
        HeaderOf(session).starts_with("{stamp} ########## INITIALISE ##########\n"
                                      "{stamp} ########## D-PDU API LOGGER VERSION: R01.000.0000.0000 "
                                      "##########\n"
                                      "{stamp} LogHeader{Loaded=0}\n"))
        << HeaderOf(session);
}

TEST(LibraryVersion, AVersionNotReadWhileLoggingWasOffStaysUnread)
{
    Session session({{"LogEnabled", "0"}});
    session.Construct();
    // Logging is turned on, and the forced rotation opens the first file.
    session.Configure({{"LogNewFileCfg", "1"}});
    session.Construct();
    session.Api().PDUModuleDisconnect(1);
    const std::string text = HeaderOf(session);
    EXPECT_TRUE(
        text.starts_with("{stamp} # PDUModuleDisconnect - Continuation file\n"
                         "{stamp} ########## D-PDU API LOGGER VERSION: R01.000.0000.0000 ##########\n"))
        << text;
    EXPECT_TRUE(text.ends_with("{stamp}    <--  LOADED:  Version '<UNREAD>' of '" + BuildFolder() +
                               LibraryName("fake_target") + "'\n"))
        << text;
}

} // namespace
} // namespace marvane::testing
