#include "platform/library.h"

#include <algorithm>
#include <filesystem>

#include <gtest/gtest.h>

#include "tests/support/session.h"

namespace marvane {
namespace {

using testing::BuildFolder;
using testing::LibraryName;
using testing::TemporaryFolder;

TEST(Loading, GivesAReasonForWhatIsNotThere)
{
    for (const std::string& path : {std::string(), BuildFolder() + "none.so", BuildFolder()}) {
        const platform::LoadedLibrary library = platform::LoadTargetLibrary(path);
        EXPECT_EQ(library.Handle, nullptr) << path;
        EXPECT_FALSE(library.Error.empty()) << path;
    }
}

TEST(Loading, FindsFunctionsByTheirExactNames)
{
    const platform::LoadedLibrary library =
        platform::LoadTargetLibrary(BuildFolder() + LibraryName("fake_target"));
    ASSERT_NE(library.Handle, nullptr) << library.Error;
    EXPECT_NE(platform::FindFunction(library.Handle, "PDUConnect"), nullptr);
    EXPECT_EQ(platform::FindFunction(library.Handle, "PDUconnect"), nullptr);
    platform::UnloadLibrary(library.Handle);
}

TEST(Version, IsReadFromAFileAndMissingElsewhere)
{
    const auto version = platform::ProductVersion(BuildFolder() + LibraryName("fake_target"));
    ASSERT_TRUE(version);
    EXPECT_EQ(*version, (std::array<std::uint16_t, 4>{4, 3, 2, 1}));
    const TemporaryFolder folder;
    testing::WriteFileBytes(folder / "text", "no version");
    EXPECT_FALSE(platform::ProductVersion(folder / "text"));
    EXPECT_FALSE(platform::ProductVersion(folder / "none"));
}

TEST(Version, OfAFileCutAnywhereIsMissingOrTheSame)
{
    const std::string whole = testing::FileBytes(BuildFolder() + LibraryName("fake_target"));
    const auto version = platform::ProductVersion(BuildFolder() + LibraryName("fake_target"));
    const TemporaryFolder folder;
    for (std::size_t length = 0; length < whole.size();
         length += std::max<std::size_t>(1, whole.size() / 50)) {
        testing::WriteFileBytes(folder / "cut.so", whole.substr(0, length));
        const auto cut = platform::ProductVersion(folder / "cut.so");
        EXPECT_TRUE(!cut || cut == version) << length;
    }
}

TEST(OwnPath, IsTheFileThatHoldsThisCode)
{
    const platform::ModulePath own = platform::OwnModulePath(4096);
    EXPECT_EQ(own.ModuleError, 0u);
    EXPECT_EQ(own.FileNameError, 0u);
    EXPECT_TRUE(std::filesystem::exists(own.Path)) << own.Path;
    const platform::ModulePath cut = platform::OwnModulePath(own.Path.size());
    EXPECT_EQ(cut.Path, "");
    EXPECT_NE(cut.FileNameError, 0u);
}

} // namespace
} // namespace marvane
