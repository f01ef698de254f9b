// Faults of the target library during a call.
#include <gtest/gtest.h>

#include "platform/files.h"
#include "tests/support/session.h"

namespace marvane::testing {
namespace {

TEST(FaultTarget, WithoutItsDependencyIsAFailedLoad)
{
    const std::string name =
        platform::PathSeparator == '/' ? "fake_target_dependent.so" : "fake_target_dependent.dll";
    Session session({}, "target_of_another_folder");
    std::filesystem::copy_file(BuildFolder() + "dependent" + platform::PathSeparator + name,
                               session.Folder() / name);
    session.Configure({{"InstalledPath", session.Folder().Path().string() + platform::PathSeparator},
                       {"PDUAPILibDll", name}});
    EXPECT_EQ(session.Construct(), PDU_ERR_PDUAPI_NOT_CONSTRUCTED);
    EXPECT_EQ(session.Logged([&] { session.Api().PDUConnect(1, 2); }),
              "{stamp} PDUConnect - Called but library not loaded!\n");
}

TEST(FaultTarget, ThrowingFromConstructAndDestructReachesTheApplicationAndMayBeCalledAgain)
{
    if (platform::PathSeparator != '/')
        GTEST_SKIP()
            << "each of these Windows binaries has a runtime of its own, which exceptions do not cross";
    Session session;
    const auto throws = [](const FakeCall&) -> T_PDU_ERROR { throw std::string("from the target"); };
    session.Fake().Answer = throws;
    EXPECT_THROW(session.Construct(), std::string);
    session.Fake().Answer = nullptr;
    EXPECT_EQ(session.Construct(), PDU_STATUS_NOERROR);
    session.Fake().Answer = throws;
    EXPECT_THROW(session.Api().PDUDestruct(), std::string);
    session.Fake().Answer = nullptr;
    EXPECT_EQ(session.Logged([&] { session.Api().PDUConnect(1, 2); }),
              "{stamp} + PDUConnect(hMod=0x00000001, hCLL=0x00000002)\n"
              "{stamp} - PDUConnect<PDU_STATUS_NOERROR (0x0000)>\n");
    EXPECT_EQ(session.Api().PDUDestruct(), PDU_STATUS_NOERROR);
}

const CPduDll* EventApi = nullptr;
void PDU_CALL CallBack(T_PDU_EVT_DATA, UNUM32 hMod, UNUM32 hCLL, void*, void*)
{
    EventApi->PDUCancelComPrimitive(hMod, hCLL, 3);
}

TEST(FaultTarget, SignallingAnEventInsideACallMayBeCalledBackFromTheHandler)
{
    Session session({{"LogCbCalls", "1"}, {"LogFnCalls", "1"}});
    session.Construct();
    EventApi = &session.Api();
    CALLBACKFNC trap = nullptr;
    session.Fake().Answer = [&](const FakeCall& call) {
        if (std::string(call.Function) == "PDURegisterEventCallback")
            trap = reinterpret_cast<CALLBACKFNC>(static_cast<std::uintptr_t>(call.Arguments[2]));
        if (std::string(call.Function) == "PDUConnect")
            trap(PDU_EVT_DATA_AVAILABLE, 1, 2, nullptr, nullptr);
        return PDU_STATUS_NOERROR;
    };
    session.Api().PDURegisterEventCallback(1, 2, CallBack);
    EXPECT_EQ(session.Logged([&] { session.Api().PDUConnect(1, 2); }),
              "{stamp} + PDUConnect\n"
              "{stamp} + PDUCallbackTrap\n"
              "{stamp} + PDUCancelComPrimitive\n"
              "{stamp} - PDUCancelComPrimitive<PDU_STATUS_NOERROR (0x0000)>\n"
              "{stamp} - PDUCallbackTrap\n"
              "{stamp} - PDUConnect<PDU_STATUS_NOERROR (0x0000)>\n");
}

TEST(FaultTarget, ReportingTrafficAfterDestructGetsAnAnswerAndNothingIsLogged)
{
    Session session;
    PDU_MS_LOG_CALLBACK report = nullptr;
    session.Fake().Answer = [&](const FakeCall& call) {
        if (std::string(call.Function) == "PDU_MS_SetLogCallback" && !report)
            report = reinterpret_cast<PDU_MS_LOG_CALLBACK>(static_cast<std::uintptr_t>(call.Arguments[0]));
        return PDU_STATUS_NOERROR;
    };
    session.Construct();
    session.Api().PDUDestruct();
    ASSERT_NE(report, nullptr);
    EXPECT_EQ(session.Logged([&] { EXPECT_EQ(report("late", 1, 256, 0, nullptr), 0u); }), "");
}

} // namespace
} // namespace marvane::testing
