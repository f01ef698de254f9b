// The change of the log file.
#include <algorithm>

#include <gtest/gtest.h>

#include "tests/support/session.h"

namespace marvane::testing {
namespace {

/// What a log of one PDUConstruct and one call more is long.
std::size_t LengthAfterOneCall()
{
    Session session({{"LogFileMaxSize", "9999999"}, {"LogFileMaxNum", "9"}});
    session.Construct();
    session.Api().PDUConnect(1, 2);
    return FileBytes(session.LogFolder() / session.LogNames()[0]).size();
}

/// Whether a session with that limit begins a new file with one call.
bool RotatesAt(std::size_t limit, std::string& text)
{
    char number[12];
    std::snprintf(number, sizeof number, "%07u", static_cast<unsigned>(limit));
    Session session({{"LogFileMaxSize", number}, {"LogFileMaxNum", "9"}});
    session.Construct();
    session.Api().PDUConnect(1, 2);
    text = WithoutStamps(session.Log());
    return text.find("# PDUConnect - Changing log file") != std::string::npos;
}

TEST(Rotation, AFileOfExactlyTheLimitStaysAndOneByteMoreChangesIt)
{
    const std::size_t length = LengthAfterOneCall();
    std::string text;
    EXPECT_FALSE(RotatesAt(length, text));
    EXPECT_TRUE(RotatesAt(length - 1, text));
    EXPECT_NE(text.find("{stamp} - PDUConnect<PDU_STATUS_NOERROR (0x0000)>\n"
                        "{stamp} # PDUConnect - Changing log file\n"
                        "{stamp} # PDUConnect - Continuation file\n"
                        "{stamp} ########## D-PDU API LOGGER VERSION: "),
              std::string::npos)
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

TEST(Rotation, TheHeaderOfAContinuationFileRunsToItsEnd)
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

TEST(Rotation, WithLoggingOffBothLimitsDoNothing)
{
    Session session({{"LogEnabled", "0"}, {"LogFileMaxSize", "1"}, {"LogFileMaxNum", "3"}});
    EXPECT_EQ(session.Construct(), PDU_STATUS_NOERROR);
    EXPECT_EQ(session.Api().PDUModuleConnect(1), PDU_STATUS_NOERROR);
    EXPECT_FALSE(std::filesystem::exists(session.LogFolder()));
}

TEST(Rotation, AFileThatCanNotBeReopenedSwallowsWhatFollows)
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

TEST(Rotation, ModuleConnectLeavesTheFileAlone)
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

} // namespace
} // namespace marvane::testing
