// Faults of the level file, the temporary folder and the configuration.
#include <fstream>

#include <gtest/gtest.h>

#include "platform/environment.h"
#include "platform/files.h"
#include "tests/support/child_process.h"
#include "tests/support/process_state.h"
#include "tests/support/session.h"

namespace marvane::testing {
namespace {

const std::string ACall = "{stamp} + PDUConnect(hMod=0x00000001, hCLL=0x00000002)\n"
                          "{stamp} - PDUConnect<PDU_STATUS_NOERROR (0x0000)>\n";

std::string LoggedCall(Session& session)
{
    return session.Logged([&] { session.Api().PDUConnect(1, 2); });
}

const Changes NewFileAtDisconnect = {{"LogNewFileCfg", "1"}, {"LogFileMaxNum", "9"}};

std::filesystem::path LevelFile(const std::filesystem::path& userFolder)
{
    return userFolder / "Kestrix" / "PDUAPI" / "DEBUG.CFG";
}

TEST(FaultLevelFile, ThatIsTruncatedWhileInUseLeavesErrorsAndWarnings)
{
    Session session(NewFileAtDisconnect);
    session.Construct();
    std::error_code refused;
    std::filesystem::resize_file(LevelFile(session.Folder().Path()), 0, refused);
    // A rotation writes diagnostic records, if their level is enabled.
    session.Api().PDUModuleDisconnect(1);
    EXPECT_EQ(LoggedCall(session), ACall);
    EXPECT_EQ(session.Construct(), PDU_STATUS_NOERROR);
    EXPECT_EQ(session.Api().PDUDestruct(), PDU_STATUS_NOERROR);
}

TEST(FaultLevelFile, ThatIsReadOnlyIsNotUsed)
{
    Session session;
    using std::filesystem::perms;
    std::filesystem::permissions(session.Folder().Path(), perms::all);
    const auto file = LevelFile(session.Folder().Path());
    std::filesystem::create_directories(file.parent_path());
    WriteFileBytes(file, std::string(76, '\0'));
    SetReadOnly(file.string(), true);
    {
        const WithoutPrivileges guest;
        EXPECT_EQ(session.Construct(), PDU_STATUS_NOERROR);
        EXPECT_EQ(LoggedCall(session), ACall);
    }
    EXPECT_EQ(FileBytes(file), std::string(76, '\0'));
    SetReadOnly(file.string(), false);
}

TEST(FaultLevelFile, ThatAnotherProcessChangesAppliesToTheNextRecord)
{
    if (!ChildRole().empty()) {
        const auto userFolder = platform::EnvironmentVariable("APPDATA").value();
        std::fstream levels(LevelFile(userFolder), std::ios::in | std::ios::out | std::ios::binary);
        levels.seekp(4); // The second level is that of the records of a rotation.
        levels.put(4);
        return;
    }
    Session session(NewFileAtDisconnect);
    session.Construct();
    session.Api().PDUModuleDisconnect(1);
    EXPECT_EQ(session.Diagnostics(), "");
    ChildProcess child("editing", session.Folder());
    EXPECT_EQ(child.Wait(), 0) << child.Output();
    session.Api().PDUModuleDisconnect(1);
    EXPECT_NE(session.Diagnostics().find(":TrimLogFiles:FileName=D-PDU_API_Logger\n"), std::string::npos);
}

TEST(FaultTemporaryFolder, ThatIsMissingIsNotUsed)
{
    Session session({{"DbgAPP", "DEBUG"}});
    const EnvironmentValue missing("TEMP", session.Folder() / "none");
    EXPECT_EQ(session.Construct(), PDU_STATUS_NOERROR);
    EXPECT_EQ(LoggedCall(session), ACall);
    EXPECT_FALSE(std::filesystem::exists(session.Folder() / "none"));
}

TEST(FaultTemporaryFolder, ThatIsNotWritableIsNotUsed)
{
    if (platform::PathSeparator != '/')
        GTEST_SKIP() << "this system's read-only folders take new files";
    Session session({{"DbgAPP", "DEBUG"}});
    using std::filesystem::perms;
    std::filesystem::permissions(session.Folder().Path(), perms::all);
    const auto readOnly = session.Folder().Path() / "read only";
    std::filesystem::create_directory(readOnly);
    std::filesystem::permissions(readOnly, perms::owner_read | perms::owner_exec | perms::group_read |
                                               perms::group_exec | perms::others_read | perms::others_exec);
    const EnvironmentValue folder("TEMP", readOnly.string());
    const WithoutPrivileges guest;
    EXPECT_EQ(session.Construct(), PDU_STATUS_NOERROR);
    EXPECT_EQ(LoggedCall(session), ACall);
    EXPECT_TRUE(std::filesystem::is_empty(readOnly));
}

const char* const FixedNames[] = {"d-pdu-api_All_x64_init.log", "d-pdu-api-logger.log"};

TEST(FaultTemporaryFolder, LinksPlantedAtTheFixedNamesAreNotFollowed)
{
    if (platform::PathSeparator != '/')
        GTEST_SKIP() << "this system's temporary folder is the user's own";
    Session session({{"DbgAPP", "DEBUG"}});
    const auto victim = session.Folder().Path() / "victim";
    const auto unmade = session.Folder().Path() / "unmade";
    WriteFileBytes(victim, "precious");
    std::filesystem::create_symlink(victim, session.Folder().Path() / FixedNames[0]);
    std::filesystem::create_symlink(unmade, session.Folder().Path() / FixedNames[1]);
    EXPECT_EQ(session.Construct(), PDU_STATUS_NOERROR);
    EXPECT_EQ(LoggedCall(session), ACall);
    EXPECT_EQ(session.Api().PDUDestruct(), PDU_STATUS_NOERROR);
    EXPECT_EQ(FileBytes(victim), "precious");
    EXPECT_FALSE(std::filesystem::exists(unmade));
}

TEST(FaultTemporaryFolder, PipesPlantedAtTheFixedNamesBlockNoThread)
{
    Session session({{"DbgAPP", "DEBUG"}});
    for (const char* name : FixedNames)
        if (!MakeNamedPipe(session.Folder() / name))
            GTEST_SKIP() << "this system has no named pipes among the files";
    EXPECT_EQ(session.Construct(), PDU_STATUS_NOERROR);
    EXPECT_EQ(LoggedCall(session), ACall);
    EXPECT_EQ(session.Api().PDUDestruct(), PDU_STATUS_NOERROR);
}

TEST(FaultTemporaryFolder, ThatRefusesTheLogAndTheLevelsAtASecondConstructLeavesTheFirstLogInUse)
{
    if (platform::PathSeparator != '/')
        GTEST_SKIP() << "this system does not remove open files";
    Session session({{"DbgAPP", "DEBUG"}});
    session.Construct();
    for (const auto& path : {session.Folder().Path() / FixedNames[1], LevelFile(session.Folder().Path())}) {
        std::filesystem::remove(path);
        std::filesystem::create_directory(path);
    }
    EXPECT_EQ(session.Construct(), PDU_STATUS_NOERROR);
    EXPECT_EQ(LoggedCall(session), ACall);
    EXPECT_EQ(session.Api().PDUDestruct(), PDU_STATUS_NOERROR);
}

TEST(FaultConfiguration, ThatIsMissingAtTheNextConstructStopsTheLogButNoCall)
{
    Session session;
    session.Construct();
    std::filesystem::remove(session.ConfigurationPath());
    EXPECT_EQ(session.Construct(), PDU_STATUS_NOERROR);
    EXPECT_EQ(LoggedCall(session), "");
    session.Configure({});
    EXPECT_EQ(session.Construct(), PDU_STATUS_NOERROR);
    EXPECT_EQ(LoggedCall(session), ACall);
    EXPECT_EQ(session.LogNames().size(), 1u);
    EXPECT_EQ(session.Fake().TakeNames(),
              "PDUConstruct PDU_MS_SetLogCallback PDUConstruct PDU_MS_SetLogCallback "
              "PDUConnect PDUConstruct PDU_MS_SetLogCallback PDUConnect");
}

TEST(FaultConfiguration, ThatChangesToGarbageStopsTheLogButNoCall)
{
    Session session;
    session.Construct();
    std::string garbage;
    for (int i = 0; i < 70000; ++i)
        garbage += static_cast<char>(i * 7919 % 251);
    session.ConfigureText(garbage);
    EXPECT_EQ(session.Construct(), PDU_STATUS_NOERROR);
    EXPECT_EQ(LoggedCall(session), "");
    EXPECT_EQ(session.Api().PDUDestruct(), PDU_STATUS_NOERROR);
}

} // namespace
} // namespace marvane::testing
