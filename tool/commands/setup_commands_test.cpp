// The commands of the set-up as they are typed: what they print, their exit status, and that the chain works.
#include "tests/support/pattern.h"
#include "tests/support/setup_commands.h"
#include "tool/setup/configuration_findings.h"
#include "tool/setup/root_file.h"

namespace marvane::tool {
namespace {

TEST_F(SetupCommands, ListShowsTheLibraryAndMarvaneInFrontOfIt)
{
    EXPECT_EQ(Run({"list", "--root", root}), "DIR/root.xml  (--root)\n\n"
                                             "SimVci\n"
                                             "   library     DIR/VENDOR\n"
                                             "               1.4.2.7, " +
                                                 bits + ", 29 of 29 functions\n");
    Install();
    EXPECT_EQ(Run({"list", "--root", root}), "DIR/root.xml  (--root)\n\n"
                                             "SimVci\n"
                                             "   library     DIR/copies/SimVci/LIBRARY\n"
                                             "               Marvane 1.0.0.0, " +
                                                 bits +
                                                 ", 29 of 29 functions\n"
                                                 "   target      DIR/VENDOR\n"
                                                 "               1.4.2.7, " +
                                                 bits + ", 29 of 29 functions\n");
}

TEST_F(SetupCommands, ListComplainsAboutAFileThatIsNone)
{
    EXPECT_EQ(Run({"list", "--root", folder / "none.xml"}),
              "DIR/none.xml  (--root)\n               does not exist\nexit status 2\n");
}

TEST_F(SetupCommands, TheInstalledChainLogsASession)
{
    Install();
    const std::string copy =
        PathOfUri(ParseRootFile(testing::FileBytes(root)).Entries.at(0).Uri.value(), platform::PathSeparator);
    const platform::ChildResult session = platform::RunChild(
        {testing::BuildFolder() + "diag_session" + Extension(), "--library", copy, "--quiet"});
    EXPECT_EQ(session.Status, 0) << session.Output;
    // Times as a zero, so that the screen can be compared whole.
    const std::string status =
        testing::ReplaceMatches(Run({"status", "--root", root, "--to", folder / "copies"}),
                                "today|[0-9]+[.][0-9] s|[0-9]+:[0-9]+(:[0-9]+)?|[ 0-9][0-9] "
                                "(Jan|Feb|Mar|Apr|May|Jun|Jul|Aug|Sep|Oct|Nov|Dec)|"
                                "[0-9-]+_[0-9-]+|[0-9]+ calls|0[.][0-9] MB",
                                "0");
    EXPECT_EQ(status, "SimVci   DIR/root.xml\n"
                      "   application -> Marvane 1.0.0.0 -> VENDOR 1.4.2.7   logging: on, decoded\n"
                      "   logs in     DIR/logs/\n"
                      "               1 of at most 20 files, 0   newest 0 0\n"
                      "               0 0  0   0   2 failed  D-PDU_API_Logger_0.LGR\n");
}

TEST_F(SetupCommands, StatusNoticesThatMarvaneWasRemoved)
{
    const std::string before = testing::FileBytes(root);
    Install();
    testing::WriteFileBytes(root, before);
    const std::string trouble = "somebody put another path into the root description file: " +
                                Named(UriOfPath(library, platform::PathSeparator)) + "\n";
    EXPECT_EQ(Run({"status", "--root", root, "--to", folder / "copies"}),
              "SimVci   DIR/root.xml\n"
              "   application -> Marvane 1.0.0.0 -> VENDOR 1.4.2.7   logging: on, decoded\n"
              " ! not used    " +
                  trouble +
                  "   logs in     DIR/logs/\n               0 of at most 20 files, 0.0 MB\nexit status 1\n");
}

TEST_F(SetupCommands, ACopyOutOfUseIsFoundWhereTheCopiesAre)
{
    const std::string before = testing::FileBytes(root);
    Install();
    testing::WriteFileBytes(root, before);
    EXPECT_EQ(Run({"get", "SimVci", "LogFlush", "--root", root}), "exit status 2\n");
    EXPECT_EQ(Run({"get", "SimVci", "LogFlush", "--root", root, "--to", folder / "copies"}), "1\n");
    EXPECT_EQ(Run({"set", "SimVci", "LogFlush=0", "--root", root, "--to", folder / "copies"}),
              "LogFlush: 1 -> 0   takes effect at the next PDUConstruct\n");
    EXPECT_EQ(Run({"level", "SimVci", "arguments", "--to", folder / "copies"}),
              "LogFnDecodeArgs: 1 -> 0   takes effect at the next PDUConstruct\n"
              "LogFnDecodeRsps: 1 -> 0   takes effect at the next PDUConstruct\n");
}

TEST_F(SetupCommands, SetAndLevelChangeEveryEntryOfTheName)
{
    testing::WriteFileBytes(folder / "other.xml", testing::FileBytes(root));
    Install();
    Run({"install", "SimVci", "--root", folder / "other.xml", "--to", folder / "copies", "--from",
         testing::BuildFolder(), "--log-dir", folder / "other logs"});
    const std::vector<std::string> both = {"--root", root, "--root", folder / "other.xml"};
    const auto run = [&](std::vector<std::string> words) {
        words.insert(words.end(), both.begin(), both.end());
        return Run(words);
    };
    const std::string first = "DIR/copies/SimVci/D_PDU_API_CFG.xml\n",
                      second = "DIR/copies/SimVci-2/D_PDU_API_CFG.xml\n";
    const std::string change = "LogFileMaxNum: 18 -> 3   takes effect at the next PDUConstruct\n";
    EXPECT_EQ(run({"set", "SimVci", "LogFileMaxNum=3"}), first + change + second + change);
    EXPECT_EQ(run({"set", "SimVci", "LogFileMaxNum=3"}),
              "nothing to change in " + first + "nothing to change in " + second);
    EXPECT_EQ(run({"get", "SimVci", "LogFileMaxNum", "PDUAPILibDll"}).find(first), 0u);
    EXPECT_EQ(run({"get", "SimVci", "LogFileMaxNum"}), "exit status 2\n");
}

TEST_F(SetupCommands, SetAndLevelChangeWhatGetShows)
{
    Install();
    EXPECT_EQ(Run({"get", "SimVci", "LogFlush", "--root", root}), "1\n");
    EXPECT_EQ(Run({"set", "SimVci", "LogFlush=0", "LogFileMaxNum=3", "--root", root}),
              "LogFlush: 1 -> 0   takes effect at the next PDUConstruct\n"
              "LogFileMaxNum: 18 -> 3   takes effect at the next PDUConstruct\n");
    EXPECT_EQ(Run({"get", "SimVci", "LogFlush", "--root", root}), "0\n");
    EXPECT_EQ(Run({"level", "SimVci", "calls", "--root", root}),
              "LogFnCalls: 2 -> 1   takes effect at the next PDUConstruct\n"
              "LogFnDecodeArgs: 1 -> 0   takes effect at the next PDUConstruct\n"
              "LogFnDecodeRsps: 1 -> 0   takes effect at the next PDUConstruct\n"
              "LogCbCalls: 1 -> 0   takes effect at the next PDUConstruct\n");
    EXPECT_EQ(Run({"set", "SimVci", "LogFlush=on", "--root", root}), "exit status 2\n");
    EXPECT_EQ(Run({"set", "SimVci", "NoKey=1", "--root", root}), "exit status 2\n");
}

TEST_F(SetupCommands, InitWritesAConfigurationAndNeverOverwritesOne)
{
    const std::string file = folder / "cfg.xml";
    EXPECT_EQ(Run({"init", file, "--library", library, "--log-dir", folder / "logs"}),
              "written: DIR/cfg.xml\n");
    const std::string bytes = testing::FileBytes(file);
    EXPECT_EQ(Run({"get", "--config", file, "PDUAPILibDll"}), "VENDOR\n");
    EXPECT_EQ(Run({"init", folder / "entry.xml", "--entry", "SimVci", "--root", root}),
              "written: DIR/entry.xml\n");
    EXPECT_EQ(Run({"get", "--config", folder / "entry.xml", "PDUAPILibDll"}), "VENDOR\n");
    EXPECT_EQ(Run({"init", folder / "no.xml", "--entry", "Other", "--root", root}), "exit status 2\n");
    EXPECT_EQ(Run({"init", file}), "exit status 2\n");
    EXPECT_EQ(testing::FileBytes(file), bytes);
}

TEST_F(SetupCommands, ALogFolderIsWrittenAsAWholePath)
{
    const auto written = [this](const std::string& name, const std::string& logs) {
        Run({"init", folder / name, "--library", library, "--log-dir", logs});
        return Run({"get", "--config", folder / name, "LogFileDir"});
    };
    const std::string own = Named(testing::PathText(std::filesystem::current_path() / "logs"));
    EXPECT_EQ(written("relative.xml", "logs"), own + "/\n");
    EXPECT_EQ(written("variable.xml", "%TEMP%"),
              "%TEMP%" + Named(std::string(1, platform::PathSeparator)) + "\n");
}

TEST_F(SetupCommands, DiagLevelsChangesTheTableInPlace)
{
    const testing::EnvironmentValue appData("APPDATA", folder.Path().string());
    EXPECT_EQ(Run({"diag-levels", "DATA", "GENERAL", "--root", root}),
              "DATA        WARN\nGENERAL     WARN\n");
    EXPECT_EQ(Run({"diag-levels", "DATA=DEBUG1", "TIMER=OFF"}), "DATA        DEBUG1\nTIMER       OFF\n");
    EXPECT_EQ(Run({"diag-levels", "DATA=LOUD"}), "exit status 2\n");
    const auto separator = std::string(1, platform::PathSeparator);
    const std::string table =
        testing::FileBytes(folder / ("Kestrix" + separator + "PDUAPI" + separator + "DEBUG.CFG"));
    EXPECT_EQ(table.size(), 76u);
    EXPECT_EQ(table.substr(0, 4), std::string("\1\0\0\0", 4));
    EXPECT_EQ(table.substr(17 * 4), std::string("\5\0\0\0\xFF\xFF\xFF\xFF", 8));
}

TEST_F(SetupCommands, WrongUsageIsStatusTwo)
{
    EXPECT_EQ(Run({"install", "--root", root}), "exit status 2\n");
    EXPECT_EQ(Run({"install", "SimVci", "--all", "--root", root}), "exit status 2\n");
    EXPECT_EQ(Run({"install", "SimVci", "--max-size", "9Q", "--root", root}), "exit status 2\n");
    EXPECT_EQ(Run({"check", "SimVci", "--config", "x", "--root", root}), "exit status 2\n");
    EXPECT_EQ(Run({"uninstall", "SimVci", "--to", folder / "none"}), "exit status 2\n");
}

/// The names of a folder: in UTF-8, and in the code page of Western Europe.
constexpr const char* BenchInUtf8 = "Pr\xC3\xBC"
                                    "fstand \xE8\xAF\x8A\xE6\x96\xAD";
constexpr const char* UmlautsInUtf8 = "Pr\xC3\xBC"
                                      "fstand";
constexpr const char* UmlautsInCodePage = "Pr\xFC"
                                          "fstand";

TEST_F(SetupCommands, AChainIsInstalledInFoldersOfAnyScript)
{
    const std::filesystem::path place = folder.Path() / testing::FilePath(BenchInUtf8);
    std::filesystem::create_directory(place);
    const std::filesystem::path vendor = place / testing::LibraryName("SimVci");
    std::filesystem::copy_file(library, vendor);
    const std::string roots = testing::PathText(place / "root.xml");
    testing::WriteFileBytes(
        place / "root.xml",
        "<MVCI_PDU_API_ROOT>\n<MVCI_PDU_API><SHORT_NAME>Bench</SHORT_NAME><LIBRARY_FILE URI=\"" +
            UriOfPath(testing::PathText(vendor), platform::PathSeparator) +
            "\"/></MVCI_PDU_API>\n</MVCI_PDU_API_ROOT>\n");
    const std::string copies = testing::PathText(place / "copies");
    const std::string installed =
        Run({"install", "Bench", "--root", roots, "--to", copies, "--from", testing::BuildFolder(),
             "--log-dir", testing::PathText(place / "logs")});
    EXPECT_EQ(installed.find("exit status"), std::string::npos) << installed;
    const std::string checked = Run({"check", "Bench", "--root", roots, "--to", copies});
    EXPECT_NE(checked.find("Outcome: works, log in DIR/" + std::string(BenchInUtf8) + "/logs"),
              std::string::npos)
        << checked;
}

TEST_F(SetupCommands, CheckReadsPathsInTheCodePageOfWindows)
{
    if (platform::PathSeparator == '/')
        GTEST_SKIP() << "bytes are names here";
    std::filesystem::create_directory(folder.Path() / testing::FilePath(UmlautsInUtf8));
    const std::string place = folder / "" + UmlautsInCodePage + "\\";
    std::filesystem::copy_file(library, folder.Path() / testing::FilePath(UmlautsInUtf8) / "SimVci.dll");
    testing::WriteFileBytes(
        folder / "D_PDU_API_CFG.xml",
        "<?xml?>\n<D_PDU_API_CFG>\n"
        "<Attribute Name=\"InstalledPath\" Type=\"String\" Value=\"" +
            place +
            "\"/>\n<Attribute Name=\"PDUAPILibDll\" Type=\"String\" Value=\"SimVci.dll\"/>\n"
            "<Attribute Name=\"LogFileDir\" Type=\"String\" Value=\"" +
            place +
            "logs\\\"/>\n<Attribute Name=\"LogEnabled\" Type=\"UNUM32\" Value=\"1\"/>\n"
            "<Attribute Name=\"LogFnCalls\" Type=\"UNUM32\" Value=\"2\"/>\n</D_PDU_API_CFG>\n");
    const std::string checked = Run({"check", "--config", folder / "D_PDU_API_CFG.xml"});
    EXPECT_NE(checked.find("Outcome: works, log in DIR/" + std::string(UmlautsInUtf8) + "/logs/."),
              std::string::npos)
        << checked;
}

} // namespace
} // namespace marvane::tool
