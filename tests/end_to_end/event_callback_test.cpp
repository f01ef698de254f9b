// Events are routed from the target library to the application's callbacks.
#include <gtest/gtest.h>

#include "tests/support/session.h"

namespace marvane::testing {
namespace {

std::string Told;

// Callbacks of the application, distinguished by the number that they add.
void PDU_CALL LinkCallback(T_PDU_EVT_DATA, UNUM32, UNUM32, void*, void*)
{
    Told += "link ";
}
void PDU_CALL ModuleCallback(T_PDU_EVT_DATA, UNUM32, UNUM32, void*, void*)
{
    Told += "module ";
}
void PDU_CALL DefaultCallback(T_PDU_EVT_DATA, UNUM32, UNUM32, void*, void*)
{
    Told += "default ";
}

/// A session whose fake target stores the callback that it receives.
class EventCallback : public ::testing::Test
{
protected:
    EventCallback() { Told.clear(); }

    void Begin(Changes changes)
    {
        session = std::make_unique<Session>(changes);
        session->Construct();
        session->Fake().TakeCalls();
    }

    void Register(UNUM32 hMod, UNUM32 hCLL, CALLBACKFNC callback)
    {
        EXPECT_EQ(session->Api().PDURegisterEventCallback(hMod, hCLL, callback), PDU_STATUS_NOERROR);
        const auto calls = session->Fake().TakeCalls();
        ASSERT_EQ(calls.size(), 1u);
        if (callback)
            trap = reinterpret_cast<CALLBACKFNC>(static_cast<std::uintptr_t>(calls[0].Arguments[2]));
    }

    /// Signals an event as the target does. Returns which callbacks were called.
    std::string Signal(UNUM32 hMod, UNUM32 hCLL)
    {
        Told.clear();
        trap(PDU_EVT_DATA_AVAILABLE, hMod, hCLL, nullptr, nullptr);
        return Told;
    }

    std::unique_ptr<Session> session;
    CALLBACKFNC trap = nullptr;
};

TEST_F(EventCallback, TheTargetGetsTheTrapAndNeverTheApplicationsFunction)
{
    Begin({});
    Register(1, 2, LinkCallback);
    EXPECT_NE(trap, nullptr);
    EXPECT_NE(trap, &LinkCallback);
}

TEST_F(EventCallback, ANullCallbackIsForwardedAsNull)
{
    Begin({});
    session->Api().PDURegisterEventCallback(1, 2, nullptr);
    EXPECT_EQ(session->Fake().TakeCalls()[0].Arguments, (std::vector<std::uint64_t>{1, 2, 0}));
}

TEST_F(EventCallback, ALinksEventReachesTheLinksCallback)
{
    Begin({});
    Register(PDU_HANDLE_UNDEF, PDU_HANDLE_UNDEF, DefaultCallback);
    Register(1, PDU_HANDLE_UNDEF, ModuleCallback);
    Register(1, 2, LinkCallback);
    EXPECT_EQ(Signal(1, 2), "link ");
}

TEST_F(EventCallback, AnEventOfALinkWithoutCallbackReachesTheModulesCallback)
{
    Begin({});
    Register(PDU_HANDLE_UNDEF, PDU_HANDLE_UNDEF, DefaultCallback);
    Register(1, PDU_HANDLE_UNDEF, ModuleCallback);
    EXPECT_EQ(Signal(1, 2), "module ");
    EXPECT_EQ(Signal(1, PDU_HANDLE_UNDEF), "module ");
    EXPECT_EQ(Signal(7, 2), "default ");
}

TEST_F(EventCallback, TheDefaultCallbackGetsTheEventsOfAllModulesAndLinks)
{
    Begin({});
    Register(PDU_HANDLE_UNDEF, PDU_HANDLE_UNDEF, DefaultCallback);
    EXPECT_EQ(Signal(1, 2), "default ");
    EXPECT_EQ(Signal(9, PDU_HANDLE_UNDEF), "default ");
    EXPECT_EQ(Signal(PDU_HANDLE_UNDEF, PDU_HANDLE_UNDEF), "default ");
}

TEST_F(EventCallback, NullForALinkLeavesTheOtherLevelsInEffect)
{
    Begin({});
    Register(1, PDU_HANDLE_UNDEF, ModuleCallback);
    Register(1, 2, LinkCallback);
    Register(1, 2, nullptr);
    EXPECT_EQ(Signal(1, 2), "module ");
}

TEST_F(EventCallback, NullForALinkOfAModuleWithoutCallbackLeavesTheDefaultInEffect)
{
    Begin({});
    Register(PDU_HANDLE_UNDEF, PDU_HANDLE_UNDEF, DefaultCallback);
    Register(1, 2, LinkCallback);
    Register(1, 2, nullptr);
    EXPECT_EQ(Signal(1, 2), "default ");
}

TEST_F(EventCallback, ALinkOfAnUndefinedModuleIsALevelOfItsOwn)
{
    Begin({});
    Register(PDU_HANDLE_UNDEF, PDU_HANDLE_UNDEF, DefaultCallback);
    Register(PDU_HANDLE_UNDEF, 2, LinkCallback);
    EXPECT_EQ(Signal(PDU_HANDLE_UNDEF, 2), "link ");
    EXPECT_EQ(Signal(1, 2), "default ");
}

TEST_F(EventCallback, ARegistrationThatTheTargetRefusesIsStoredAnyway)
{
    Begin({});
    Register(5, 6, DefaultCallback);
    session->Fake().Answer = [](const FakeCall&) { return PDU_ERR_INVALID_HANDLE; };
    EXPECT_EQ(session->Api().PDURegisterEventCallback(1, 2, LinkCallback), PDU_ERR_INVALID_HANDLE);
    EXPECT_EQ(Signal(1, 2), "link ");
}

TEST_F(EventCallback, WithLogCbCallsZeroEventsPassWithoutALine)
{
    Begin({});
    Register(1, 2, LinkCallback);
    EXPECT_EQ(session->Logged([&] { EXPECT_EQ(Signal(1, 2), "link "); }), "");
}

TEST_F(EventCallback, TheEntryLineNamesTheFunctionThatIsCalled)
{
    Begin({{"LogCbCalls", "1"}, {"LogCallOuts", "1"}});
    Register(1, 2, LinkCallback);
    EXPECT_EQ(session->Logged([&] { Signal(1, 2); }),
              "{stamp} + PDUCallbackTrap(Type=0x801, hMod=0x00000001, hCLL=0x00000002, pCLLTag=" +
                  PointerText(nullptr) + ", pAPITag=" + PointerText(nullptr) +
                  ", Handler = " + PointerText(reinterpret_cast<const void*>(&LinkCallback)) +
                  ")\n"
                  "{stamp}     <PDUCallbackTrap\n"
                  "{stamp} - PDUCallbackTrap\n");
}

TEST_F(EventCallback, WithLogFnCallsOneTheEntryLineHasNoArguments)
{
    Begin({{"LogCbCalls", "1"}, {"LogFnCalls", "1"}});
    Register(1, 2, LinkCallback);
    EXPECT_EQ(session->Logged([&] { Signal(1, 2); }),
              "{stamp} + PDUCallbackTrap\n{stamp} - PDUCallbackTrap\n");
}

TEST_F(EventCallback, WithLogFnCallsZeroTheEventIsStillLogged)
{
    Begin({{"LogCbCalls", "1"}, {"LogFnCalls", "0"}});
    Register(1, 2, LinkCallback);
    EXPECT_EQ(session->Logged([&] { Signal(1, 2); }),
              "{stamp} + PDUCallbackTrap\n{stamp} - PDUCallbackTrap\n");
}

TEST_F(EventCallback, AnEventWithoutACallbackIsNotLogged)
{
    Begin({{"LogCbCalls", "1"}});
    Register(1, 2, LinkCallback);
    EXPECT_EQ(session->Logged([&] { EXPECT_EQ(Signal(8, 9), ""); }), "");
}

TEST_F(EventCallback, ASecondConstructClearsTheDefaultAndKeepsTheOthers)
{
    Begin({});
    Register(PDU_HANDLE_UNDEF, PDU_HANDLE_UNDEF, DefaultCallback);
    Register(1, PDU_HANDLE_UNDEF, ModuleCallback);
    Register(1, 2, LinkCallback);
    session->Construct();
    EXPECT_EQ(Signal(9, 9), "");
    EXPECT_EQ(Signal(1, 9), "module ");
    EXPECT_EQ(Signal(1, 2), "link ");
}

TEST_F(EventCallback, CallbacksOfLinksOutliveDestruct)
{
    Begin({});
    Register(1, 2, LinkCallback);
    session->Api().PDUDestruct();
    session->Construct();
    EXPECT_EQ(Signal(1, 2), "link ");
}

TEST_F(EventCallback, AnEventAfterDestructReachesNobodyAndLogsNothing)
{
    Begin({{"LogCbCalls", "1"}});
    Register(1, 2, LinkCallback);
    session->Api().PDUDestruct();
    EXPECT_EQ(session->Logged([&] { EXPECT_EQ(Signal(1, 2), ""); }), "");
}

TEST_F(EventCallback, TheTwoKeysThatShareItsStorageShowTheDefaultCallbackInAContinuationFile)
{
    Begin({{"LogNewFileCfg", "1"}, {"LogFileMaxNum", "5"}});
    Register(PDU_HANDLE_UNDEF, PDU_HANDLE_UNDEF, DefaultCallback);
    const std::uint64_t address = reinterpret_cast<std::uintptr_t>(&DefaultCallback);
    session->Api().PDUModuleDisconnect(1);
    char expected[200];
    std::snprintf(expected, sizeof expected,
                  "{stamp} Config setting: DoIPTlsRecordSizeLimit = %9u (0x%08X)\n"
                  "{stamp} Config setting: LogTlsSessionKey     = %9u (0x%08X)\n",
                  static_cast<unsigned>(address), static_cast<unsigned>(address),
                  static_cast<unsigned>(address >> 32), static_cast<unsigned>(address >> 32));
    EXPECT_NE(WithoutStamps(session->Log()).find(expected), std::string::npos) << expected;
}

TEST_F(EventCallback, AConfiguredRecordSizeLimitOverwritesTheDefaultCallback)
{
    // Not called here: the configured value would be called as the address 5000. A registration overwrites
    // it.
    Begin({{"DoIPTlsRecordSizeLimit", "5000"}});
    EXPECT_NE(session->Log().find("DoIPTlsRecordSizeLimit =      5000 (0x00001388)"), std::string::npos);
    Register(PDU_HANDLE_UNDEF, PDU_HANDLE_UNDEF, DefaultCallback);
    EXPECT_EQ(Signal(1, 2), "default ");
}

TEST_F(EventCallback, AnEventForTheDefaultCallbackJumpsToTheAddressGivenByTheTwoKeys)
{
    // Signed, because the file has no other way to give all 32 bits.
    const std::uint64_t address = reinterpret_cast<std::uintptr_t>(&DefaultCallback);
    Begin({{"DoIPTlsRecordSizeLimit", std::to_string(static_cast<std::int32_t>(address & 0xFFFFFFFF))},
           {"LogTlsSessionKey", std::to_string(static_cast<std::int32_t>(address >> 32))}});
    Register(5, 6, LinkCallback);
    EXPECT_EQ(Signal(1, 2), "default ");
}

TEST_F(EventCallback, AnEventDoesNotChangeAFileAboveItsLimit)
{
    Begin({{"LogCbCalls", "1"}, {"LogFnCalls", "1"}, {"LogFileMaxSize", "1"}, {"LogFileMaxNum", "9"}});
    Register(1, 2, LinkCallback);
    EXPECT_EQ(session->Logged([&] { Signal(1, 2); }),
              "{stamp} + PDUCallbackTrap\n{stamp} - PDUCallbackTrap\n");
}

} // namespace
} // namespace marvane::testing
