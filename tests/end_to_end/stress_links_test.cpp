// Many links at once: threads that create, use and destroy them, and threads that signal an event on each.
#include <atomic>
#include <memory>
#include <thread>

#include <gtest/gtest.h>

#include "platform/files.h"
#include "tests/support/log_summary.h"
#include "tests/support/session.h"

namespace marvane::testing {
namespace {

// Fewer links where a logged call is many times slower.
#ifdef MARVANE_SANITIZED
constexpr bool Slow = true;
#else
const bool Slow = platform::PathSeparator != '/';
#endif
constexpr UNUM32 CallingThreads = 4;
constexpr UNUM32 EventThreads = 2;
const UNUM32 LinksOfAThread = Slow ? 40 : 400;
const UNUM32 Links = CallingThreads * LinksOfAThread;

/// Multiples of 64: a poor hash function would put all of them into few buckets.
UNUM32 HandleOf(UNUM32 link)
{
    return 64 * (link + 1);
}

/// How often something happened, by function and link: "PDUConnect 0x00000040".
using Counts = std::map<std::string, std::size_t>;

std::string KeyOf(const std::string& function, UNUM32 handle)
{
    char text[12];
    std::snprintf(text, sizeof text, " 0x%08X", handle);
    return function + text;
}

const char* const CallsWithLink[] = {"PDURegisterEventCallback", "PDUConnect",    "PDULockResource",
                                     "PDUUnlockResource",        "PDUDisconnect", "PDUDestroyComLogicalLink"};

/// Each call once for each link.
Counts OneOfEachCall()
{
    Counts counts;
    for (UNUM32 link = 0; link < Links; ++link)
        for (const char* function : CallsWithLink)
            counts[KeyOf(function, HandleOf(link))] = 1;
    return counts;
}

/// The entry lines that name a link.
Counts EntriesWithLink(const std::string& log)
{
    constexpr std::string_view entry = "} + ", handle = " hCLL=";
    Counts counts;
    for (std::size_t at = log.find(entry); at != std::string::npos; at = log.find(entry, at)) {
        at += entry.size();
        const std::string line = log.substr(at, log.find('\n', at) - at);
        if (const std::size_t value = line.find(handle); value != std::string::npos)
            ++counts[line.substr(0, line.find('(')) + " " + line.substr(value + handle.size(), 10)];
    }
    return counts;
}

/// The calls with a link that the target received.
Counts ReceivedWithLink(const std::vector<SeenCall>& calls)
{
    Counts counts;
    for (const SeenCall& call : calls)
        for (const char* function : CallsWithLink)
            if (call.Function == function)
                ++counts[KeyOf(function, static_cast<UNUM32>(call.Arguments[1]))];
    return counts;
}

/// The first few keys whose counts differ.
std::string Differences(const Counts& actual, const Counts& expected)
{
    Counts all = actual;
    all.insert(expected.begin(), expected.end());
    std::string text;
    for (const auto& [key, ignored] : all) {
        const auto in = [&key = key](const Counts& counts) {
            const auto found = counts.find(key);
            return found == counts.end() ? 0 : found->second;
        };
        if (in(actual) != in(expected) && text.size() < 1000)
            text += key + ": " + std::to_string(in(actual)) + ", not " + std::to_string(in(expected)) + "\n";
    }
    return text;
}

// Events that the callbacks of the links received, by link.
std::unique_ptr<std::atomic<UNUM32>[]> EventsSeen;
template <int Kind> void PDU_CALL OnEvent(T_PDU_EVT_DATA, UNUM32, UNUM32 hCLL, void*, void*)
{
    const UNUM32 link = hCLL / 64 - 1;
    // The links have two callbacks in turn: an event that reached another one counts as very many.
    EventsSeen[link] += link % 2 == Kind ? 1 : 1000;
}

class StressOfLinks : public ::testing::Test
{
protected:
    StressOfLinks() : session({{"LogCbCalls", "1"}}), registered(new std::atomic<bool>[Links] {})
    {
        EventsSeen.reset(new std::atomic<UNUM32>[Links] {});
        session.Fake().Answer = [](const FakeCall& call) {
            // The target's handle of a link is the one that the test chose as the link's tag.
            if (std::string_view(call.Function) == "PDUCreateComLogicalLink")
                *reinterpret_cast<UNUM32*>(static_cast<std::uintptr_t>(call.Arguments[4])) =
                    static_cast<UNUM32>(call.Arguments[3]);
            return PDU_STATUS_NOERROR;
        };
        session.Construct();
        session.Fake().TakeCalls();
        // The module's own callback must never be called: each link has its own.
        session.Api().PDURegisterEventCallback(1, PDU_HANDLE_UNDEF, OnEvent<2>);
        trap = reinterpret_cast<CALLBACKFNC>(
            static_cast<std::uintptr_t>(session.Fake().TakeCalls().at(0).Arguments[2]));
    }

    void UseLink(UNUM32 link)
    {
        const CPduDll& api = session.Api();
        PDU_RSC_DATA resource = {.BusTypeId = 1, .ProtocolId = 2, .NumPinData = 0, .pDLCPinData = nullptr};
        PDU_FLAG_DATA flags = {.NumFlagBytes = 0, .pFlagData = nullptr};
        UNUM32 handle = 0;
        void* const tag = reinterpret_cast<void*>(static_cast<std::uintptr_t>(HandleOf(link)));
        api.PDUCreateComLogicalLink(1, &resource, link, tag, &handle, &flags);
        EXPECT_EQ(handle, HandleOf(link));
        api.PDURegisterEventCallback(1, handle, link % 2 == 0 ? OnEvent<0> : OnEvent<1>);
        registered[link] = true;
        api.PDUConnect(1, handle);
        api.PDULockResource(1, handle, 1);
        api.PDUUnlockResource(1, handle, 1);
        api.PDUDisconnect(1, handle);
        api.PDUDestroyComLogicalLink(1, handle);
    }

    /// Signals an event on each link whose number has this remainder, as soon as its callback is registered.
    void SignalEvents(UNUM32 remainder)
    {
        for (UNUM32 i = 0; i < LinksOfAThread; ++i)
            for (UNUM32 thread = 0; thread < CallingThreads; ++thread) {
                const UNUM32 link = thread * LinksOfAThread + i;
                if (link % EventThreads != remainder)
                    continue;
                while (!registered[link])
                    std::this_thread::yield();
                trap(PDU_EVT_DATA_AVAILABLE, 1, HandleOf(link), nullptr, nullptr);
            }
    }

    void Run()
    {
        std::vector<std::thread> threads;
        for (UNUM32 thread = 0; thread < CallingThreads; ++thread)
            threads.emplace_back([this, thread] {
                for (UNUM32 i = 0; i < LinksOfAThread; ++i)
                    UseLink(thread * LinksOfAThread + i);
            });
        for (UNUM32 remainder = 0; remainder < EventThreads; ++remainder)
            threads.emplace_back([this, remainder] { SignalEvents(remainder); });
        for (std::thread& thread : threads)
            thread.join();
    }

    Session session;
    std::unique_ptr<std::atomic<bool>[]> registered; ///< by link
    CALLBACKFNC trap = nullptr;
};

TEST_F(StressOfLinks, EveryCallAndEventOfEachIsInTheLogOnceAndReachesItsTargetOrCallbackOnce)
{
    const std::string before = LogInOrder(session.LogFolder());
    Run();
    EXPECT_EQ(Differences(ReceivedWithLink(session.Fake().TakeCalls()), OneOfEachCall()), "");
    for (UNUM32 link = 0; link < Links; ++link)
        ASSERT_EQ(EventsSeen[link], 1u) << "link " << link;
    session.Api().PDUDestruct();

    const std::string log = LogInOrder(session.LogFolder());
    ASSERT_TRUE(log.starts_with(before));
    Counts expected = OneOfEachCall();
    for (UNUM32 link = 0; link < Links; ++link)
        expected[KeyOf("PDUCallbackTrap", HandleOf(link))] = 1;
    EXPECT_EQ(Differences(EntriesWithLink(log.substr(before.size())), expected), "");
    const LogSummary summary = Summarise(log);
    EXPECT_EQ(WrongLines(summary), "");
    EXPECT_EQ(summary.Entries.at("PDUCreateComLogicalLink"), Links);
    EXPECT_EQ(summary.Exits.at("PDUCallbackTrap"), Links);
}

} // namespace
} // namespace marvane::testing
