// The target library is loaded by its full path if it has one, and without a message box.
#include "platform/library.h"

#include <filesystem>

#include <gtest/gtest.h>

#include <windows.h>

#include "tests/support/session.h"

namespace marvane {
namespace {

using testing::BuildFolder;
using testing::LibraryName;

TEST(LoadingOnWindows, OfABareNameIsLeftToTheSearchOfTheSystem)
{
    const platform::LoadedLibrary found = platform::LoadTargetLibrary("kernel32.dll");
    ASSERT_NE(found.Handle, nullptr) << found.Error;
    platform::UnloadLibrary(found.Handle);
    EXPECT_EQ(platform::LoadTargetLibrary("no_such_library.dll").Handle, nullptr);
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
