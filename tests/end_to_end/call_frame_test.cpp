// The lines around every call, the levels at which they are written, and that the call is not changed.
#include <condition_variable>
#include <thread>

#include <gtest/gtest.h>

#include "tests/support/session.h"

namespace marvane::testing {
namespace {

TEST(CallFrame, ACallHasOneEntryLineAndOneExitLine)
{
    Session session;
    session.Construct();
    EXPECT_EQ(session.Logged([&] { session.Api().PDULockResource(1, 0x2A, 3); }),
              "{stamp} + PDULockResource(hMod=0x00000001, hCLL=0x0000002A, LockMask=3)\n"
              "{stamp} - PDULockResource<PDU_STATUS_NOERROR (0x0000)>\n");
}

TEST(CallFrame, LogEnabledTwoIsNoHigherLevelOfLogging)
{
    Session session;
    session.Construct();
    session.Configure({{"LogEnabled", "2"}});
    session.Construct();
    session.Fake().TakeCalls();
    EXPECT_EQ(session.Logged([&] { session.Api().PDUConnect(1, 2); }), "");
    EXPECT_EQ(session.Fake().TakeNames(), "PDUConnect");
}

TEST(CallFrame, LogNewFileCfgAloneLogsEveryLine)
{
    Session session({{"LogEnabled", "0"}, {"LogNewFileCfg", "1"}});
    session.Construct();
    EXPECT_EQ(session.Logged([&] { session.Api().PDUConnect(1, 2); }),
              "{stamp} + PDUConnect(hMod=0x00000001, hCLL=0x00000002)\n"
              "{stamp} - PDUConnect<PDU_STATUS_NOERROR (0x0000)>\n");
}

TEST(CallFrame, LogFnCallsZeroGivesNoCallLinesWhateverLogCallOutsSays)
{
    Session session({{"LogFnCalls", "0"}, {"LogCallOuts", "1"}});
    session.Construct();
    EXPECT_EQ(session.Logged([&] { session.Api().PDUConnect(1, 2); }), "");
}

TEST(CallFrame, LogFnCallsOneShowsNoArguments)
{
    Session session({{"LogFnCalls", "1"}});
    session.Construct();
    EXPECT_EQ(session.Logged([&] { session.Api().PDUConnect(1, 2); }),
              "{stamp} + PDUConnect\n"
              "{stamp} - PDUConnect<PDU_STATUS_NOERROR (0x0000)>\n");
}

TEST(CallFrame, LogCallOutsShowsTheClosingLineAndNoOpeningLine)
{
    Session session({{"LogCallOuts", "1"}});
    session.Construct();
    EXPECT_EQ(session.Logged([&] { session.Api().PDUConnect(1, 2); }),
              "{stamp} + PDUConnect(hMod=0x00000001, hCLL=0x00000002)\n"
              "{stamp}     <PDUConnect\n"
              "{stamp} - PDUConnect<PDU_STATUS_NOERROR (0x0000)>\n");
}

TEST(CallFrame, LogCallOutsTwoShowsNoClosingLine)
{
    Session session({{"LogCallOuts", "2"}});
    session.Construct();
    EXPECT_EQ(session.Logged([&] { session.Api().PDUDisconnect(1, 2); }),
              "{stamp} + PDUDisconnect(hMod=0x00000001, hCLL=0x00000002)\n"
              "{stamp} - PDUDisconnect<PDU_STATUS_NOERROR (0x0000)>\n");
}

TEST(CallFrame, AnUndefinedHandleIsNamedAndZeroIsPrinted)
{
    Session session;
    session.Construct();
    EXPECT_EQ(session.Logged([&] { session.Api().PDUConnect(0xFFFFFFFF, 0); }),
              "{stamp} + PDUConnect(hMod=<PDU_HANDLE_UNDEF>, hCLL=0x00000000)\n"
              "{stamp} - PDUConnect<PDU_STATUS_NOERROR (0x0000)>\n");
}

TEST(CallFrame, AnUnknownStatusShowsItsNumber)
{
    Session session;
    session.Construct();
    session.Fake().Answer = [](const FakeCall&) { return T_PDU_ERROR{0x12345}; };
    T_PDU_ERROR status = 0;
    EXPECT_EQ(session.Logged([&] { status = session.Api().PDUConnect(1, 2); }),
              "{stamp} + PDUConnect(hMod=0x00000001, hCLL=0x00000002)\n"
              "{stamp} - PDUConnect<<UNKNOWN ERROR> (0x12345)>\n");
    EXPECT_EQ(status, 0x12345u);
}

TEST(CallFrame, TheLogShowsThatNotConstructedCameFromTheTarget)
{
    Session session;
    session.Construct();
    session.Fake().Answer = [](const FakeCall&) { return PDU_ERR_PDUAPI_NOT_CONSTRUCTED; };
    EXPECT_EQ(session.Logged([&] { EXPECT_EQ(session.Api().PDUConnect(1, 2), 0x20u); }),
              "{stamp} + PDUConnect(hMod=0x00000001, hCLL=0x00000002)\n"
              "{stamp} - PDUConnect<PDU_ERR_PDUAPI_NOT_CONSTRUCTED (0x0020)>\n");
}

TEST(CallFrame, TheLogShowsThatNotConstructedIsTheLoggersOwn)
{
    Session session({}, "no_such_library");
    session.Construct();
    EXPECT_EQ(session.Logged([&] { EXPECT_EQ(session.Api().PDUConnect(1, 2), 0x20u); }),
              "{stamp} PDUConnect - Called but library not loaded!\n");
}

TEST(CallFrame, AResultLongerThanTheBufferEndsWithTheMarkerAndHasNoExitLine)
{
    Session session({{"LogFnDecodeRsps", "2"}, {"LogMaxPduBuff", "100000"}});
    session.Construct();
    std::vector<UNUM8> payload(20000, 0x41);
    PDU_RESULT_DATA result = {};
    result.NumDataBytes = 20000;
    result.pDataBytes = payload.data();
    PDU_EVENT_ITEM event = {
        .ItemType = PDU_IT_RESULT, .hCop = 1, .pCoPTag = nullptr, .Timestamp = 2, .pData = &result};
    session.Fake().Answer = [&](const FakeCall& call) {
        *reinterpret_cast<PDU_EVENT_ITEM**>(call.Arguments[2]) = &event;
        return PDU_STATUS_NOERROR;
    };
    PDU_EVENT_ITEM* item = nullptr;
    const std::string text = session.Logged([&] { session.Api().PDUGetEventItem(1, 2, &item); });
    EXPECT_EQ(item, &event);
    EXPECT_EQ(text.find("\t\t\t\t...\n"), text.size() - 8);
    EXPECT_EQ(text.find("- PDUGetEventItem<"), std::string::npos);
}

TEST(CallFrame, AnArgumentLongerThanTheBufferIsCutAndTheCallContinues)
{
    Session session;
    std::string option(20000, 'o');
    session.Api().PDUConstruct(option.data(), nullptr);
    const std::string text = WithoutStamps(session.Log());
    EXPECT_NE(text.find("ooo\t\t\t\t...\n{stamp} - PDUConstruct<PDU_STATUS_NOERROR (0x0000)>\n"),
              std::string::npos);
    EXPECT_LT(text.find("+ PDUConstruct(OptionStr= \"ooo"), text.size());
}

TEST(CallFrame, ACallMadeInsideAnotherCallIsLoggedInside)
{
    Session session;
    session.Construct();
    session.Fake().Answer = [&](const FakeCall& call) {
        if (std::string(call.Function) == "PDUConnect")
            session.Api().PDUDisconnect(1, 2);
        return PDU_STATUS_NOERROR;
    };
    EXPECT_EQ(session.Logged([&] { session.Api().PDUConnect(1, 2); }),
              "{stamp} + PDUConnect(hMod=0x00000001, hCLL=0x00000002)\n"
              "{stamp} + PDUDisconnect(hMod=0x00000001, hCLL=0x00000002)\n"
              "{stamp} - PDUDisconnect<PDU_STATUS_NOERROR (0x0000)>\n"
              "{stamp} - PDUConnect<PDU_STATUS_NOERROR (0x0000)>\n");
}

TEST(CallFrame, ACallInWhichLoggingIsTurnedOnHasAnExitLine)
{
    Session session;
    session.Construct();
    session.Configure({{"LogEnabled", "0"}});
    session.Construct();
    session.Configure({});
    session.Fake().Answer = [&](const FakeCall& call) {
        if (std::string(call.Function) == "PDUConnect")
            session.Construct();
        return PDU_ERR_CLL_NOT_CONNECTED;
    };
    const std::string text =
        session.Logged([&] { EXPECT_EQ(session.Api().PDUConnect(1, 2), PDU_ERR_CLL_NOT_CONNECTED); });
    EXPECT_EQ(text.substr(text.find("{stamp} + ")),
              "{stamp} + PDUConstruct(OptionStr= \"<NULL STRING>\", pAPITag= " + PointerText(nullptr) +
                  ")\n"
                  "{stamp} - PDUConstruct<PDU_ERR_CLL_NOT_CONNECTED (0x0040)>\n"
                  "{stamp} - PDUConnect<PDU_ERR_CLL_NOT_CONNECTED (0x0040)>\n");
}

TEST(CallFrame, AThreadBlockedInTheTargetDoesNotBlockAnother)
{
    Session session;
    session.Construct();
    std::mutex mutex;
    std::condition_variable changed;
    bool inside = false;
    bool release = false;
    session.Fake().Answer = [&](const FakeCall& call) {
        if (std::string(call.Function) == "PDUConnect") {
            std::unique_lock hold(mutex);
            inside = true;
            changed.notify_all();
            changed.wait(hold, [&] { return release; });
        }
        return PDU_STATUS_NOERROR;
    };
    std::thread blocked([&] { session.Api().PDUConnect(1, 2); });
    {
        std::unique_lock hold(mutex);
        changed.wait(hold, [&] { return inside; });
    }
    EXPECT_EQ(session.Logged([&] { session.Api().PDUDisconnect(1, 2); }),
              "{stamp} + PDUDisconnect(hMod=0x00000001, hCLL=0x00000002)\n"
              "{stamp} - PDUDisconnect<PDU_STATUS_NOERROR (0x0000)>\n");
    {
        const std::lock_guard hold(mutex);
        release = true;
    }
    changed.notify_all();
    blocked.join();
}

TEST(CallFrame, ManyThreadsTearNoLineAndLoseNone)
{
    Session session({{"LogFlush", "0"}});
    session.Construct();
    constexpr int threads = 8;
    constexpr UNUM32 calls = 300;
    std::vector<std::thread> running;
    for (UNUM32 thread = 0; thread < threads; ++thread)
        running.emplace_back([&session, thread] {
            for (UNUM32 i = 0; i < calls; ++i)
                session.Api().PDULockResource(thread, i, 1);
        });
    for (std::thread& thread : running)
        thread.join();
    session.Api().PDUDestruct();
    const std::string text = WithoutStamps(session.Log());
    for (UNUM32 thread = 0; thread < threads; ++thread)
        for (UNUM32 i = 0; i < calls; ++i) {
            char line[100];
            std::snprintf(line, sizeof line,
                          "\n{stamp} + PDULockResource(hMod=0x%08X, hCLL=0x%08X, LockMask=1)\n",
                          static_cast<unsigned>(thread), static_cast<unsigned>(i));
            ASSERT_NE(text.find(line), std::string::npos) << line;
        }
    std::size_t exits = 0;
    const std::string exit = "\n{stamp} - PDULockResource<PDU_STATUS_NOERROR (0x0000)>\n";
    for (std::size_t at = text.find(exit); at != std::string::npos; at = text.find(exit, at + 1))
        ++exits;
    EXPECT_EQ(exits, threads * calls);
}

TEST(CallFrame, WithLoggingOffCallsAreForwardedAndNoFolderAppears)
{
    Session session({{"LogEnabled", "0"}});
    EXPECT_EQ(session.Construct(), PDU_STATUS_NOERROR);
    session.Fake().TakeCalls();
    session.Fake().Answer = [](const FakeCall&) { return PDU_ERR_CLL_NOT_CONNECTED; };
    EXPECT_EQ(session.Api().PDUConnect(1, 2), PDU_ERR_CLL_NOT_CONNECTED);
    EXPECT_EQ(session.Fake().TakeNames(), "PDUConnect");
    EXPECT_FALSE(std::filesystem::exists(session.LogFolder()));
}

} // namespace
} // namespace marvane::testing
