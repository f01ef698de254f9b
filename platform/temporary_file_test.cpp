#include "platform/temporary_file.h"

#include <chrono>
#include <filesystem>
#include <thread>

#include <gtest/gtest.h>

#include "tests/support/child_process.h"

namespace marvane::platform {
namespace {

TEST(TemporaryFileOfAProcess, GivesBackWhatWasAppended)
{
    const auto file = TemporaryFile::Make();
    ASSERT_NE(file, nullptr);
    EXPECT_TRUE(file->Append("one\r\n"));
    EXPECT_TRUE(file->Append(std::string(3'000'000, 'x')));
    EXPECT_EQ(file->Size(), 3'000'005u);
    char bytes[8];
    EXPECT_EQ(file->ReadAt(1, std::span(bytes, 6)), 6u);
    EXPECT_EQ(std::string(bytes, 6), "ne\r\nxx");
    EXPECT_EQ(file->ReadAt(3'000'003, bytes), 2u);
    EXPECT_EQ(file->ReadAt(3'000'005, bytes), 0u);
}

/// Makes one, says so, and waits to be killed.
[[noreturn]] void HoldAFile()
{
    const auto file = TemporaryFile::Make();
    const bool isWritten = file && file->Append("what must not stay");
    testing::WriteFileBytes(
        (std::filesystem::temp_directory_path() / (isWritten ? "ready" : "failed")).string(), "");
    for (;;)
        std::this_thread::sleep_for(std::chrono::hours(1));
}

TEST(TemporaryFileOfAProcess, IsGoneWhenTheProcessIsKilled)
{
    if (!testing::ChildRole().empty())
        HoldAFile();
    const testing::TemporaryFolder folder;
    testing::ChildProcess child("holder", folder);
    ASSERT_TRUE(child.RunsUntil([&] { return std::filesystem::exists(folder.Path() / "ready"); }));
    child.Kill();
    for (const auto& entry : std::filesystem::directory_iterator(folder.Path()))
        EXPECT_EQ(entry.path().filename().string().find("marvane-"), std::string::npos) << entry.path();
}

} // namespace
} // namespace marvane::platform
