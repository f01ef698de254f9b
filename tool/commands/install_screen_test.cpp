// `marvane install` and `marvane uninstall` as they are typed: options, refusals, and what is left
// afterwards.
#include "tests/support/child_program.h"
#include "tests/support/setup_commands.h"

namespace marvane::tool {
namespace {

using InstallScreen = SetupCommands;
using UninstallScreen = SetupCommands;

TEST_F(InstallScreen, TheRootFileIsAnOptionOfEveryCommandOfTheSetUp)
{
    for (const char* const command : {"list", "install", "uninstall", "status", "check", "get", "set",
                                      "level", "init", "diag-levels", "selftest"}) {
        const std::string help = Run({command, "--help"});
        EXPECT_NE(help.find("--root FILE"), std::string::npos) << command;
    }
}

TEST_F(InstallScreen, SeveralRootFilesAreListedOneAfterTheOther)
{
    const std::string entry =
        "\n\nSimVci\n   library     DIR/VENDOR\n               1.4.2.7, " + bits + ", 29 of 29 functions\n";
    std::filesystem::copy_file(root, folder / "other.xml");
    EXPECT_EQ(Run({"list", "--root", root, "--root", folder / "other.xml"}),
              "DIR/root.xml  (--root)" + entry + "\nDIR/other.xml  (--root)" + entry);
}

TEST_F(InstallScreen, ANameThatBeginsWithAHyphenFollowsTwoOfThem)
{
    const testing::EnvironmentValue none("PDU_CFG_FILE", std::nullopt);
    std::string entries = testing::FileBytes(root);
    testing::WriteFileBytes(root, entries.replace(entries.find("SimVci<"), 6, "-One"));
    const std::vector<std::string> where = {"--root", root, "--to", folder / "copies"};
    const auto run = [&](std::vector<std::string> words, const std::vector<std::string>& last) {
        words.insert(words.end(), where.begin(), where.end());
        words.insert(words.end(), last.begin(), last.end());
        return Run(words);
    };
    run({"install", "--from", testing::BuildFolder(), "--log-dir", folder / "logs"}, {"--", "-One"});
    EXPECT_EQ(run({"get"}, {"--", "-One", "PDUAPILibDll"}), "VENDOR\n");
    // A note alone is no finding: status 0.
    EXPECT_EQ(WithoutSpace(Unwrapped(run({"check"}, {"--", "-One"}))),
              Checked("-One", LeadsToMarvane("-One"),
                      "  --  line 28         LogFlush is not 1: the last lines are lost if the application "
                      "crashes.\n",
                      "", "0 errors, 0 warnings", "works, log in DIR/logs/"));
    EXPECT_EQ(Run({"uninstall", "--to", folder / "copies", "--", "-One"}),
              "-One\n   restored      LIBRARY_FILE of \"-One\" in DIR/root.xml\n"
              "   removed       DIR/copies/-One\n");
}

TEST_F(InstallScreen, ARefusalIsStatusTwoInOneLineAndLeavesNoTrace)
{
    testing::WriteFileBytes(root, "<MVCI_PDU_API_ROOT/>");
    for (const std::string dry : {"", " --dry-run"}) {
        const testing::ProgramResult install =
            testing::RunProgram("marvane", "install SimVci" + dry + " --root " + testing::Quoted(root) +
                                               " --to " + testing::Quoted(folder / "copies") + " --from " +
                                               testing::Quoted(testing::BuildFolder() + "."));
        EXPECT_EQ(install.Status, 2);
        EXPECT_EQ(install.Output, "");
        EXPECT_EQ(install.Errors, "marvane: no entry \"SimVci\", nor any other, in " + root + "\n");
        const testing::ProgramResult uninstall = testing::RunProgram(
            "marvane", "uninstall SimVci" + dry + " --to " + testing::Quoted(folder / "copies"));
        EXPECT_EQ(uninstall.Status, 2);
        EXPECT_EQ(uninstall.Output, "");
        EXPECT_EQ(uninstall.Errors, "marvane: nothing is installed for an entry \"SimVci\"\n");
    }
    EXPECT_EQ(testing::FileBytes(root), "<MVCI_PDU_API_ROOT/>");
    EXPECT_FALSE(std::filesystem::exists(folder.Path() / "copies"));
}

TEST_F(InstallScreen, SizesArePowersOf1024AndFilesAreThoseThatAreKept)
{
    const auto sizeFor = [this](const std::string& size) {
        Run({"install", "SimVci", "--root", root, "--to", folder / "copies", "--from", testing::BuildFolder(),
             "--log-dir", folder / "logs", "--max-size", size});
        const std::string set = Run({"get", "SimVci", "LogFileMaxSize", "--to", folder / "copies"});
        Run({"uninstall", "SimVci", "--to", folder / "copies"});
        return set;
    };
    EXPECT_EQ(sizeFor("500"), "500\n");
    EXPECT_EQ(sizeFor("500K"), "512000\n");
    EXPECT_EQ(sizeFor("10M"), "10485760\n");
    EXPECT_EQ(sizeFor("1G"), "1073741824\n");
}

TEST_F(InstallScreen, AsManyLogFilesAreKeptAsWereAskedFor)
{
    const testing::EnvironmentValue none("PDU_CFG_FILE", std::nullopt);
    Run({"install", "SimVci", "--root", root, "--to", folder / "copies", "--from", testing::BuildFolder(),
         "--log-dir", folder / "logs", "--files", "4"});
    std::filesystem::create_directory(folder.Path() / "logs");
    for (int day = 1; day <= 9; ++day)
        testing::WriteFileBytes(folder.Path() / "logs" /
                                    ("D-PDU_API_Logger_0" + std::to_string(day) + "-11-2026_14-03-07.LGR"),
                                "");
    const std::string copy =
        testing::PathText(folder.Path() / "copies" / "SimVci" / platform::OwnLibraryName);
    platform::RunChild({testing::BuildFolder() + "diag_session" + Extension(), "--library", copy, "--quiet"});
    const auto files = std::filesystem::directory_iterator(folder.Path() / "logs");
    EXPECT_EQ(std::distance(begin(files), end(files)), 4);
    EXPECT_EQ(Run({"install", "SimVci", "--files", "2", "--root", root}), "exit status 2\n");
}

TEST_F(InstallScreen, MissingFunctionsAreNamedAndItGoesOn)
{
    const std::string name = testing::LibraryName("fake_target_no_lock");
    std::filesystem::copy_file(testing::BuildFolder() + name, folder.Path() / name);
    std::string entries = testing::FileBytes(root);
    testing::WriteFileBytes(root, entries.replace(entries.find(testing::LibraryName("SimVci")),
                                                  testing::LibraryName("SimVci").size(), name));
    const std::string report = Install();
    EXPECT_EQ(report.substr(report.find("   note ")), "   note          DIR/" + name +
                                                          " lacks PDULockResource: a call of it ends the "
                                                          "application\n");
    EXPECT_NE(testing::FileBytes(root), entries);
}

TEST_F(InstallScreen, TakesTheLibraryBesideTheCommand)
{
    const std::filesystem::path own = folder.Path() / "own";
    const char* const width = sizeof(void*) == 8 ? "x64" : "x86";
    std::filesystem::create_directories(own / width);
    std::filesystem::copy_file(testing::BuildFolder() + "marvane" + Extension(),
                               own / ("marvane" + Extension()));
    std::filesystem::copy_file(testing::BuildFolder() + platform::OwnLibraryName,
                               own / width / platform::OwnLibraryName);
    const platform::ChildResult result =
        platform::RunChild({testing::PathText(own / ("marvane" + Extension())), "install", "SimVci", "--root",
                            root, "--to", folder / "copies", "--log-dir", folder / "logs"});
    EXPECT_EQ(result.Status, 0) << result.Output;
    EXPECT_EQ(testing::FileBytes(folder.Path() / "copies" / "SimVci" / platform::OwnLibraryName),
              testing::FileBytes(own / width / platform::OwnLibraryName));
}

TEST_F(UninstallScreen, BackupsThatDifferFromTheFileAreKeptAndNamed)
{
    Install();
    testing::WriteFileBytes(root + ".marvane-20260101-000000.bak", "an older file");
    EXPECT_EQ(Run({"uninstall", "SimVci", "--to", folder / "copies"}),
              "SimVci\n   restored      LIBRARY_FILE of \"SimVci\" in DIR/root.xml\n"
              "   kept          DIR/root.xml.marvane-20260101-000000.bak differs from the file that is there "
              "now\n   removed       DIR/copies/SimVci\n");
    std::string backups;
    for (const auto& entry : std::filesystem::directory_iterator(folder.Path()))
        if (entry.path().extension() == ".bak")
            backups += testing::PathText(entry.path().filename()) + "\n";
    EXPECT_EQ(backups, "root.xml.marvane-20260101-000000.bak\n");
}

TEST_F(UninstallScreen, ACopyThatAnUpdateHasOrphanedGoesWithStatusZero)
{
    const std::string before = testing::FileBytes(root);
    Install();
    testing::WriteFileBytes(root, before);
    EXPECT_EQ(Run({"uninstall", "SimVci", "--to", folder / "copies"}),
              "SimVci\n   note          DIR/root.xml no longer leads to this copy: somebody put another path "
              "there\n   removed       DIR/copies/SimVci\n");
}

} // namespace
} // namespace marvane::tool
