#include "platform/whole_path.h"

#include <gtest/gtest.h>

#include "platform/utf8_path.h"
#include "tests/support/temporary_folder.h"

namespace marvane::platform {
namespace {

const bool OnWindows = std::filesystem::path::preferred_separator == '\\';

std::string Whole(const std::string& path)
{
    return PathText(WholePath(FilePath(path)));
}
std::string Resolved(const std::string& path)
{
    return PathText(ResolvedPath(FilePath(path)));
}

TEST(WholePaths, BeginAtTheCurrentFolder)
{
    EXPECT_EQ(WholePath("a/../b"), std::filesystem::current_path() / "b");
    EXPECT_EQ(ResolvedPath("no/../such"), std::filesystem::current_path() / "such");
}

TEST(WholePaths, AreFollowedOnlyToWhatExists)
{
    std::error_code failed;
    EXPECT_EQ(FollowedPath("..", failed), std::filesystem::current_path().parent_path());
    EXPECT_FALSE(failed);
    FollowedPath("no/such", failed);
    EXPECT_TRUE(failed);
}

TEST(WholePaths, ThatLeadToALinkAreFollowedToItsTarget)
{
    if (OnWindows)
        GTEST_SKIP() << "links need a right here";
    const testing::TemporaryFolder folder;
    testing::WriteFileBytes(folder / "file", "");
    std::filesystem::create_symlink("file", folder.Path() / "link");
    std::filesystem::create_symlink("nothing", folder.Path() / "dangling");
    std::error_code failed;
    EXPECT_EQ(FollowedPath(folder.Path() / "link", failed),
              std::filesystem::canonical(folder.Path()) / "file");
    EXPECT_FALSE(failed);
    FollowedPath(folder.Path() / "dangling", failed);
    EXPECT_TRUE(failed);
}

TEST(WholePaths, OfASharesFoldersStayThere)
{
    if (!OnWindows)
        GTEST_SKIP() << "there are no shares in paths here";
    EXPECT_EQ(Whole(R"(\\server\share\logs\)"), R"(\\server\share\logs\)");
    EXPECT_EQ(Whole(R"(\\server\share\a\..\logs)"), R"(\\server\share\logs)");
    EXPECT_EQ(Whole("//server/share/logs"), R"(\\server\share\logs)");
    EXPECT_EQ(Whole(R"(\\?\C:\logs)"), R"(\\?\C:\logs)");
    EXPECT_EQ(Resolved(R"(\\server\share\.\logs)"), R"(\\server\share\logs)");
}

TEST(WholePaths, HaveOneSeparatorAtTheirRootElsewhere)
{
    if (OnWindows)
        GTEST_SKIP() << "two separators begin a share here";
    EXPECT_EQ(Whole("//server/share/logs"), "/server/share/logs");
    EXPECT_EQ(Resolved("//server/share/logs"), "/server/share/logs");
}

} // namespace
} // namespace marvane::platform
