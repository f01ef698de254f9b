#include "tool/setup/private_folder.h"

#include <gtest/gtest.h>

#include "platform/files.h"
#include "tests/support/temporary_folder.h"

namespace marvane::tool {
namespace {

namespace fs = std::filesystem;

TEST(PrivateFolder, GoesWithItsContents)
{
    fs::path path;
    {
        const PrivateFolder folder;
        path = folder.Path();
        testing::WriteFileBytes(path / "file", "text");
        EXPECT_TRUE(fs::exists(path / "file"));
    }
    EXPECT_FALSE(fs::exists(path));
}

TEST(PrivateFolder, IsOpenToItsOwnerAlone)
{
    if (platform::PathSeparator != '/')
        GTEST_SKIP() << "access lists of the parent folder apply";
    EXPECT_EQ(fs::status(PrivateFolder().Path()).permissions(), fs::perms::owner_all);
}

TEST(PrivateFolder, SaysThatThereIsNoPlaceForIt)
{
    if (platform::PathSeparator != '/')
        GTEST_SKIP() << "the system falls back on another folder";
    const testing::EnvironmentValue nowhere("TMPDIR", "/nonexistent");
    try {
        const PrivateFolder folder;
        ADD_FAILURE() << folder.Path();
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ(error.what(), "no temporary folder can be made: No such file or directory");
    }
}

TEST(PrivateFolder, IsEachTimeAnother)
{
    EXPECT_NE(PrivateFolder().Path(), PrivateFolder().Path());
}

} // namespace
} // namespace marvane::tool
