// Help, wrong usage and the manners of the program as a whole.
#include <cstdlib>
#include <fstream>

#include <gtest/gtest.h>

#include "platform/child_process.h"
#include "platform/files.h"
#include "tests/command/sample_log.h"
#include "tests/support/child_program.h"
#include "tests/support/session.h"
#include "tool/console/command.h"
#include "tool/console/help.h"
#include "tool/setup/binary_file.h"

namespace marvane::testing {
namespace {

TEST(CommandLine, WithoutACommandIsWrongUsage)
{
    const ProgramResult result = RunProgram("marvane", "");
    EXPECT_EQ(result.Status, 2);
    EXPECT_EQ(result.Output, "");
    EXPECT_EQ(result.Errors, "marvane: which command? 'marvane --help' lists them\n");
}

TEST(CommandLine, NamesTheNearestCommandAndOption)
{
    const ProgramResult command = RunProgram("marvane", "shwo");
    EXPECT_EQ(command.Status, 2);
    EXPECT_EQ(command.Errors, "marvane: unknown command 'shwo'; did you mean 'show'?\n");
    const ProgramResult option = RunProgram("marvane", "show --eror");
    EXPECT_EQ(option.Status, 2);
    EXPECT_EQ(option.Errors, "marvane: unknown option '--eror'; did you mean '--errors'?\n"
                             "Try 'marvane show --help'.\n");
    const ProgramResult neither = RunProgram("marvane", "frobnicate");
    EXPECT_EQ(neither.Errors, "marvane: unknown command 'frobnicate'\n");
}

TEST(CommandLine, RefusesValuesThatDoNotFit)
{
    const char* const wrong[][2] = {
        {"show --call GetVersin", "--call 'GetVersin' is no function of the API; did you mean 'GetVersion'?"},
        {"show --since 25:00",
         "--since takes a time such as 14:03:07, '2026-11-25 14:03' or -5m, not '25:00'"},
        {"show -n 0", "--limit takes a whole number from 1 on, not '0'"},
        {"show -v", "-v inverts --grep, which is missing"},
        {"show --timeout 3", "--timeout is for following: add -f"},
        {"show --calls 5-3", "--calls takes numbers of calls such as 120-180, 120- or 120, not '5-3'"},
        {"cut", "cut needs --since, --until or --redact"},
        {"around", "around needs one of --line, --hcop and --at"},
        {"completion ksh", "completion: 'ksh' is none of: bash, zsh, fish, powershell; did you mean 'zsh'?"},
    };
    const TemporaryFolder folder;
    WriteFileBytes(folder / LogName, SampleLog());
    for (const auto& [arguments, message] : wrong) {
        const std::string line = arguments;
        const bool readsLogs = !line.starts_with("completion");
        const ProgramResult result =
            RunProgram("marvane", readsLogs ? line + " " + Quoted(folder / LogName) : line);
        EXPECT_EQ(result.Status, 2) << arguments;
        EXPECT_EQ(result.Errors.substr(0, result.Errors.find('\n')), "marvane: " + std::string(message));
    }
}

TEST(CommandLine, HelpBeginsWithExamplesAndIsSuccess)
{
    const ProgramResult help = RunProgram("marvane", "--help");
    EXPECT_EQ(help.Status, 0);
    EXPECT_EQ(help.Output, tool::ProgramHelp());
    for (const tool::CommandGroup& group : tool::AllCommands())
        for (const tool::Command* command : group.Commands) {
            const std::string text = tool::CommandHelp(*command);
            EXPECT_LT(text.find("\nExamples:\n"), text.find("\nUsage: ")) << command->Name;
        }
    EXPECT_EQ(RunProgram("marvane", "show --help").Output, tool::CommandHelp(*tool::FindCommand("show")));
    EXPECT_EQ(RunProgram("marvane", "help show").Output, tool::CommandHelp(*tool::FindCommand("show")));
}

TEST(CommandLine, HelpIsAtMostAHundredColumnsWide)
{
    for (const tool::CommandGroup& group : tool::AllCommands())
        for (const tool::Command* command : group.Commands) {
            std::string text = tool::CommandHelp(*command);
            for (std::size_t end; (end = text.find('\n')) != std::string::npos; text.erase(0, end + 1))
                EXPECT_LE(end, 100u) << text.substr(0, end);
        }
}

TEST(CommandLine, HelpFillsTheLinesOfEachParagraph)
{
    EXPECT_NE(
        tool::CommandHelp(*tool::FindCommand("talk"))
            .find("\n\nMarks: X refused, silent, not started or never returned, ! remarkable, . by the way, "
                  "? not in the\nlog. Times are from the sending of a request"),
        std::string::npos);
}

TEST(CommandLine, VersionIsThatOfTheProduct)
{
    EXPECT_EQ(RunProgram("marvane", "--version").Output, tool::VersionLine() + "\n");
}

TEST(CommandLine, OnWindowsTheFileHasTheVersionToo)
{
    if (platform::PathSeparator != '\\')
        GTEST_SKIP() << "a version resource is for Windows";
    const auto facts = tool::InspectBinary(FileBytes(BuildFolder() + "marvane.exe"));
    ASSERT_TRUE(facts && facts->Version);
    EXPECT_EQ("marvane " + tool::VersionText(*facts->Version), tool::VersionLine());
}

/// Without LOG the newest session of the log folder that PDU_CFG_FILE's file names is read: here a folder
/// whose name the configuration spells `spelling`.
void ExpectTheLogOfAFolderSpelled(const std::string& spelling)
{
    const TemporaryFolder folder;
    const std::filesystem::path place = folder.Path() / u8"Pr\u00FCfstand";
    std::filesystem::create_directory(place);
    WriteFileBytes(place / LogName, SampleLog());
    const std::string logs = (folder.Path() / "").string() + spelling;
    WriteFileBytes(place / "cfg.xml",
                   "<?xml?>\n<D_PDU_API_CFG>\n<Attribute Name=\"LogFileDir\" Type=\"String\" Value=\"" +
                       logs + "\"/>\n</D_PDU_API_CFG>\n");
    const bool onWindows = platform::PathSeparator == '\\';
    const std::u8string configuration = (place / "cfg.xml").u8string();
    const platform::ChildResult result = platform::RunChild(
        {BuildFolder() + "marvane" + (onWindows ? ".exe" : ""), "show", "--status", "0xA1"},
        {{"PDU_CFG_FILE", std::string(configuration.begin(), configuration.end())}});
    EXPECT_EQ(result.Status, 0);
    EXPECT_NE(result.Output.find("+ PDULockResource("), std::string::npos) << result.Output;
}

TEST(CommandLine, FindsLogsInFoldersWithUmlauts)
{
    ExpectTheLogOfAFolderSpelled("Pr\xC3\xBC"
                                 "fstand");
}

TEST(CommandLine, ReadsOldConfigurationsInTheCodePage)
{
    if (platform::PathSeparator != '\\')
        GTEST_SKIP() << "elsewhere the bytes of a path have no code page";
    ExpectTheLogOfAFolderSpelled("Pr\xFC"
                                 "fstand");
}

TEST(CommandLine, CompletionAndManPageNameEveryCommandAndOption)
{
    const std::string bash = RunProgram("marvane", "completion bash").Output;
    const std::string zsh = RunProgram("marvane", "completion zsh").Output;
    const std::string fish = RunProgram("marvane", "completion fish").Output;
    const std::string powershell = RunProgram("marvane", "completion powershell").Output;
    for (const tool::CommandGroup& group : tool::AllCommands())
        for (const tool::Command* command : group.Commands) {
            const std::string name(command->Name);
            EXPECT_NE(bash.find("        " + name + ") options='"), std::string::npos) << name;
            EXPECT_NE(zsh.find("        " + name + ")\n"), std::string::npos) << name;
            EXPECT_NE(fish.find(" -a " + name + " -d '"), std::string::npos) << name;
            EXPECT_NE(powershell.find("        '" + name + "' = @("), std::string::npos) << name;
        }
    EXPECT_NE(RunProgram("marvane", "man").Output.find(".SS marvane show "), std::string::npos);
}

TEST(CommandLine, AClosedPipeEndsQuietly)
{
    if (platform::PathSeparator == '\\')
        GTEST_SKIP() << "needs a POSIX shell";
    const TemporaryFolder folder;
    std::string log = SampleLog();
    for (unsigned i = 0; i < 5000; ++i)
        log += LogCall(5, "PDUGetTimestamp", "hMod=0x00000001");
    WriteFileBytes(folder / LogName, log);
    const std::string errors = folder / "errors", status = folder / "status";
    std::system(("(" + Quoted(BuildFolder() + "marvane") + " show " + Quoted(folder / LogName) + " 2>" +
                 Quoted(errors) + "; echo $? >" + Quoted(status) + ") | true")
                    .c_str());
    EXPECT_EQ(FileText(errors), "");
    EXPECT_EQ(FileText(status), "0\n");
}

/// Runs the command with its output going to a device that is always full.
ProgramResult RunOnAFullDisk(const std::string& arguments)
{
    const std::string device = platform::PathSeparator == '\\' ? "Z:\\dev\\full" : "/dev/full";
    const TemporaryFolder folder;
    const std::string errors = folder / "errors";
    const int status = RunWithStreams("marvane", arguments, {"", device, errors});
    return {status, "", FileText(errors)};
}

TEST(CommandLine, OutputThatCanNotBeWrittenIsTrouble)
{
    // Wine has it too, but does not say that it exists.
    if (!std::ofstream(platform::PathSeparator == '\\' ? "Z:\\dev\\full" : "/dev/full").is_open())
        GTEST_SKIP() << "needs a device that is always full";
    const TemporaryFolder folder;
    std::string longLog = SampleLog(); // its output is longer than what the command holds back
    for (unsigned i = 0; i < 5000; ++i)
        longLog += LogCall(5, "PDUGetTimestamp", "hMod=0x00000001");
    WriteFileBytes(folder / "short.LGR", SampleLog());
    WriteFileBytes(folder / "long.LGR", longLog);
    const std::string shortOne = Quoted(folder / "short.LGR"), longOne = Quoted(folder / "long.LGR");
    for (const std::string& arguments :
         {"errors " + shortOne, "errors --json " + shortOne, "show " + shortOne, "show " + longOne,
          std::string("--version"), std::string("talk --help"), std::string("man")}) {
        const ProgramResult result = RunOnAFullDisk(arguments);
        EXPECT_EQ(result.Status, 2) << arguments;
        EXPECT_EQ(result.Errors, "marvane: standard output can't be written\n") << arguments;
    }
}

} // namespace
} // namespace marvane::testing
