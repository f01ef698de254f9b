// The target library is loaded as it is named, without a search and without a message box.
#include "platform/library.h"

#include <filesystem>

#include <gtest/gtest.h>

#include <windows.h>

#include "tests/support/session.h"

namespace marvane {
namespace {

using testing::BuildFolder;
using testing::LibraryName;

TEST(LoadingOnWindows, OfABareNameDoesNotSearch)
{
    EXPECT_NE(platform::LoadTargetLibrary(BuildFolder() + LibraryName("fake_target")).Handle, nullptr);
    const platform::LoadedLibrary bare = platform::LoadTargetLibrary("kernel32.dll");
    EXPECT_EQ(bare.Handle, nullptr);
    EXPECT_FALSE(bare.Error.empty());
}

TEST(LoadingOnWindows, OfARelativePathIsFromTheCurrentFolder)
{
    const std::string relative =
        std::filesystem::relative(BuildFolder() + LibraryName("fake_target")).string();
    const platform::LoadedLibrary library = platform::LoadTargetLibrary(".\\" + relative);
    ASSERT_NE(library.Handle, nullptr) << library.Error;
    platform::UnloadLibrary(library.Handle);
}

TEST(LoadingOnWindows, LeavesTheErrorModeOfTheThread)
{
    DWORD former = 0;
    SetThreadErrorMode(SEM_NOGPFAULTERRORBOX, &former);
    platform::LoadTargetLibrary(BuildFolder() + "none.dll");
    EXPECT_EQ(GetThreadErrorMode(), SEM_NOGPFAULTERRORBOX);
    SetThreadErrorMode(former, nullptr);
}

} // namespace
} // namespace marvane
