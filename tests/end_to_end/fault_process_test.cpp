// The process itself: it ends while threads still call, it is killed, there is another one in the folder.
#include <atomic>
#include <cstdlib>
#include <thread>

#include <gtest/gtest.h>

#include "tests/support/child_process.h"
#include "tests/support/log_summary.h"
#include "tests/support/process_state.h"
#include "tests/support/session.h"

namespace marvane::testing {
namespace {

std::atomic<UNUM32> Rounds[3];

/// Starts a thread that goes on until the process ends.
template <class Action> void StartEndless(std::atomic<UNUM32>& round, Action action)
{
    std::thread([&round, action] {
        for (;;)
            action(++round);
    }).detach();
}

/// Waits until each of the threads has gone some way further.
void AwaitRounds()
{
    for (const std::atomic<UNUM32>& round : Rounds)
        for (const UNUM32 until = round + 100; round < until;)
            std::this_thread::yield();
}

void Ignore(T_PDU_EVT_DATA, UNUM32, UNUM32, void*, void*) {}

CALLBACKFNC RegisteredTrap(Session& session)
{
    session.Fake().TakeCalls();
    session.Api().PDURegisterEventCallback(1, 2, Ignore);
    return reinterpret_cast<CALLBACKFNC>(
        static_cast<std::uintptr_t>(session.Fake().TakeCalls().at(0).Arguments[2]));
}

/// A session that nobody ends, with threads that nobody stops: they go on while the process takes itself
/// apart.
void LeaveThreadsBehind(Changes changes)
{
    // What is registered ahead of the library's loading runs behind the library's own end.
    std::atexit(AwaitRounds);
    static Session* const session = new Session(changes);
    session->Construct();
    static const CALLBACKFNC trap = RegisteredTrap(*session);
    session->Fake().Discard();
    StartEndless(Rounds[0], [](UNUM32 i) { session->Api().PDULockResource(1, i, 3); });
    StartEndless(Rounds[1], [](UNUM32 i) { session->Api().PDUConnect(1, i); });
    StartEndless(Rounds[2], [](UNUM32) { trap(PDU_EVT_DATA_AVAILABLE, 1, 2, nullptr, nullptr); });
    AwaitRounds();
}

TEST(FaultProcess, MayEndWhileThreadsStillCallAndEventsStillCome)
{
    if (!ChildRole().empty())
        return LeaveThreadsBehind({{"LogCbCalls", "1"}});
    const TemporaryFolder folder;
    ChildProcess child("leaving", folder);
    EXPECT_EQ(child.Wait(), 0) << child.Output();
}

TEST(FaultProcess, MayEndWhileTheLogFileChangesAtEveryCall)
{
    if (!ChildRole().empty())
        return LeaveThreadsBehind({{"LogCbCalls", "1"},
                                   {"LogFileMaxSize", "1"},
                                   {"LogFileMaxNum", "2"},
                                   {"ShortName", std::string(60, 'n')}});
    const TemporaryFolder folder;
    ChildProcess child("leaving", folder);
    EXPECT_EQ(child.Wait(), 0) << child.Output();
}

} // namespace
} // namespace marvane::testing
