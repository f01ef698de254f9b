// `marvane check` as it is typed: the whole screen.
#include "tests/support/setup_commands.h"

namespace marvane::tool {
namespace {

using CheckScreen = SetupCommands;

TEST_F(CheckScreen, NoticesThatMarvaneWasRemoved)
{
    const testing::EnvironmentValue none("PDU_CFG_FILE", std::nullopt);
    const std::string before = testing::FileBytes(root);
    Install();
    testing::WriteFileBytes(root, before);
    const std::string another = "somebody put another path into the root description file: " +
                                Named(UriOfPath(library, platform::PathSeparator));
    EXPECT_EQ(Check({"SimVci"}),
              Checked("SimVci", NotCalled(another), "", "", "0 errors, 1 warning", "works, no log") +
                  "exit status 1\n");
    testing::WriteFileBytes(root, "<MVCI_PDU_API_ROOT/>");
    EXPECT_EQ(Check({}), Checked("SimVci", NotCalled("the entry is gone from DIR/root.xml"), "", "",
                                 "0 errors, 1 warning", "works, no log") +
                             "exit status 1\n");
}

TEST_F(CheckScreen, WarnsOfTwoEntriesWithOneLogFolder)
{
    const testing::EnvironmentValue none("PDU_CFG_FILE", std::nullopt);
    const std::string entries = testing::FileBytes(root);
    const std::size_t begin = entries.find("<MVCI_PDU_API>");
    std::string second = entries.substr(begin, entries.find("</MVCI_PDU_API>\n") + 16 - begin);
    second.replace(second.find("SimVci"), 6, "Second");
    testing::WriteFileBytes(root, std::string(entries).insert(begin, second));
    Install();
    Run({"install", "Second", "--root", root, "--to", folder / "copies", "--from", testing::BuildFolder(),
         "--log-dir", folder / "logs"});
    const auto shared = [](const std::string& other) {
        return "   !  LogFileDir      DIR/logs/ is the log folder of entry \"" + other +
               "\" too: their logs are mixed, and each deletes the other's.\n";
    };
    const std::string works = "works, log in DIR/logs/";
    EXPECT_EQ(Check({}), Checked("Second", LeadsToMarvane("Second"),
                                 "  --  line 28         LogFlush is not 1: the last lines are lost if the "
                                 "application crashes.\n",
                                 shared("SimVci"), "0 errors, 1 warning", works) +
                             "\n" +
                             Checked("SimVci", LeadsToMarvane("SimVci"), "", shared("Second"),
                                     "0 errors, 1 warning", works) +
                             "exit status 1\n");
    // So does the check of one of them, and a folder is the same without its separator.
    Run({"set", "Second", "LogFileDir=" + (folder / "logs"), "--root", root});
    EXPECT_EQ(Check({"SimVci"}), Checked("SimVci", LeadsToMarvane("SimVci"), "", shared("Second"),
                                         "0 errors, 1 warning", works) +
                                     "exit status 1\n");
}

TEST_F(CheckScreen, OfAHealthyEntryEndsWithItsOutcome)
{
    const testing::EnvironmentValue none("PDU_CFG_FILE", std::nullopt);
    Install();
    EXPECT_EQ(Check({"SimVci"}), Checked("SimVci", LeadsToMarvane("SimVci"), "", "", "0 errors, 0 warnings",
                                         "works, log in DIR/logs/"));
}

TEST_F(CheckScreen, OfAnEntryWithoutMarvaneSaysSo)
{
    EXPECT_EQ(
        Run({"check", "SimVci", "--root", root}),
        "SimVci\n\n   !  root file       DIR/root.xml\n"
        "                      entry \"SimVci\" leads to the vendor's library: Marvane is not called. Run\n"
        "                      \"marvane install\".\n"
        "  ok  target library  DIR/VENDOR\n                      1.4.2.7, " +
            bits + ", 29 of 29 functions\n\n0 errors, 1 warning\nOutcome: works, no log.\nexit status 1\n");
}

} // namespace
} // namespace marvane::tool
