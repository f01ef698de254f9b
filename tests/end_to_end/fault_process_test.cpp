// Faults of the process: it ends while threads still call, forks, or shares its log folder.
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <ctime>
#include <thread>

#include <gtest/gtest.h>

#include "platform/files.h"
#include "tests/support/child_process.h"
#include "tests/support/log_summary.h"
#include "tests/support/session.h"

namespace marvane::testing {
namespace {

const bool Forks = platform::PathSeparator == '/';

std::atomic<UNUM32> Rounds[3];

/// Starts a thread that repeats an action until the process ends.
template <class Action> void StartEndless(std::atomic<UNUM32>& round, Action action)
{
    std::thread([&round, action] {
        for (;;)
            action(++round);
    }).detach();
}

/// Waits until each of the threads has made further progress.
void AwaitRounds()
{
    for (const std::atomic<UNUM32>& round : Rounds)
        for (const UNUM32 until = round + 30; round < until;)
            std::this_thread::yield();
}

void PDU_CALL Ignore(T_PDU_EVT_DATA, UNUM32, UNUM32, void*, void*) {}

CALLBACKFNC RegisteredTrap(Session& session)
{
    session.Fake().TakeCalls();
    session.Api().PDURegisterEventCallback(1, 2, Ignore);
    return reinterpret_cast<CALLBACKFNC>(
        static_cast<std::uintptr_t>(session.Fake().TakeCalls().at(0).Arguments[2]));
}

/// A session that is never ended, with threads that are never stopped: they run on while static destructors
/// do.
void LeaveThreadsBehind(Changes changes)
{
    // A handler that is registered before the library is loaded runs after the library's own destructors.
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

/// Runs the child part of a test and expects that it succeeds.
void ExpectGoodEnd(const TemporaryFolder& folder)
{
    ChildProcess child("alone", folder);
    EXPECT_EQ(child.Wait(), 0) << child.Output();
}

TEST(FaultProcess, MayEndWhileThreadsCallAndEventsArrive)
{
    if (!ChildRole().empty())
        return LeaveThreadsBehind({{"LogCbCalls", "1"}});
    const TemporaryFolder folder;
    ExpectGoodEnd(folder);
}

TEST(FaultProcess, MayEndWhileTheLogFileChangesAtEveryCall)
{
    if (!ChildRole().empty())
        return LeaveThreadsBehind({{"LogCbCalls", "1"},
                                   {"LogFileMaxSize", "1"},
                                   {"LogFileMaxNum", "2"},
                                   {"ShortName", std::string(60, 'n')}});
    const TemporaryFolder folder;
    ExpectGoodEnd(folder);
}

/// The log folder of the one session that a child process had in this folder.
std::filesystem::path LogFolderOfChild(const TemporaryFolder& folder)
{
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder.Path()))
        if (entry.path().filename() == "logs")
            return entry.path();
    return {};
}

/// Expects this many calls of a function, each with its entry and its exit line.
void ExpectCalls(const LogSummary& log, const std::string& function, std::size_t count)
{
    EXPECT_EQ(log.Entries.at(function), count);
    EXPECT_EQ(log.Exits.at(function), count);
}

TEST(FaultProcess, EndingWithoutDestructAndWithoutFlushLosesNoLine)
{
    if (!ChildRole().empty()) {
        static Session* const session = new Session({{"LogFlush", "0"}});
        session->Construct();
        for (UNUM32 i = 0; i < 100; ++i)
            session->Api().PDULockResource(1, i, 3);
        session->Fake().Discard();
        return;
    }
    const TemporaryFolder folder;
    ExpectGoodEnd(folder);
    const LogSummary log = Summarise(LogInOrder(LogFolderOfChild(folder)));
    EXPECT_EQ(WrongLines(log), "");
    ExpectCalls(log, "PDULockResource", 100u);
}

TEST(FaultProcess, AForkedChildLogsItsOwnCallsAndNoneOfItsParentsAgain)
{
    if (!ChildRole().empty()) {
        static Session* const session = new Session({{"LogFlush", "0"}});
        session->Construct();
        session->Fake().Discard();
        session->Api().PDULockResource(1, 2, 3);
        EXPECT_EQ(RunForked([] { session->Api().PDUConnect(1, 2); }), 0);
        session->Api().PDUUnlockResource(1, 2, 3);
        return;
    }
    if (!Forks)
        GTEST_SKIP() << "this system does not fork";
    const TemporaryFolder folder;
    ExpectGoodEnd(folder);
    const std::string log = WithoutStamps(LogInOrder(LogFolderOfChild(folder)));
    EXPECT_EQ(log.substr(log.find("+ PDULock")),
              "+ PDULockResource(hMod=0x00000001, hCLL=0x00000002, LockMask=3)\n"
              "{stamp} - PDULockResource<PDU_STATUS_NOERROR (0x0000)>\n"
              "{stamp} + PDUConnect(hMod=0x00000001, hCLL=0x00000002)\n"
              "{stamp} - PDUConnect<PDU_STATUS_NOERROR (0x0000)>\n"
              "{stamp} + PDUUnlockResource(hMod=0x00000001, hCLL=0x00000002, LockMask=3)\n"
              "{stamp} - PDUUnlockResource<PDU_STATUS_NOERROR (0x0000)>\n");
}

TEST(FaultProcess, AForkAfterTheLibraryIsUnloadedWorks)
{
    if (!ChildRole().empty()) {
        Session().Construct();
        EXPECT_EQ(RunForked([] {}), 0);
        return;
    }
    if (!Forks)
        GTEST_SKIP() << "this system does not fork";
    const TemporaryFolder folder;
    ExpectGoodEnd(folder);
}

#ifdef MARVANE_SANITIZED
constexpr UNUM32 CallsDuringForks = 20000;
#else
constexpr UNUM32 CallsDuringForks = 100000;
#endif

TEST(FaultProcess, AChildForkedWhileOtherThreadsLogCanLog)
{
    if (!ChildRole().empty()) {
        static Session* const session = new Session({{"LogFlush", "0"}});
        session->Construct();
        session->Fake().Discard();
        static std::atomic<bool> done = false;
        // Detached, since the forked child cannot join it.
        std::thread([] {
            for (UNUM32 i = 0; i < CallsDuringForks; ++i)
                session->Api().PDULockResource(1, i, 3);
            done = true;
        }).detach();
        for (int i = 0; i < 20; ++i)
            EXPECT_EQ(RunForked([] { session->Api().PDUConnect(1, 2); }), 0);
        while (!done)
            std::this_thread::yield();
        return;
    }
    if (!Forks)
        GTEST_SKIP() << "this system does not fork";
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "the sanitizer's allocator is not released in a forked child, which then hangs";
#endif
    const TemporaryFolder folder;
    ExpectGoodEnd(folder);
    const LogSummary log = Summarise(LogInOrder(LogFolderOfChild(folder)));
    EXPECT_EQ(WrongLines(log), "");
    ExpectCalls(log, "PDUConnect", 20u);
    ExpectCalls(log, "PDULockResource", CallsDuringForks);
}

/// Makes calls and expects the target's statuses.
void ExpectUnchangedCalls(Session& session, UNUM32 count)
{
    session.Fake().Answer = [](const FakeCall& call) {
        return call.Count > 1 ? static_cast<T_PDU_ERROR>(call.Arguments[1]) : PDU_STATUS_NOERROR;
    };
    for (UNUM32 i = 0; i < count; ++i)
        ASSERT_EQ(session.Api().PDULockResource(1, i, 3), i);
}

TEST(FaultTwoProcesses, InOneFolderTrimEachOthersFilesAndBothContinue)
{
    if (!ChildRole().empty()) {
        const std::string shared = (std::filesystem::temp_directory_path() / "shared").string();
        Session session({{"LogFileDir", shared}, {"LogFileMaxSize", "9000"}, {"LogFileMaxNum", "1"}});
        EXPECT_EQ(session.Construct(), PDU_STATUS_NOERROR);
        ExpectUnchangedCalls(session, 300);
        return;
    }
    const TemporaryFolder folder;
    ChildProcess first("first", folder);
    ChildProcess second("second", folder);
    EXPECT_EQ(first.Wait(), 0) << first.Output();
    EXPECT_EQ(second.Wait(), 0) << second.Output();
}

TEST(FaultTwoProcesses, ThatStartInDifferentSecondsHaveAWholeFileEach)
{
    if (!ChildRole().empty()) {
        const std::string shared = (std::filesystem::temp_directory_path() / "shared").string();
        Session session({{"LogFileDir", shared}, {"LogFileMaxNum", "9"}});
        EXPECT_EQ(session.Construct(), PDU_STATUS_NOERROR);
        ExpectUnchangedCalls(session, 200);
        return;
    }
    const TemporaryFolder folder;
    const auto shared = folder.Path() / "shared";
    ChildProcess first("first", folder);
    ASSERT_TRUE(first.RunsUntil([&] {
        std::error_code none;
        return std::filesystem::directory_iterator(shared, none) != std::filesystem::directory_iterator();
    })) << first.Output();
    // By the clock of the names: std::time may be some milliseconds late.
    const auto clockSecond = [] {
        return std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
    };
    for (const auto second = clockSecond(); clockSecond() == second;)
        std::this_thread::yield();
    ChildProcess second("second", folder);
    EXPECT_EQ(first.Wait(), 0) << first.Output();
    EXPECT_EQ(second.Wait(), 0) << second.Output();
    std::size_t files = 0;
    for (const auto& entry : std::filesystem::directory_iterator(shared)) {
        const LogSummary log = Summarise(FileText(entry.path()));
        EXPECT_EQ(WrongLines(log), "");
        EXPECT_EQ(log.Exits.at("PDULockResource"), 200u);
        ++files;
    }
    EXPECT_EQ(files, 2u);
}

} // namespace
} // namespace marvane::testing
