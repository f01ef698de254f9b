// Two processes that write to one log file at the same time, each line passed to the system at once.
#include <algorithm>
#include <thread>

#include <gtest/gtest.h>

#include "tests/support/child_process.h"
#include "tests/support/log_summary.h"
#include "tests/support/plain_append.h"
#include "tests/support/session.h"

namespace marvane::testing {
namespace {

#ifdef MARVANE_SANITIZED
constexpr UNUM32 Calls = 2000;
#else
constexpr UNUM32 Calls = 20000;
#endif

/// Lines of both processes: each call has two.
constexpr std::size_t Lines = std::size_t{2} * 2 * Calls;

constexpr std::string_view PlainLine =
    "{10:11:12.123 - 00000154} - PDULockResource<PDU_STATUS_NOERROR (0x0000)>\r\n";

/// Waits until the other of the two processes is there too.
void AwaitOther(const std::filesystem::path& folder, const std::string& role)
{
    WriteFileBytes(folder / ("ready " + role), "");
    for (const char* process : {"ready first", "ready second"})
        while (!std::filesystem::exists(folder / process))
            std::this_thread::yield();
}

void RunBoth(const TemporaryFolder& folder, const std::string& prefix)
{
    ChildProcess first(prefix + "first", folder);
    ChildProcess second(prefix + "second", folder);
    EXPECT_EQ(first.Wait(), 0) << first.Output();
    EXPECT_EQ(second.Wait(), 0) << second.Output();
}

/// How many lines two processes lose that do nothing but append to a file: the most in some rounds, which end
/// when that is `enough`.
std::size_t LinesThatTheSystemLoses(std::size_t enough)
{
    constexpr int rounds = 30;
    std::size_t most = 0;
    for (int round = 0; round < rounds && most < enough; ++round) {
        const TemporaryFolder folder;
        RunBoth(folder, "plain ");
        const auto size = static_cast<std::size_t>(std::filesystem::file_size(folder.Path() / "plain"));
        most = std::max(most, Lines - size / PlainLine.size());
    }
    return most;
}

/// The part of a child process: a session that logs to the file of the other one too, or plain lines.
void WriteLines(std::string role)
{
    const std::filesystem::path folder = std::filesystem::temp_directory_path();
    const std::string plain = "plain ";
    if (role.starts_with(plain)) {
        AwaitOther(folder, role.substr(plain.size()));
        return AppendPlainly(folder / "plain", PlainLine, 2 * Calls);
    }
    // A sole file is reused.
    Session session({{"LogFileDir", (folder / "shared").string()}, {"LogFileMaxNum", "0"}});
    ASSERT_EQ(session.Construct(), PDU_STATUS_NOERROR);
    session.Fake().Discard();
    AwaitOther(folder, role);
    for (UNUM32 i = 0; i < Calls; ++i)
        session.Api().PDULockResource(1, i, 3);
}

TEST(SharedLog, OfTwoProcessesLosesNoLineUnlessTheSystemLosesThoseOfAnyProgram)
{
    if (!ChildRole().empty())
        return WriteLines(ChildRole());
    const TemporaryFolder folder;
    const std::filesystem::path shared = folder.Path() / "shared";
    std::filesystem::create_directory(shared);
    WriteFileBytes(shared / "D-PDU_API_Logger_05-03-2020_10-11-12.LGR", "");
    RunBoth(folder, "");
    const LogSummary log = Summarise(LogInOrder(shared));
    const std::size_t lost = Lines - log.Entries.at("PDULockResource") - log.Exits.at("PDULockResource");
    if (lost == 0) {
        EXPECT_EQ(WrongLines(log), "");
        return;
    }
    // A system that emulates appending finds the end of the file first and writes there then. Under Wine both
    // programs lose 10 lines at some times and 3,000 at others.
    const std::size_t enough = lost / 10 + 1;
    EXPECT_GE(LinesThatTheSystemLoses(enough), enough) << lost << " lines of the log are lost";
}

} // namespace
} // namespace marvane::testing
