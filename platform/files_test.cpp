#include "platform/files.h"

#include <algorithm>
#include <filesystem>

#include <gtest/gtest.h>

#include "tests/support/temporary_folder.h"

namespace marvane {
namespace {

using testing::TemporaryFolder;

const bool OnLinux = platform::PathSeparator == '/';

TEST(Files, AreFoundByPatternAndFoldersAreNot)
{
    const TemporaryFolder folder;
    for (const char* name : {"log_ab.txt", "log_cd.txt", "log_abc.txt", "log_ab.doc"})
        testing::WriteFileBytes(folder / name, "");
    std::filesystem::create_directory(folder / "log_ef.txt");
    auto found = platform::FindFiles(folder / "log_\?\?.txt");
    ASSERT_TRUE(found);
    std::sort(found->begin(), found->end());
    EXPECT_EQ(*found, (std::vector<std::string>{"log_ab.txt", "log_cd.txt"}));
    EXPECT_EQ(platform::FindFiles(folder / "log_e\?.txt"), std::vector<std::string>());
    EXPECT_EQ(platform::FindFiles(folder / "log_x\?.txt"), std::nullopt);
    EXPECT_EQ(platform::FindFiles(folder / "none" + platform::PathSeparator + "\?"), std::nullopt);
}

TEST(Files, FoldersAreMadeOnceAndInChains)
{
    const TemporaryFolder folder;
    EXPECT_FALSE(platform::PathExists(folder / "a"));
    EXPECT_TRUE(platform::MakeDirectory(folder / "a"));
    EXPECT_TRUE(platform::MakeDirectory(folder / "a"));
    EXPECT_TRUE(platform::PathExists(folder / "a"));
    EXPECT_FALSE(platform::MakeDirectory(folder / (std::string("b") + platform::PathSeparator + "c")));
    platform::MakeDirectoryChain(folder / (std::string("b") + platform::PathSeparator + "c") +
                                 platform::PathSeparator);
    EXPECT_TRUE(std::filesystem::is_directory(folder.Path() / "b" / "c"));
}

TEST(Files, TheRootOfAnAbsolutePathExistsWhereThereIsOne)
{
    EXPECT_EQ(platform::PathExists(""), OnLinux);
}

TEST(Files, ALogIsAppendedToAndReadMeanwhile)
{
    const TemporaryFolder folder;
    for (int i = 0; i < 2; ++i) {
        const platform::File file = platform::OpenLogFile(folder / "log");
        ASSERT_NE(file, platform::NoFile);
        const std::size_t bytes = OnLinux ? 5 : 6;
        EXPECT_EQ(platform::WriteToFile(file, "li", "ne\n"), platform::Written(5, bytes));
        EXPECT_EQ(platform::WriteToFile(file, "", ""), platform::Written());
        EXPECT_EQ(platform::FileSize(file), bytes * static_cast<std::size_t>(i + 1));
        EXPECT_FALSE(testing::FileText(folder / "log").empty());
        platform::CloseFile(file);
    }
    EXPECT_EQ(testing::FileText(folder / "log"), "line\nline\n");
    EXPECT_EQ(platform::OpenLogFile(folder / "none" + platform::PathSeparator + "log"), platform::NoFile);
}

TEST(Files, ATemporaryFileFollowsNoSymbolicLinkAndIsItsOwnersAlone)
{
    if (!OnLinux)
        GTEST_SKIP() << "there such a file is opened plainly";
    const TemporaryFolder folder;
    testing::WriteFileBytes(folder / "precious", "untouched");
    std::filesystem::create_symlink(folder / "precious", folder / "link");
    EXPECT_EQ(platform::OpenTemporaryStream(folder / "link", "w"), nullptr);
    EXPECT_EQ(testing::FileText(folder / "precious"), "untouched");
    std::FILE* const stream = platform::OpenTemporaryStream(folder / "own", "w");
    ASSERT_NE(stream, nullptr);
    std::fclose(stream);
    using std::filesystem::perms;
    EXPECT_EQ(std::filesystem::status(folder / "own").permissions() & perms::all,
              perms::owner_read | perms::owner_write);
}

} // namespace
} // namespace marvane
