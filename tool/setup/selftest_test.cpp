// The selftest as it is run: on the package of this build, and on packages with a fault.
#include <algorithm>
#include <filesystem>
#include <vector>

#include <gtest/gtest.h>

#include "platform/child_process.h"
#include "platform/files.h"
#include "platform/library.h"
#include "platform/system_version.h"
#include "tests/support/pattern.h"
#include "tests/support/session.h"

namespace marvane::tool {
namespace {

class Selftest : public ::testing::Test
{
protected:
    Selftest()
    {
        CopyPackage(testing::BuildFolder(), "");
        std::filesystem::create_directory(temporary);
    }

    static std::string ProgramEnd() { return platform::PathSeparator == '\\' ? ".exe" : ""; }

    /// Puts the package of a build into a folder of this package.
    void CopyPackage(const std::filesystem::path& build, const std::string& to) const
    {
        std::filesystem::create_directories(package / to);
        for (const std::string& name : {"marvane" + ProgramEnd(), "diag_session" + ProgramEnd(),
                                        testing::LibraryName("Marvane"), testing::LibraryName("SimVci")})
            std::filesystem::copy_file(build / name, package / to / name);
    }

    /// Puts a file of the build into the package under a name.
    void Copy(const std::string& from, const std::string& to) const
    {
        std::filesystem::copy_file(testing::BuildFolder() + from, package / to,
                                   std::filesystem::copy_options::overwrite_existing);
    }

    /// What the command prints about the width of this build, what varies as a word; the exit status at its
    /// end.
    std::string Run(const std::string& option = "--color=never") const
    {
        return RunCommand({testing::BuildFolder() + "marvane" + ProgramEnd(), "selftest", "--from",
                           package.string(), option});
    }
    std::string RunCommand(const std::vector<std::string>& words) const
    {
        const std::string temp = temporary.string();
        const platform::ChildResult result =
            platform::RunChild(words, {{"TEMP", temp}, {"TMP", temp}, {"TMPDIR", temp}});
        std::string text = result.Output;
        std::erase(text, '\r');
        for (const auto& [path, name] :
             {std::pair(package.string() + platform::PathSeparator, std::string("PACKAGE/")),
              std::pair(platform::SystemVersion(), std::string("SYSTEM")),
              std::pair(std::string(platform::OwnLibraryName), std::string("LIBRARY")),
              std::pair(testing::LibraryName("SimVci"), std::string("INTERFACE")),
              std::pair("diag_session" + ProgramEnd(), std::string("APPLICATION"))})
            for (std::size_t at = text.find(path); at != std::string::npos; at = text.find(path))
                text.replace(at, path.size(), name);
        return testing::ReplaceMatches(text, "[0-9]+ ns", "N ns") + "exit status " +
               std::to_string(result.Status) + "\n";
    }

    /// The rows of a good package of a width in a folder of this package.
    static std::string GoodRows(const std::string& width, const std::string& to)
    {
        const std::string summary = ", " + width + ", 29 of 29 functions\n";
        return "\n" + width + "\n\n  ok  Marvane         " + to + "LIBRARY\n                      1.0.0.0" +
               summary + "  ok  interface       " + to + "INTERFACE\n                      1.4.2.7" +
               summary +
               "  ok  session         without Marvane: all 64 results are as they must be\n"
               "  ok  session         with Marvane: all 64 results are as they must be\n"
               "  ok  log             311 calls in 29 functions; all 2303 lines are as they must be\n"
               "  ok  cost of a call  N ns logged (level decoded), N ns without Marvane\n"
               "  ok  left behind     nothing\n";
    }

    std::string Page(const std::string& rows, const std::string& end) const
    {
        return "marvane 1.0.0.0 on SYSTEM\n\n" + bits + "\n\n" + "  ok  Marvane         PACKAGE/LIBRARY\n" +
               "                      1.0.0.0, " + bits + ", 29 of 29 functions\n" + rows +
               "  ok  left behind     nothing\n\n" + otherBits + "\n\n  --  Marvane         no " + otherBits +
               " LIBRARY is delivered here: not tested\n\n" + end;
    }
    std::string InterfaceRow() const
    {
        return "  ok  interface       PACKAGE/INTERFACE\n                      1.4.2.7, " + bits +
               ", 29 of 29 functions\n";
    }

    testing::TemporaryFolder folder;
    std::filesystem::path package = folder.Path() / "package";
    std::filesystem::path temporary = folder.Path() / "temporary";
    std::string bits = sizeof(void*) == 8 ? "64-bit" : "32-bit";
    std::string otherBits = sizeof(void*) == 8 ? "32-bit" : "64-bit";
};

TEST_F(Selftest, OfAGoodPackagePassesAndLeavesNothing)
{
    EXPECT_EQ(Run(),
              Page(InterfaceRow() +
                       "  ok  session         without Marvane: all 64 results are as they must be\n"
                       "  ok  session         with Marvane: all 64 results are as they must be\n"
                       "  ok  log             311 calls in 29 functions; all 2303 lines are as they must be\n"
                       "  ok  cost of a call  N ns logged (level decoded), N ns without Marvane\n",
                   "Selftest passed.\nexit status 0\n"));
    EXPECT_TRUE(std::filesystem::is_empty(temporary));
}

TEST_F(Selftest, OfAPackageOfBothWidthsTestsBothByEitherCommand)
{
    if (sizeof(void*) == 8)
        GTEST_SKIP() << "a test of the 32-bit build, which runs where 32-bit programs do";
    const std::filesystem::path own = std::filesystem::path(testing::BuildFolder()).parent_path();
    std::string name = own.filename().string();
    name.erase(std::min(name.find("-x86"), name.size()));
    const std::filesystem::path other = own.parent_path() / name;
    if (other == own || !std::filesystem::exists(other / ("marvane" + ProgramEnd())))
        GTEST_SKIP() << "there is no 64-bit build beside this one";
    std::filesystem::remove_all(package);
    CopyPackage(own, "x86");
    CopyPackage(other, "x64");
    const std::string separator(1, platform::PathSeparator);
    const std::string rows32 = GoodRows("32-bit", "PACKAGE/x86" + separator);
    const std::string rows64 = GoodRows("64-bit", "PACKAGE/x64" + separator);
    const std::string end = "\nSelftest passed.\nexit status 0\n";
    const auto run = [&](const std::string& width) {
        std::vector<std::string> words = {(package / width / ("marvane" + ProgramEnd())).string(), "selftest",
                                          "--color=never"};
        // Elsewhere an installed package would be found first.
        if (platform::PathSeparator == '/')
            words.insert(words.end(), {"--from", package.string()});
        return RunCommand(words);
    };
    EXPECT_EQ(run("x86"), "marvane 1.0.0.0 on SYSTEM\n" + rows32 + rows64 + end);
    EXPECT_EQ(run("x64"), "marvane 1.0.0.0 on SYSTEM\n" + rows64 + rows32 + end);
    EXPECT_TRUE(std::filesystem::is_empty(temporary));
}

TEST_F(Selftest, NamesAnInterfaceThatLacksAFunction)
{
    Copy(testing::LibraryName("fake_target_no_lock"), testing::LibraryName("SimVci"));
    EXPECT_EQ(Run(), Page("   X  interface       PACKAGE/INTERFACE\n                      4.3.2.1, " + bits +
                              ", 28 of 29 functions, lacks PDULockResource\n",
                          "Selftest failed.\nexit status 1\n"));
}

TEST_F(Selftest, NamesTheFirstResultThatDiffers)
{
    // The command takes other options than the application, and says nothing on standard output.
    Copy("marvane" + ProgramEnd(), "diag_session" + ProgramEnd());
    EXPECT_EQ(Run(),
              Page(InterfaceRow() +
                       "   X  session         without Marvane: the sample application ended with status 2\n"
                       "                      line 1: expected \"Modules found: 1\", found the end\n"
                       "  ok  cost of a call  N ns logged (level decoded), N ns without Marvane\n",
                   "Selftest failed.\nexit status 1\n"));
    EXPECT_TRUE(std::filesystem::is_empty(temporary));
}

TEST_F(Selftest, OfAnIncompletePackageSaysWhatIsMissing)
{
    std::filesystem::remove(package / ("diag_session" + ProgramEnd()));
    EXPECT_EQ(Run(),
              Page(InterfaceRow() +
                       "   X  session         without Marvane: the sample application can't be started\n"
                       "                      PACKAGE/APPLICATION\n"
                       "  ok  cost of a call  N ns logged (level decoded), N ns without Marvane\n",
                   "Selftest failed.\nexit status 1\n"));
    std::filesystem::remove(package / testing::LibraryName("Marvane"));
    EXPECT_EQ(Run(), "exit status 2\n");
}

TEST_F(Selftest, AsJsonIsOneDocument)
{
    const std::string json = testing::ReplaceMatches(Run("--json"), "(_ns\":)[0-9.]+", "$1N");
    EXPECT_EQ(json.substr(0, json.find(",\"findings\"")),
              "{\"schema\":\"marvane.selftest/1\",\"system\":\"SYSTEM\",\"widths\":[{\"machine\":\"" + bits +
                  "\",\"tested\":true,\"passed\":true,\"version\":\"1.0.0.0\",\"calls\":311,\"functions\":29,"
                  "\"log_lines\":2303,\"bare_call_ns\":N,\"logged_call_ns\":N");
    EXPECT_TRUE(json.ends_with("],\"passed\":true}\nexit status 0\n")) << json;
}

} // namespace
} // namespace marvane::tool
