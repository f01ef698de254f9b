// What the library exports and imports.
#include <algorithm>
#include <cstring>

#include <gtest/gtest.h>

#include "pdu/functions.h"
#include "platform/files.h"
#include "tests/support/binary_tables.h"
#include "tests/support/session.h"

namespace marvane::testing {
namespace {

TEST(Exports, AreThe29FunctionsOfTheApiAndNothingElse)
{
    std::vector<std::string> expected(FunctionNames.begin(), FunctionNames.end());
    std::sort(expected.begin(), expected.end());
    ASSERT_EQ(expected.size(), 29u);
    EXPECT_EQ(ExportedNames(BuildFolder() + LibraryName("Marvane")), expected);
}

TEST(Exports, TheWindowsLibraryNeedsFourLibrariesOfTheSystem)
{
    if (platform::PathSeparator == '/')
        GTEST_SKIP() << "on this system the C++ runtime is the system's";
    std::vector<std::string> needed = ImportedLibraries(BuildFolder() + LibraryName("Marvane"));
    std::sort(needed.begin(), needed.end());
    // Each is in every process already, but for the reader of versions. ADVAPI32 is the stack guard's.
    EXPECT_EQ(needed,
              (std::vector<std::string>{"ADVAPI32.dll", "KERNEL32.dll", "VERSION.dll", "msvcrt.dll"}));
}

TEST(Exports, TheLibraryAsksForEveryGuardOfTheLinker)
{
#ifdef MARVANE_SANITIZED
    GTEST_SKIP() << "sanitizers bring guards of their own";
#endif
    std::string expected = "bound at load, read-only relocations, no executable stack";
    if (platform::PathSeparator != '/')
        expected = std::string("dynamic base, no execution") + (sizeof(void*) == 8 ? ", high entropy" : "");
    EXPECT_EQ(LinkerGuards(BuildFolder() + LibraryName("Marvane")), expected);
}

} // namespace
} // namespace marvane::testing
