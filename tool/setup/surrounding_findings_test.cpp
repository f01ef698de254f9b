#include "tool/setup/surrounding_findings.h"

#include <chrono>
#include <thread>

#include <gtest/gtest.h>

#include "platform/files.h"
#include "platform/library.h"
#include "tests/support/child_process.h"
#include "tests/support/pattern.h"
#include "tests/support/session.h"
#include "tool/setup/file_uri.h"
#include "tool/setup/setup_files.h"

namespace marvane::tool {
namespace {

std::string Texts(const CheckFindings& findings)
{
    std::string texts;
    for (const CheckFinding& finding : findings)
        texts += finding.Place + ": " + finding.Text + "\n";
    return texts;
}

TEST(DiagnosticLogOfMarvane, ShowsItsLastWarnings)
{
    const testing::TemporaryFolder folder;
    const testing::EnvironmentValue temp("TEMP", folder.Path().string());
    EXPECT_EQ(Texts(DiagnosticLogFindings()), "");
    const std::string where = "1a2c:class CConfigData:533:CConfigData::ProcessConfigurationElements:";
    testing::WriteFileBytes(
        folder / "d-pdu-api-logger.log",
        "09:14:01.000000 WARN    " + where + "first\n09:14:02.123456 WARN    " + where +
            "Could not read: line\n09:14:02.123457 DEBUG   " + where + "pElement: x\n" +
            "09:14:02.123458 WARN    " + where + "Not an attribute\n09:14:03.000000 ERROR   " + where +
            "GetModuleHandle Error=5\r\n09:14:04.000000 WARN    " + where + "last\nno record\n");
    EXPECT_EQ(Texts(DiagnosticLogFindings()),
              "diagnostic log: " + (folder / "d-pdu-api-logger.log") +
                  "\n09:14:02 UTC  Could not read: line\n"
                  "09:14:03 UTC  GetModuleHandle Error=5\n09:14:04 UTC  last\n");
}

/// Loads the library in the temporary folder and keeps it until this process is killed.
[[noreturn]] void HoldTheLibrary()
{
    const std::filesystem::path folder = std::filesystem::temp_directory_path();
    const platform::LoadedLibrary loaded =
        platform::LoadTargetLibrary((folder / testing::LibraryName("SimVci")).string());
    testing::WriteFileBytes(folder / "ready", loaded.Error);
    for (;;)
        std::this_thread::sleep_for(std::chrono::hours(1));
}

TEST(OldProcesses, HoldTheTargetWithoutMarvane)
{
    if (!testing::ChildRole().empty())
        HoldTheLibrary();
    const testing::TemporaryFolder folder;
    const std::string library = folder / testing::LibraryName("SimVci");
    std::filesystem::copy_file(testing::BuildFolder() + testing::LibraryName("SimVci"), library);
    EXPECT_EQ(Texts(OldProcessFindings(folder / "marvane", library)), "");
    const testing::ChildProcess child("holder", folder);
    while (!std::filesystem::exists(folder.Path() / "ready"))
        std::this_thread::yield();
    const std::string program = platform::PathSeparator == '\\' ? "tool_tests.exe" : "tool_tests";
    EXPECT_EQ(testing::ReplaceMatches(Texts(OldProcessFindings(folder / "marvane", library)), "\\([0-9]+\\)",
                                      "(ID)"),
              "old process: " + program +
                  " (ID) has loaded the target library without Marvane: start it again.\n");
    // Without a target there is nothing to hold.
    EXPECT_EQ(Texts(OldProcessFindings(folder / "marvane", "")), "");
    // A process that holds Marvane too goes through it.
    EXPECT_EQ(Texts(OldProcessFindings(library, library)), "");
}

TEST(UriSpelling, IsNotedIfNotEveryApplicationTakesIt)
{
    const bool isWindows = platform::PathSeparator == '\\';
    RootEntry entry;
    entry.HasUri = true;
    entry.Uri = isWindows ? "file:///C:/a b/x.dll" : "file:///a b/x.so";
    EXPECT_EQ(Texts(SpellingFindings(entry)), "");
    const std::string plain = *entry.Uri;
    entry.Uri = isWindows ? "file:///C:/a%20b/x.dll" : "file:///a%20b/x.so";
    EXPECT_EQ(Texts(SpellingFindings(entry)), "root file: not every application understands the URI \"" +
                                                  *entry.Uri + "\"; all of them take \"" + plain + "\"\n");
}

} // namespace
} // namespace marvane::tool
