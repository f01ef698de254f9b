#include "platform/whole_path.h"

#include <gtest/gtest.h>

#include "platform/utf8_path.h"

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
