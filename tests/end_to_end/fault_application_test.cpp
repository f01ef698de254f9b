// What the application and the target library would notice of logging between them.
#include <cerrno>
#include <filesystem>
#include <thread>

#include <gtest/gtest.h>

#include "platform/files.h"
#include "tests/support/process_state.h"
#include "tests/support/session.h"

namespace marvane::testing {
namespace {

constexpr int OfApplication = 41;
constexpr int OfTarget = 42;
constexpr int OfHandler = 43;

int SeenByTarget = 0;
int SeenByHandler = 0;

/// A target that looks at errno and leaves its own.
T_PDU_ERROR LeaveError(const FakeCall&)
{
    SeenByTarget = errno;
    errno = OfTarget;
    return PDU_STATUS_NOERROR;
}

/// Expects that a call passes errno on in both directions.
template <class Call> void ExpectErrorPassesThrough(Call call)
{
    SeenByTarget = 0;
    errno = OfApplication;
    call();
    const int left = errno;
    EXPECT_EQ(SeenByTarget, OfApplication);
    EXPECT_EQ(left, OfTarget);
}

TEST(ErrorNumber, PassesThroughACallWhoseLinesCanNotBeWritten)
{
    Session session({{"LogFileMaxSize", "1"}, {"LogFileMaxNum", "2"}});
    session.Construct();
    session.Fake().Answer = LeaveError;
    ExpectErrorPassesThrough([&] { session.Api().PDUConnect(1, 2); });
    const LargestFile full(0);
    ExpectErrorPassesThrough([&] { session.Api().PDUConnect(1, 2); });
}

TEST(ErrorNumber, PassesThroughConstructAndDestruct)
{
    Session session;
    session.Fake().Answer = [](const FakeCall& call) {
        const std::string function = call.Function;
        return function == "PDUConstruct" || function == "PDUDestruct" ? LeaveError(call)
                                                                       : PDU_STATUS_NOERROR;
    };
    ExpectErrorPassesThrough([&] { session.Construct(); });
    ExpectErrorPassesThrough([&] { session.Api().PDUDestruct(); });
}

TEST(ErrorNumber, IsUntouchedWithoutATargetLibrary)
{
    Session session({{"PDUAPILibDll", "none"}});
    session.Construct();
    const LargestFile full(0);
    errno = OfApplication;
    EXPECT_EQ(session.Api().PDUConnect(1, 2), PDU_ERR_PDUAPI_NOT_CONSTRUCTED);
    EXPECT_EQ(errno, OfApplication);
}

void LookAtError(T_PDU_EVT_DATA, UNUM32, UNUM32, void*, void*)
{
    SeenByHandler = errno;
    errno = OfHandler;
}

TEST(ErrorNumber, PassesThroughAnEventCallback)
{
    Session session({{"LogCbCalls", "1"}});
    session.Construct();
    session.Fake().TakeCalls();
    session.Api().PDURegisterEventCallback(1, 2, LookAtError);
    const auto trap = reinterpret_cast<CALLBACKFNC>(
        static_cast<std::uintptr_t>(session.Fake().TakeCalls().at(0).Arguments[2]));
    const LargestFile full(0);
    errno = OfTarget;
    trap(PDU_EVT_DATA_AVAILABLE, 1, 2, nullptr, nullptr);
    const int left = errno;
    EXPECT_EQ(SeenByHandler, OfTarget);
    EXPECT_EQ(left, OfHandler);
}

TEST(ErrorNumber, IsUntouchedByAReportOfTraffic)
{
    Session session;
    session.Construct();
    PDU_MS_LOG_CALLBACK report = nullptr;
    for (const SeenCall& call : session.Fake().TakeCalls())
        if (call.Function == "PDU_MS_SetLogCallback")
            report = reinterpret_cast<PDU_MS_LOG_CALLBACK>(static_cast<std::uintptr_t>(call.Arguments[0]));
    ASSERT_NE(report, nullptr);
    const LargestFile full(0);
    errno = OfTarget;
    report("text", 1, 256, 0, nullptr);
    EXPECT_EQ(errno, OfTarget);
}

TEST(Destruct, ReturnsAfterACallOfAnotherThreadThatHadBegun)
{
    Session session;
    session.Construct();
    std::atomic<bool> begun = false;
    std::atomic<bool> returned = false;
    session.Fake().Answer = [&](const FakeCall& call) {
        if (std::string(call.Function) != "PDUConnect")
            return PDU_STATUS_NOERROR;
        begun = true;
        // Once the functions are withdrawn the unloading has begun.
        PDU_VERSION_DATA version = {};
        while (session.Api().PDUGetVersion(1, &version) != PDU_ERR_PDUAPI_NOT_CONSTRUCTED)
            std::this_thread::yield();
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
        returned = true;
        return PDU_STATUS_NOERROR;
    };
    std::thread caller([&] { session.Api().PDUConnect(1, 2); });
    while (!begun)
        std::this_thread::yield();
    session.Api().PDUDestruct();
    EXPECT_TRUE(returned);
    caller.join();
}

TEST(Configuration, ThatIsAPipeBlocksNobodyAndCountsAsMissing)
{
    Session session;
    std::filesystem::remove(session.ConfigurationPath());
    if (!MakeNamedPipe(session.ConfigurationPath()))
        GTEST_SKIP() << "this system has no named pipes among the files";
    EXPECT_EQ(session.Construct(), PDU_ERR_PDUAPI_NOT_CONSTRUCTED);
}

TEST(PlantedLog, InAFolderThatOthersMayWriteToIsNotAppendedTo)
{
    if (platform::PathSeparator != '/')
        GTEST_SKIP() << "links need rights there that tests do not have";
    Session session({{"LogFileMaxNum", "0"}});
    std::filesystem::create_directories(session.LogFolder());
    std::filesystem::permissions(session.LogFolder(), std::filesystem::perms::all);
    const std::string victim = session.Folder() / "victim";
    WriteFileBytes(victim, "precious");
    std::filesystem::create_symlink(victim, session.LogFolder() / "D-PDU_API_Logger_01-01-2020_00-00-00.LGR");
    std::filesystem::create_hard_link(victim,
                                      session.LogFolder() / "D-PDU_API_Logger_02-01-2020_00-00-00.LGR");
    ASSERT_TRUE(MakeNamedPipe((session.LogFolder() / "D-PDU_API_Logger_03-01-2020_00-00-00.LGR").string()));
    EXPECT_EQ(session.Construct(), PDU_STATUS_NOERROR);
    EXPECT_EQ(FileBytes(victim), "precious");
    EXPECT_EQ(session.LogNames().size(), 4u) << "a file of its own beside the three";
}

} // namespace
} // namespace marvane::testing
