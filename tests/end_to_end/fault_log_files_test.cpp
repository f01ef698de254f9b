// Faults of the log files while the logger runs: calls continue unchanged.
#include <ctime>
#include <fstream>

#include <gtest/gtest.h>

#include "platform/files.h"
#include "tests/support/log_summary.h"
#include "tests/support/process_state.h"
#include "tests/support/session.h"

namespace marvane::testing {
namespace {

const bool OnLinux = platform::PathSeparator == '/';

/// Makes calls and expects that arguments, results and statuses are passed on unchanged.
void ExpectUnchangedCalls(Session& session, UNUM32 count)
{
    session.Fake().TakeCalls();
    session.Fake().Answer = [](const FakeCall& call) {
        *reinterpret_cast<UNUM32*>(static_cast<std::uintptr_t>(call.Arguments[1])) = 4711;
        return PDU_ERR_COMM_PC_TO_VCI_FAILED;
    };
    for (UNUM32 i = 0; i < count; ++i) {
        UNUM32 time = 0;
        ASSERT_EQ(session.Api().PDUGetTimestamp(i, &time), PDU_ERR_COMM_PC_TO_VCI_FAILED);
        ASSERT_EQ(time, 4711u);
    }
    session.Fake().Answer = nullptr;
    const std::vector<SeenCall> calls = session.Fake().TakeCalls();
    ASSERT_EQ(calls.size(), count);
    for (UNUM32 i = 0; i < count; ++i)
        ASSERT_EQ(calls[i].Arguments[0], i);
}

/// Expects that logging resumes after a rotation.
void ExpectLogAgainAfterChange(Session& session)
{
    session.Api().PDUModuleDisconnect(1);
    EXPECT_EQ(session.Logged([&] { session.Api().PDUConnect(1, 2); }),
              "{stamp} + PDUConnect(hMod=0x00000001, hCLL=0x00000002)\n"
              "{stamp} - PDUConnect<PDU_STATUS_NOERROR (0x0000)>\n");
}

const Changes NewFileAtDisconnect = {{"LogNewFileCfg", "1"}, {"LogFileMaxNum", "9"}};

TEST(FaultLogFiles, AFullDiskFromTheStart)
{
    if (!LargestFile::IsInForce())
        GTEST_SKIP() << "this system can't limit the size of files";
    Session session;
    const LargestFile full(0);
    EXPECT_EQ(session.Construct(), PDU_STATUS_NOERROR);
    ExpectUnchangedCalls(session, 200);
    EXPECT_EQ(session.Api().PDUDestruct(), PDU_STATUS_NOERROR);
}

TEST(FaultLogFiles, ADiskThatFillsUpKeepsTheFileAndLoggingResumesWhenThereIsRoom)
{
    if (!LargestFile::IsInForce())
        GTEST_SKIP() << "this system can't limit the size of files";
    Session session({{"LogFileMaxSize", "30000"}, {"LogFileMaxNum", "2"}});
    session.Construct();
    {
        const LargestFile full(15000);
        ExpectUnchangedCalls(session, 500);
        // A file of unknown size must not be changed: that would erase earlier ones.
        EXPECT_EQ(session.LogNames().size(), 1u);
        EXPECT_EQ(std::filesystem::file_size(session.LogFolder() / session.LogNames()[0]), 15000u);
    }
    session.Api().PDUConnect(1, 2);
    EXPECT_TRUE(WithoutStamps(session.Log())
                    .ends_with("{stamp} + PDUConnect(hMod=0x00000001, hCLL=0x00000002)\n"
                               "{stamp} - PDUConnect<PDU_STATUS_NOERROR (0x0000)>\n"));
}

TEST(FaultLogFiles, AFullDiskJustBelowTheSizeLimitErasesNoEarlierLog)
{
    if (!LargestFile::IsInForce())
        GTEST_SKIP() << "this system can't limit the size of files";
    Session session({{"LogFileMaxSize", "15100"}, {"LogFileMaxNum", "1"}});
    std::filesystem::create_directories(session.LogFolder());
    for (const char* day : {"01", "02"})
        WriteFileBytes(session.LogFolder() /
                           ("D-PDU_API_Logger_" + std::string(day) + "-03-2020_10-11-12.LGR"),
                       "earlier\n");
    session.Construct();
    const std::vector<std::string> names = session.LogNames();
    const LargestFile full(15000);
    ExpectUnchangedCalls(session, 500);
    EXPECT_EQ(session.LogNames(), names);
    EXPECT_EQ(names.size(), 3u);
}

TEST(FaultLogFiles, ATextCutByAFullDiskIsFollowedByALineEnd)
{
    if (!LargestFile::IsInForce())
        GTEST_SKIP() << "this system can't limit the size of files";
    Session session;
    session.Construct();
    const std::size_t full = session.Log().size() + 1000;
    {
        const LargestFile limit(full);
        ExpectUnchangedCalls(session, 50);
    }
    session.Api().PDUConnect(1, 2);
    EXPECT_EQ(WithoutStamps(session.Log().substr(full)),
              "\n{stamp} + PDUConnect(hMod=0x00000001, hCLL=0x00000002)\n"
              "{stamp} - PDUConnect<PDU_STATUS_NOERROR (0x0000)>\n");
}

TEST(FaultLogFiles, LoggingResumesWhenARemovedFolderIsBack)
{
    Session session(NewFileAtDisconnect);
    session.Construct();
    std::error_code failed;
    std::filesystem::remove_all(session.LogFolder(), failed);
    if (failed)
        GTEST_SKIP() << "this system does not remove a folder with an open file";
    ExpectUnchangedCalls(session, 10);
    session.Api().PDUModuleDisconnect(1);
    ExpectUnchangedCalls(session, 10);
    std::filesystem::create_directory(session.LogFolder());
    ExpectLogAgainAfterChange(session);
}

TEST(FaultLogFiles, LoggingResumesWhenAReadOnlyFolderIsWritableAgain)
{
    if (!OnLinux)
        GTEST_SKIP() << "this system's read-only folders take new files";
    Session session(NewFileAtDisconnect);
    using std::filesystem::perms;
    std::filesystem::permissions(session.Folder().Path(), perms::all);
    session.Construct();
    std::filesystem::permissions(
        session.LogFolder(), perms::all & ~(perms::owner_write | perms::group_write | perms::others_write));
    {
        const WithoutPrivileges guest;
        const std::string text = session.Logged([&] { session.Api().PDUConnect(1, 2); });
        EXPECT_EQ(text, "{stamp} + PDUConnect(hMod=0x00000001, hCLL=0x00000002)\n"
                        "{stamp} - PDUConnect<PDU_STATUS_NOERROR (0x0000)>\n");
        // Within the second of the start the new file would have the name of the old one, which is writable.
        for (const std::time_t second = std::time(nullptr); std::time(nullptr) == second;)
            continue;
        session.Api().PDUModuleDisconnect(1);
        ExpectUnchangedCalls(session, 10);
    }
    std::filesystem::permissions(session.LogFolder(), perms::all);
    ExpectLogAgainAfterChange(session);
}

TEST(FaultLogFiles, AFileThatCouldNotBeOpenedInARotationIsTriedAgainAtTheNextCheck)
{
    Session session({{"LogNewFileCfg", "1"}});
    using std::filesystem::perms;
    std::filesystem::permissions(session.Folder().Path(), perms::all);
    session.Construct();
    const std::string log = (session.LogFolder() / session.LogNames().at(0)).string();
    SetReadOnly(log, true);
    {
        const WithoutPrivileges guest;
        if (const platform::File file = platform::OpenLogFile(log); file != platform::NoFile) {
            platform::CloseFile(file);
            GTEST_SKIP() << "whoever runs this may write read-only files";
        }
        session.Api().PDUModuleDisconnect(1);
        ExpectUnchangedCalls(session, 10);
    }
    SetReadOnly(log, false);
    const std::string text = session.Logged([&] {
        session.Api().PDUConnect(1, 2);
        session.Api().PDUDisconnect(1, 2);
    });
    EXPECT_TRUE(text.starts_with("{stamp} # PDUConnect - Continuation file\n"
                                 "{stamp} ########## D-PDU API LOGGER VERSION: "))
        << text;
    EXPECT_TRUE(text.ends_with("{stamp} + PDUDisconnect(hMod=0x00000001, hCLL=0x00000002)\n"
                               "{stamp} - PDUDisconnect<PDU_STATUS_NOERROR (0x0000)>\n"))
        << text;
}

TEST(FaultLogFiles, WithoutFreeDescriptorsARotationFailsAndLoggingResumesLater)
{
    Session session(NewFileAtDisconnect);
    session.Construct();
    {
        const NoMoreFiles shortage;
        // Closing the old file frees one descriptor; a second rotation finds none.
        session.Api().PDUModuleDisconnect(1);
        const NoMoreFiles again;
        ExpectUnchangedCalls(session, 100);
        session.Api().PDUModuleDisconnect(1);
        ExpectUnchangedCalls(session, 100);
    }
    ExpectLogAgainAfterChange(session);
}

TEST(FaultLogFiles, WithoutFreeDescriptorsTheStartIsRefusedAndALaterOneWorks)
{
    Session session;
#ifdef MARVANE_SANITIZED
    // A sanitizer opens files when it meets code for the first time: a refused start makes it do so now.
    std::filesystem::remove(session.ConfigurationPath());
    EXPECT_EQ(session.Construct(), PDU_ERR_PDUAPI_NOT_CONSTRUCTED);
    session.Configure({});
#endif
    {
        const NoMoreFiles shortage;
        EXPECT_EQ(session.Construct(), PDU_ERR_PDUAPI_NOT_CONSTRUCTED);
        EXPECT_EQ(session.Api().PDUConnect(1, 2), PDU_ERR_PDUAPI_NOT_CONSTRUCTED);
    }
    EXPECT_EQ(session.Construct(), PDU_STATUS_NOERROR);
    ExpectUnchangedCalls(session, 10);
}

TEST(FaultLogFiles, AFileThatCanNotBeRemovedStaysAndCountsAsErased)
{
    Session session({{"LogFileMaxNum", "3"}});
    std::filesystem::create_directories(session.LogFolder());
    const auto path = [&](const char* day) {
        return session.LogFolder() / ("D-PDU_API_Logger_" + std::string(day) + "-03-2020_10-11-12.LGR");
    };
    for (const char* day : {"01", "02", "03", "04", "05", "06"})
        WriteFileBytes(path(day), day);
    // A file that can't be removed: open on Windows; of another user in a sticky folder like /tmp on Linux.
    const std::ifstream open(path("01"));
    using std::filesystem::perms;
    std::filesystem::permissions(session.Folder().Path(), perms::all);
    std::filesystem::permissions(session.LogFolder(), perms::all | perms::sticky_bit);
    if (OnLinux) {
        const WithoutPrivileges guest;
        std::error_code failed;
        std::filesystem::remove(path("06"), failed);
        if (!failed)
            GTEST_SKIP() << "whoever runs this may remove the files that are his own";
        EXPECT_EQ(session.Construct(), PDU_STATUS_NOERROR);
        EXPECT_EQ(session.LogNames().size(), 7u);
    } else {
        EXPECT_EQ(session.Construct(), PDU_STATUS_NOERROR);
        EXPECT_EQ(session.LogNames().size(), 6u);
    }
    EXPECT_TRUE(std::filesystem::exists(path("01")));
    ExpectUnchangedCalls(session, 10);
}

} // namespace
} // namespace marvane::testing
