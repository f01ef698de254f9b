// The process is killed while several threads call: with LogFlush 1 no line of a call is lost.
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "platform/files.h"
#include "tests/support/child_process.h"
#include "tests/support/log_summary.h"
#include "tests/support/session.h"

namespace marvane::testing {
namespace {

// Four quarters of 13 kills, each with and without rotation: 104. Fewer where starting a process is
// expensive.
#ifdef MARVANE_SANITIZED
constexpr bool Slow = true;
constexpr int KillsOfAQuarter = 3;
#else
const bool Slow = platform::PathSeparator != '/';
const int KillsOfAQuarter = Slow ? 2 : 13;
#endif
const int MostCalls = Slow ? 100 : 400; ///< of the first thread, until a kill
constexpr int Quarters = 4;

/// The calls of three threads, one function each, all with a number as second argument.
struct NumberedCall
{
    const char* Name;
    void (*Call)(const CPduDll& api, UNUM32 number);
};
const NumberedCall NumberedCalls[] = {
    {"PDULockResource", [](const CPduDll& api, UNUM32 number) { api.PDULockResource(1, number, 3); }},
    {"PDUConnect", [](const CPduDll& api, UNUM32 number) { api.PDUConnect(1, number); }},
    {"PDUGetEventItem", [](const CPduDll& api, UNUM32 number) { api.PDUGetEventItem(1, number, nullptr); }},
};

std::filesystem::path JournalOf(const NumberedCall& call, const std::filesystem::path& folder)
{
    return folder / (std::string(call.Name) + ".journal");
}

/// More than the parent waits for, so that the child is killed while it calls. Without an end a thread
/// could fill a large log while others wait for the lock.
constexpr UNUM32 CallsOfAThread = 600;

/// Makes numbered calls, appends a byte to their journal for each one that has returned, and waits to be
/// killed.
[[noreturn]] void CallAndWait(const Session& session, const NumberedCall& call,
                              const std::filesystem::path& journals)
{
    std::FILE* const journal = std::fopen(JournalOf(call, journals).string().c_str(), "wb");
    for (UNUM32 number = 0; number < CallsOfAThread; ++number) {
        call.Call(session.Api(), number);
        std::fputc('.', journal);
        std::fflush(journal);
    }
    for (;;)
        std::this_thread::sleep_for(std::chrono::seconds(1));
}

/// The child: calls on all threads until it is killed.
[[noreturn]] void CallUntilKilled(Changes changes)
{
    // The session sets a temporary folder of its own.
    const auto journals = std::filesystem::temp_directory_path();
    Session session(changes);
    session.Construct();
    session.Fake().Discard();
    std::vector<std::thread> threads;
    for (const NumberedCall& call : NumberedCalls)
        threads.emplace_back([&] { CallAndWait(session, call, journals); });
    threads.front().join();
    std::abort();
}

/// The log folder of the one session that a child process had in this folder.
std::filesystem::path LogFolderOfChild(const TemporaryFolder& folder)
{
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder.Path()))
        if (entry.path().filename() == "logs")
            return entry.path();
    return {};
}

/// The numbers in the entry lines of a function, in the order of the log.
std::vector<UNUM32> LoggedNumbers(const std::string& log, const NumberedCall& call)
{
    const std::string entry = std::string("} + ") + call.Name + "(hMod=0x00000001, hCLL=0x";
    std::vector<UNUM32> numbers;
    for (std::size_t at = log.find(entry); at != std::string::npos; at = log.find(entry, at + 1))
        if (log.find('\n', at) != std::string::npos)
            numbers.push_back(static_cast<UNUM32>(std::stoul(log.substr(at + entry.size(), 8), nullptr, 16)));
    return numbers;
}

/// Expects that each call that returned has both its lines, and at most one more has begun.
void ExpectNoneLost(const std::string& log, const LogSummary& summary, const NumberedCall& call,
                    std::size_t returned)
{
    SCOPED_TRACE(call.Name);
    const std::vector<UNUM32> numbers = LoggedNumbers(log, call);
    const auto exits = summary.Exits.find(call.Name);
    EXPECT_GE(exits == summary.Exits.end() ? 0 : exits->second, returned);
    EXPECT_GE(numbers.size(), returned);
    EXPECT_LE(numbers.size(), returned + 1);
    for (std::size_t i = 0; i < numbers.size(); ++i)
        ASSERT_EQ(numbers[i], i);
}

/// Kills a child after at least this many calls of the first thread, and checks its log.
void KillAfter(std::uintmax_t calls)
{
    const TemporaryFolder folder;
    ChildProcess child("calling", folder);
    const auto journal = JournalOf(NumberedCalls[0], folder.Path());
    ASSERT_TRUE(child.RunsUntil([&] {
        std::error_code none;
        return std::filesystem::exists(journal) && std::filesystem::file_size(journal, none) >= calls;
    })) << child.Output();
    child.Kill();
    EXPECT_NE(child.Wait(), 0);
    const std::string log = LogInOrder(LogFolderOfChild(folder));
    const LogSummary summary = Summarise(log);
    EXPECT_EQ(WrongLines(summary), "");
    for (const NumberedCall& call : NumberedCalls)
        ExpectNoneLost(log, summary, call, FileBytes(JournalOf(call, folder.Path())).size());
}

class Killed : public ::testing::TestWithParam<int>
{
protected:
    void RunQuarter(Changes changes) const
    {
        if (!ChildRole().empty())
            CallUntilKilled(changes);
        for (int i = 0; i < KillsOfAQuarter && !HasFailure(); ++i)
            KillAfter(1 + static_cast<std::uintmax_t>((GetParam() * KillsOfAQuarter + i) * 37 % MostCalls));
    }
};

TEST_P(Killed, WithLogFlushOneLosesNoLine)
{
    RunQuarter({});
}

TEST_P(Killed, DuringRotationsLosesNoLine)
{
    RunQuarter({{"LogFileMaxSize", "9000"}, {"LogFileMaxNum", "1000"}});
}

TEST(ChildProcess, IsNotAwaitedAfterItsEnd)
{
    if (!ChildRole().empty())
        return;
    const TemporaryFolder folder;
    ChildProcess child("ending", folder);
    EXPECT_FALSE(child.RunsUntil([] { return false; }));
    EXPECT_EQ(child.Wait(), 0) << child.Output();
}

INSTANTIATE_TEST_SUITE_P(Quarters, Killed, ::testing::Range(0, Quarters));

} // namespace
} // namespace marvane::testing
