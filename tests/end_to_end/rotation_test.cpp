// Rotation: the change of the log file.
#include <algorithm>

#include <gtest/gtest.h>

#include "tests/support/session.h"

namespace marvane::testing {
namespace {

/// Restarts with a size limit that the log reaches after that start and one call, plus `more` bytes.
std::string LoggedAtLimit(Session& session, int more)
{
    const auto call = [&] { session.Api().PDUConnect(1, 2); };
    const auto configureLimit = [&](std::size_t limit) {
        session.Configure({{"LogFileMaxSize", std::to_string(limit)}, {"LogFileMaxNum", "9"}});
    };
    const auto size = [&] { return FileBytes(session.LogFolder() / session.LogNames().back()).size(); };
    const auto growth = [&](const std::function<void()>& action) {
        const std::size_t before = size();
        action();
        return size() - before;
    };
    configureLimit(99999999);
    session.Construct(); // Its header has the versions, as all later ones have; the first one does not.
    const std::size_t added = growth([&] { session.Construct(); }) + growth(call);
    configureLimit(static_cast<std::size_t>(static_cast<int>(size() + added) + more));
    session.Construct();
    return session.Logged(call);
}

TEST(Rotation, AFileOfExactlyTheLimitIsNotChanged)
{
    Session session;
    session.Construct();
    EXPECT_EQ(LoggedAtLimit(session, 0), "{stamp} + PDUConnect(hMod=0x00000001, hCLL=0x00000002)\n"
                                         "{stamp} - PDUConnect<PDU_STATUS_NOERROR (0x0000)>\n");
}

TEST(Rotation, OneByteAboveTheLimitTheFileChangesAfterTheWholeCall)
{
    Session session;
    session.Construct();
    const std::string text = LoggedAtLimit(session, -1);
    EXPECT_TRUE(text.starts_with("{stamp} + PDUConnect(hMod=0x00000001, hCLL=0x00000002)\n"
                                 "{stamp} - PDUConnect<PDU_STATUS_NOERROR (0x0000)>\n"
                                 "{stamp} # PDUConnect - Changing log file\n"
                                 "{stamp} # PDUConnect - Continuation file\n"
                                 "{stamp} ########## D-PDU API LOGGER VERSION: "))
        << text;
}

TEST(Rotation, WithLogFileMaxNumZeroTheSizeDoesNotCount)
{
    Session session({{"LogFileMaxSize", "1"}});
    session.Construct();
    EXPECT_EQ(session.Logged([&] { session.Api().PDUModuleConnect(1); }),
              "{stamp} + PDUModuleConnect(hMod=0x00000001)\n"
              "{stamp} - PDUModuleConnect<PDU_STATUS_NOERROR (0x0000)>\n");
}

TEST(Rotation, EveryCallChangesTheFileWhenTheLimitIsOneByte)
{
    Session session({{"LogFileMaxSize", "1"}, {"LogFileMaxNum", "3"}});
    session.Construct();
    const std::string text = session.Logged([&] { session.Api().PDUModuleConnect(1); });
    EXPECT_NE(text.find("{stamp} # PDUModuleConnect - Changing log file\n"), std::string::npos);
    EXPECT_NE(text.find("{stamp} # PDUModuleConnect - Continuation file\n"), std::string::npos);
}

TEST(Rotation, TheHeaderOfAContinuationFileIsComplete)
{
    Session session({{"LogFileMaxSize", "1"}, {"LogFileMaxNum", "3"}});
    session.Construct();
    const std::string text = session.Logged([&] { session.Api().PDUModuleConnect(1); });
    EXPECT_NE(text.find("{stamp} LogHeader{Loaded=1}\n"), std::string::npos);
    const std::string end = "{stamp} Config setting: LogFileDir=" + session.LogFolder().string() +
                            "\n"
                            "{stamp}    <--  LOADED:  Version 'R04.003.0002.0001' of '" +
                            session.TargetPath() + LibraryName("fake_target") + "'\n";
    EXPECT_TRUE(text.ends_with(end)) << text;
}

TEST(Rotation, AfterACallThatWritesNothingItsLinesHaveTheTimeOfTheChange)
{
    Session session({{"LogFnCalls", "0"}, {"LogFileMaxSize", "1"}, {"LogFileMaxNum", "3"}});
    session.Construct();
    session.Api().PDUConnect(1, 2);
    session.Api().PDUDestruct();
    const std::string log = session.Log();
    EXPECT_EQ(log.find("{00:00:00.000 - "), std::string::npos) << log;
    EXPECT_NE(log.find("# PDUConnect - Changing log file\n"), std::string::npos) << log;
}

TEST(Rotation, WithLoggingOffBothLimitsHaveNoEffect)
{
    Session session({{"LogEnabled", "0"}, {"LogFileMaxSize", "1"}, {"LogFileMaxNum", "3"}});
    EXPECT_EQ(session.Construct(), PDU_STATUS_NOERROR);
    EXPECT_EQ(session.Api().PDUModuleConnect(1), PDU_STATUS_NOERROR);
    EXPECT_FALSE(std::filesystem::exists(session.LogFolder()));
}

TEST(Rotation, IfAFileCanNotBeReopenedLinesAreDropped)
{
    Session session({{"LogFileMaxSize", "1"}, {"LogFileMaxNum", "3"}});
    session.Construct();
    std::error_code failed;
    std::filesystem::remove_all(session.LogFolder(), failed);
    if (failed)
        GTEST_SKIP() << "this system does not remove a folder with an open file";
    EXPECT_EQ(session.Api().PDUModuleConnect(1), PDU_STATUS_NOERROR);
    EXPECT_EQ(session.Api().PDUModuleConnect(1), PDU_STATUS_NOERROR);
    EXPECT_EQ(session.Api().PDUDestruct(), PDU_STATUS_NOERROR);
    EXPECT_FALSE(std::filesystem::exists(session.LogFolder()));
}

TEST(Rotation, ModuleDisconnectChangesTheFileWithLogNewFileCfg)
{
    Session session({{"LogNewFileCfg", "1"}, {"LogFileMaxNum", "5"}});
    session.Construct();
    session.Fake().Answer = [](const FakeCall&) { return PDU_ERR_INVALID_HANDLE; };
    const std::string text = session.Logged([&] { session.Api().PDUModuleDisconnect(1); });
    EXPECT_TRUE(text.starts_with("{stamp} + PDUModuleDisconnect(hMod=0x00000001)\n"
                                 "{stamp} - PDUModuleDisconnect<PDU_ERR_INVALID_HANDLE (0x0060)>\n"
                                 "{stamp} # PDUModuleDisconnect - Changing log file\n"
                                 "{stamp} # PDUModuleDisconnect - Continuation file\n"
                                 "{stamp} ########## D-PDU API LOGGER VERSION: "))
        << text;
}

TEST(Rotation, ModuleConnectDoesNotChangeTheFile)
{
    Session session({{"LogNewFileCfg", "1"}, {"LogFileMaxNum", "5"}});
    session.Construct();
    EXPECT_EQ(session.Logged([&] { session.Api().PDUModuleConnect(1); }),
              "{stamp} + PDUModuleConnect(hMod=0x00000001)\n"
              "{stamp} - PDUModuleConnect<PDU_STATUS_NOERROR (0x0000)>\n");
}

TEST(Rotation, ModuleDisconnectChangesTheFileEvenWithLogFnCallsZero)
{
    Session session({{"LogNewFileCfg", "1"}, {"LogFnCalls", "0"}, {"LogFileMaxNum", "5"}});
    session.Construct();
    const std::string text = session.Logged([&] { session.Api().PDUModuleDisconnect(1); });
    EXPECT_TRUE(text.starts_with("{stamp} # PDUModuleDisconnect - Changing log file\n"
                                 "{stamp} # PDUModuleDisconnect - Continuation file\n"));
}

TEST(Rotation, LogNewFileCfgWithoutLogEnabledForcesNoNewFile)
{
    Session session({{"LogNewFileCfg", "1"}, {"LogEnabled", "0"}});
    session.Construct();
    EXPECT_EQ(session.Logged([&] { session.Api().PDUModuleDisconnect(1); }),
              "{stamp} + PDUModuleDisconnect(hMod=0x00000001)\n"
              "{stamp} - PDUModuleDisconnect<PDU_STATUS_NOERROR (0x0000)>\n");
}

TEST(Rotation, TwoRotationsInOneSecondAppendToOneFile)
{
    Session session({{"LogFileMaxSize", "1"}, {"LogFileMaxNum", "100000"}});
    session.Construct();
    // Repeated until two rotations have happened in one second.
    std::size_t files = 0;
    do {
        files = session.LogNames().size();
        session.Api().PDUModuleConnect(1);
    } while (session.LogNames().size() != files);
    const std::string text = WithoutStamps(FileText(session.LogFolder() / session.LogNames().back()));
    EXPECT_NE(text.find("{stamp} + PDUModuleConnect(hMod=0x00000001)\n"
                        "{stamp} - PDUModuleConnect<PDU_STATUS_NOERROR (0x0000)>\n"
                        "{stamp} # PDUModuleConnect - Changing log file\n"
                        "{stamp} # PDUModuleConnect - Continuation file\n"),
              std::string::npos)
        << text;
}

TEST(Rotation, AtTheShutdownTheClosingLineGoesToTheNewFile)
{
    Session session({{"LogFileMaxSize", "1"}, {"LogFileMaxNum", "9"}});
    session.Construct();
    const std::string text = session.Logged([&] { session.Api().PDUDestruct(); });
    EXPECT_TRUE(text.starts_with("{stamp} + PDUDestruct()\n"
                                 "{stamp} - PDUDestruct<PDU_STATUS_NOERROR (0x0000)>\n"
                                 "{stamp} + LOGGER_Uninitialise{Loaded=1}\n"
                                 "{stamp} - LOGGER_Uninitialise<PDU_STATUS_NOERROR (0x0000)>\n"
                                 "{stamp} # LOGGER_Uninitialise - Changing log file\n"
                                 "{stamp} # LOGGER_Uninitialise - Continuation file\n"
                                 "{stamp} ########## D-PDU API LOGGER VERSION: "))
        << text;
    EXPECT_TRUE(text.ends_with("{stamp}    <--  LOADED:  Version 'R04.003.0002.0001' of '" +
                               session.TargetPath() + LibraryName("fake_target") +
                               "'\n"
                               "{stamp} # PDUDestruct - Close this log file\n"))
        << text;
}

} // namespace
} // namespace marvane::testing
