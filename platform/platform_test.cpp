#include "platform/platform.h"

#include <algorithm>
#include <cstdlib>
#include <thread>

#include <gtest/gtest.h>

#include "tests/support/session.h"

namespace marvane {
namespace {

using testing::BuildFolder;
using testing::EnvironmentValue;
using testing::LibraryName;
using testing::TemporaryFolder;

const bool OnLinux = platform::PathSeparator == '/';

TEST(LocalTime, AgreesWithTheCalendar)
{
    // The second may change between the two readings; then they are made again.
    for (;;) {
        const std::tm before = platform::LocalCalendarTime();
        const platform::LocalTime time = platform::ReadLocalTime();
        const std::tm after = platform::LocalCalendarTime();
        if (before.tm_sec != after.tm_sec)
            continue;
        EXPECT_EQ(time.Hour, before.tm_hour);
        EXPECT_EQ(time.Minute, before.tm_min);
        EXPECT_EQ(time.Second, before.tm_sec);
        EXPECT_LT(time.Milliseconds, 1000);
        return;
    }
}

TEST(UtcTime, BreaksSecondsDown)
{
    const std::tm time = platform::UtcCalendarTime(1'000'000'000);
    EXPECT_EQ(time.tm_hour, 1);
    EXPECT_EQ(time.tm_min, 46);
    EXPECT_EQ(time.tm_sec, 40);
}

TEST(ThreadId, IsStableInAThreadAndAnotherInAnother)
{
    const std::uint32_t own = platform::CurrentThreadId();
    EXPECT_EQ(platform::CurrentThreadId(), own);
    std::uint32_t other = own;
    std::thread([&] { other = platform::CurrentThreadId(); }).join();
    EXPECT_NE(other, own);
}

TEST(Environment, ReferencesAreReplacedAndUnknownOnesStay)
{
    const EnvironmentValue variable("MARVANE_PLATFORM_TEST", "value");
    EXPECT_EQ(platform::ExpandEnvironment("a %MARVANE_PLATFORM_TEST% b"), "a value b");
    EXPECT_EQ(platform::ExpandEnvironment("%NO_SUCH_VARIABLE%"), "%NO_SUCH_VARIABLE%");
    EXPECT_EQ(platform::ExpandEnvironment("%MARVANE_PLATFORM_TEST% 100 %"), "value 100 %");
    EXPECT_EQ(platform::ExpandEnvironment(""), "");
}

TEST(Environment, TheTemporaryFolderHasStandIns)
{
    if (!OnLinux)
        GTEST_SKIP() << "the system has its own";
    const EnvironmentValue none("TEMP", std::nullopt);
    {
        const EnvironmentValue other("TMPDIR", "/other");
        EXPECT_EQ(platform::ExpandEnvironment("%TEMP%/x"), "/other/x");
    }
    const EnvironmentValue neither("TMPDIR", std::nullopt);
    EXPECT_EQ(platform::ExpandEnvironment("%TEMP%/x"), "/tmp/x");
}

TEST(Environment, TheFolderForSettingsHasStandIns)
{
    if (!OnLinux)
        GTEST_SKIP() << "the system has its own";
    const EnvironmentValue none("APPDATA", std::nullopt);
    const EnvironmentValue home("HOME", "/home/me");
    {
        const EnvironmentValue other("XDG_CONFIG_HOME", "/config");
        EXPECT_EQ(platform::ExpandEnvironment("%APPDATA%"), "/config");
    }
    const EnvironmentValue neither("XDG_CONFIG_HOME", std::nullopt);
    EXPECT_EQ(platform::ExpandEnvironment("%APPDATA%"), "/home/me/.config");
}

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
        platform::WriteToFile(file, "li", "ne\n");
        platform::WriteToFile(file, "", "");
        EXPECT_EQ(platform::FileSize(file), platform::SizeInFile("line\n") * static_cast<std::size_t>(i + 1));
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

TEST(Pointers, PrintAsTheSystemsLibraryPrintsThem)
{
    char text[platform::PointerTextSize];
    const auto print = [&](const void* pointer) {
        return std::string(text, platform::PointerText(pointer, text));
    };
    const void* const some = reinterpret_cast<const void*>(0x12AB34CD5EF0);
    EXPECT_EQ(print(some), OnLinux ? "0x12ab34cd5ef0" : "000012AB34CD5EF0");
    EXPECT_EQ(print(nullptr), OnLinux ? "(nil)" : "0000000000000000");
    const void* const all = reinterpret_cast<const void*>(~std::uintptr_t{0});
    EXPECT_EQ(print(all), OnLinux ? "0xffffffffffffffff" : "FFFFFFFFFFFFFFFF");
}

} // namespace
} // namespace marvane
