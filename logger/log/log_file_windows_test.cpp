// A thread is terminated at any moment while it writes the log.
#include "logger/log/log_file.h"

#include <algorithm>
#include <atomic>
#include <set>
#include <sstream>

#include <gtest/gtest.h>

#include <windows.h>

#include "platform/lock.h"
#include "tests/support/temporary_folder.h"

namespace marvane {
namespace {

constexpr std::size_t LineLength = 300;

/// A line of dots with a number at both ends, or its beginning. Allocates nothing and calls nothing that
/// could be left locked.
struct NumberedLine
{
    explicit NumberedLine(unsigned number)
    {
        std::fill(Text, Text + LineLength, '.');
        for (std::size_t i = 0; i < 8; ++i, number /= 10)
            Text[7 - i] = Text[LineLength - 2 - i] = static_cast<char>('0' + number % 10);
        Text[LineLength - 1] = '\n';
    }
    std::string_view All() const { return {Text, LineLength}; }

    char Text[LineLength];
};

class TerminatedWriter : public ::testing::Test
{
protected:
    ~TerminatedWriter() override { platform::DestroyMutex(mutex); }

    void WriteLine(bool flush)
    {
        platform::LockMutex(mutex, -1);
        const NumberedLine line(++last);
        file->Write(line.All(), flush);
        ++written;
        platform::UnlockMutex(mutex);
    }

    static DWORD WINAPI WriteAndSleep(void* test)
    {
        for (int i = 0; i < 200; ++i)
            static_cast<TerminatedWriter*>(test)->WriteLine(i % 2 == 1);
        Sleep(INFINITE);
        return 0;
    }

    /// Lets a thread write some lines, and terminates it.
    void WriteUntilTerminated(unsigned lines)
    {
        const unsigned until = written + lines;
        const HANDLE writer = CreateThread(nullptr, 0, WriteAndSleep, this, 0, nullptr);
        while (written < until)
            SwitchToThread();
        TerminateThread(writer, 0);
        WaitForSingleObject(writer, INFINITE);
        CloseHandle(writer);
    }

    const testing::TemporaryFolder folder;
    const std::string path = folder / "log";
    std::unique_ptr<LogFile> file = LogFile::Open(path);
    const platform::Mutex mutex = platform::CreateRecursiveMutex();
    std::atomic<unsigned> last = 0;
    std::atomic<unsigned> written = 0;
};

TEST_F(TerminatedWriter, LeavesOneCutLineAtMostAndNoneTwice)
{
    constexpr unsigned rounds = 60;
    std::set<std::string> own;
    for (unsigned i = 0; i < rounds; ++i) {
        WriteUntilTerminated(1 + i * 7 % 40);
        WriteLine(true);
        const NumberedLine line(last);
        own.insert(std::string(line.All().substr(0, LineLength - 1)));
    }
    file.reset();
    std::istringstream text(testing::FileText(path));
    std::set<std::string> whole;
    unsigned cut = 0;
    for (std::string line; std::getline(text, line);) {
        const NumberedLine expected(static_cast<unsigned>(std::stoul("0" + line.substr(0, 8))));
        if (line == expected.All().substr(0, LineLength - 1))
            EXPECT_TRUE(whole.insert(line).second) << "twice: " << line;
        else {
            EXPECT_TRUE(line.size() < 8 || expected.All().starts_with(line)) << line;
            ++cut;
        }
    }
    EXPECT_LE(cut, rounds);
    EXPECT_TRUE(std::includes(whole.begin(), whole.end(), own.begin(), own.end()));
    // In each round a text and the buffer before it may be lost.
    EXPECT_GE(whole.size() + rounds * (4096 / LineLength + 2), last);
}

} // namespace
} // namespace marvane
