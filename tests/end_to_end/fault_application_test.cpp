// What the application and the target library would notice of logging between them.
#include <filesystem>
#include <thread>

#include <gtest/gtest.h>

#include "platform/files.h"
#include "tests/support/error_state.h"
#include "tests/support/process_state.h"
#include "tests/support/session.h"

namespace marvane::testing {
namespace {

constexpr int OfApplication = 41;
constexpr int OfTarget = 42;
constexpr int OfHandler = 43;

ErrorState SeenByTarget;
ErrorState SeenByHandler;

/// A target that reads the error state and leaves its own.
T_PDU_ERROR LeaveError(const FakeCall&)
{
    SeenByTarget = CurrentErrorState();
    SetErrorState(OfTarget);
    return PDU_STATUS_NOERROR;
}

/// Expects that a call passes the error state on in both directions.
template <class Call> void ExpectErrorPassesThrough(Call call)
{
    SeenByTarget = {};
    SetErrorState(OfApplication);
    call();
    const ErrorState left = CurrentErrorState();
    EXPECT_EQ(SeenByTarget, ErrorStateOf(OfApplication));
    EXPECT_EQ(left, ErrorStateOf(OfTarget));
}

/// The address that the session gave the target for a callback.
template <class Function> Function Given(Session& session, const std::string& function, std::size_t argument)
{
    for (const SeenCall& call : session.Fake().TakeCalls())
        if (call.Function == function)
            return reinterpret_cast<Function>(static_cast<std::uintptr_t>(call.Arguments[argument]));
    return nullptr;
}

TEST(ThreadErrors, PassThroughACallWithAllLogged)
{
    Session session({{"LogFnDecodeArgs", "2"}, {"LogFnDecodeRsps", "2"}, {"LogCallOuts", "1"}});
    session.Construct();
    session.Fake().Answer = LeaveError;
    ExpectErrorPassesThrough([&] { session.Api().PDUGetTimestamp(1, nullptr); });
}

TEST(ThreadErrors, PassThroughTheFirstCallOfAThreadWithLoggingOff)
{
    Session session({{"LogEnabled", "0"}});
    session.Construct();
    session.Fake().Answer = LeaveError;
    std::thread([&] { ExpectErrorPassesThrough([&] { session.Api().PDUConnect(1, 2); }); }).join();
}

TEST(ThreadErrors, PassThroughACallWhoseLinesCanNotBeWritten)
{
    Session session({{"LogFileMaxSize", "1"}, {"LogFileMaxNum", "2"}});
    session.Construct();
    session.Fake().Answer = LeaveError;
    ExpectErrorPassesThrough([&] { session.Api().PDUConnect(1, 2); });
    const LargestFile full(0);
    ExpectErrorPassesThrough([&] { session.Api().PDUConnect(1, 2); });
}

TEST(ThreadErrors, PassThroughConstructAndDestruct)
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

TEST(ThreadErrors, AreUntouchedWithoutATargetLibrary)
{
    Session session({{"PDUAPILibDll", "none"}});
    session.Construct();
    const LargestFile full(0);
    SetErrorState(OfApplication);
    const T_PDU_ERROR status = session.Api().PDUConnect(1, 2);
    const ErrorState left = CurrentErrorState();
    EXPECT_EQ(status, PDU_ERR_PDUAPI_NOT_CONSTRUCTED);
    EXPECT_EQ(left, ErrorStateOf(OfApplication));
}

void PDU_CALL ReadErrorState(T_PDU_EVT_DATA, UNUM32, UNUM32, void*, void*)
{
    SeenByHandler = CurrentErrorState();
    SetErrorState(OfHandler);
}

/// Expects that an event that is logged at this level passes the error state on in both directions.
void ExpectErrorPassesThroughAnEvent(const std::string& level)
{
    Session session({{"LogCbCalls", level}});
    session.Construct();
    session.Api().PDURegisterEventCallback(1, 2, ReadErrorState);
    const auto trap = Given<CALLBACKFNC>(session, "PDURegisterEventCallback", 2);
    ASSERT_NE(trap, nullptr);
    const LargestFile full(0);
    SetErrorState(OfTarget);
    trap(PDU_EVT_DATA_AVAILABLE, 1, 2, nullptr, nullptr);
    const ErrorState left = CurrentErrorState();
    EXPECT_EQ(SeenByHandler, ErrorStateOf(OfTarget));
    EXPECT_EQ(left, ErrorStateOf(OfHandler));
}

TEST(ThreadErrors, PassThroughAnEventCallbackThatIsLogged)
{
    ExpectErrorPassesThroughAnEvent("1");
}

TEST(ThreadErrors, PassThroughAnEventCallbackThatIsNotLogged)
{
    ExpectErrorPassesThroughAnEvent("0");
}

TEST(ThreadErrors, AreUntouchedByAReportOfTraffic)
{
    Session session;
    session.Construct();
    const auto report = Given<PDU_MS_LOG_CALLBACK>(session, "PDU_MS_SetLogCallback", 0);
    ASSERT_NE(report, nullptr);
    const LargestFile full(0);
    SetErrorState(OfTarget);
    report("text", 1, 256, 0, nullptr);
    const ErrorState left = CurrentErrorState();
    EXPECT_EQ(left, ErrorStateOf(OfTarget));
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
