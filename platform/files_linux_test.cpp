// What others may have put in place of our files.
#include "platform/files.h"

#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "tests/support/child_process.h"
#include "tests/support/temporary_folder.h"

namespace marvane {
namespace {

using testing::FileText;
using testing::TemporaryFolder;
using testing::WriteFileBytes;
namespace fs = std::filesystem;

void LetOthersWrite(const TemporaryFolder& folder)
{
    fs::permissions(folder.Path(), fs::perms::all);
}

bool IsOpened(const std::string& path)
{
    const platform::File file = platform::OpenLogFile(path);
    if (file == platform::NoFile)
        return false;
    platform::CloseFile(file);
    return true;
}

/// Gives a file to another user. False if we may not.
bool GiveAway(const std::string& path)
{
    constexpr uid_t nobody = 65534;
    return chown(path.c_str(), nobody, nobody) == 0;
}

TEST(PlantedLogFile, ALinkIsNotFollowed)
{
    const TemporaryFolder folder;
    WriteFileBytes(folder / "precious", "untouched");
    fs::create_symlink(folder / "precious", folder / "link");
    EXPECT_FALSE(IsOpened(folder / "link"));
    fs::create_symlink(folder / "unmade", folder / "dangling");
    EXPECT_FALSE(IsOpened(folder / "dangling"));
    EXPECT_FALSE(fs::exists(folder / "unmade"));
}

TEST(PlantedLogFile, APipeAndADeviceAreRefusedAndBlockNobody)
{
    const TemporaryFolder folder;
    ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0666), 0);
    EXPECT_FALSE(IsOpened(folder / "pipe"));
    EXPECT_FALSE(IsOpened("/dev/null"));
}

TEST(PlantedLogFile, AHardLinkIsRefusedWhereOthersMayWrite)
{
    const TemporaryFolder folder;
    WriteFileBytes(folder / "precious", "untouched");
    fs::create_hard_link(folder / "precious", folder / "link");
    EXPECT_TRUE(IsOpened(folder / "link")) << "in a folder of our own";
    LetOthersWrite(folder);
    EXPECT_FALSE(IsOpened(folder / "link"));
}

TEST(PlantedLogFile, OfAnotherUserIsRefusedWhereOthersMayWrite)
{
    const TemporaryFolder folder;
    WriteFileBytes(folder / "log", "");
    if (!GiveAway(folder / "log"))
        GTEST_SKIP() << "needs the rights of the superuser";
    EXPECT_TRUE(IsOpened(folder / "log")) << "in a folder of our own";
    LetOthersWrite(folder);
    EXPECT_FALSE(IsOpened(folder / "log"));
}

TEST(PlantedLogFile, IsNotFoundWhereOneIsRefused)
{
    const TemporaryFolder folder;
    LetOthersWrite(folder);
    for (const char* name : {"log_1", "precious"})
        WriteFileBytes(folder / name, "");
    fs::create_symlink(folder / "precious", folder / "log_2");
    ASSERT_EQ(mkfifo((folder / "log_3").c_str(), 0666), 0);
    WriteFileBytes(folder / "other", "");
    fs::create_hard_link(folder / "other", folder / "log_4");
    EXPECT_EQ(platform::FindFiles(folder / "log_\?"), std::vector<std::string>{"log_1"});
}

TEST(PlantedTemporaryFile, AHardLinkIsNotEmptied)
{
    const TemporaryFolder folder;
    WriteFileBytes(folder / "precious", "untouched");
    fs::create_hard_link(folder / "precious", folder / "x.log");
    EXPECT_EQ(platform::OpenTemporaryStream(folder / "x.log", "w"), nullptr);
    EXPECT_EQ(FileText(folder / "precious"), "untouched");
}

TEST(PlantedTemporaryFile, OfAnotherUserIsLeftAloneAndOursHasOurNumberInItsName)
{
    const TemporaryFolder folder;
    WriteFileBytes(folder / "x.log", "theirs");
    if (!GiveAway(folder / "x.log"))
        GTEST_SKIP() << "needs the rights of the superuser";
    std::FILE* const stream = platform::OpenTemporaryStream(folder / "x.log", "w");
    ASSERT_NE(stream, nullptr);
    std::fputs("ours", stream);
    std::fclose(stream);
    EXPECT_EQ(FileText(folder / "x.log"), "theirs");
    EXPECT_EQ(FileText(folder / ("x-" + std::to_string(geteuid()) + ".log")), "ours");
}

TEST(PlantedTemporaryFile, AFileOfOurOwnIsEmptiedOrAppendedTo)
{
    const TemporaryFolder folder;
    for (const char* const mode : {"w", "w", "a"}) {
        std::FILE* const stream = platform::OpenTemporaryStream(folder / "x.log", mode);
        ASSERT_NE(stream, nullptr);
        std::fputs("line\n", stream);
        std::fclose(stream);
    }
    EXPECT_EQ(FileText(folder / "x.log"), "line\nline\n");
}

TEST(PlantedConfiguration, APipeIsNotRead)
{
    const TemporaryFolder folder;
    ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0666), 0);
    EXPECT_EQ(platform::OpenForReading(folder / "pipe"), nullptr);
}

/// Closes the standard streams and opens one file of each kind: all must get another descriptor.
void OpenWithoutStandardStreams(const TemporaryFolder& folder)
{
    for (const int descriptor : {0, 1, 2})
        close(descriptor);
    WriteFileBytes(folder / "text", "");
    std::FILE* const temporary = platform::OpenTemporaryStream(folder / "x.log", "w");
    std::FILE* const read = platform::OpenForReading(folder / "text");
    const bool good = platform::OpenLogFile(folder / "log") > 2 && temporary && fileno(temporary) > 2 &&
                      read && fileno(read) > 2 && fcntl(0, F_GETFD) == -1 && fcntl(1, F_GETFD) == -1 &&
                      fcntl(2, F_GETFD) == -1;
    std::_Exit(good ? 0 : 1);
}

TEST(Descriptors, OfTheStandardStreamsAreNeverTaken)
{
    const TemporaryFolder folder;
    EXPECT_EQ(testing::RunForked([&] { OpenWithoutStandardStreams(folder); }), 0);
}

} // namespace
} // namespace marvane
