// No command of the set-up asks: with a pipe as its standard input it ends with its documented outcome, over
// things that are there already too, and leaves every byte of the pipe unread.
#include "tests/support/child_program.h"
#include "tests/support/pattern.h"
#include "tests/support/setup_commands.h"
#include "tests/support/unread_input.h"

namespace marvane::tool {
namespace {

class NoQuestion : public SetupCommands
{
protected:
    /// Where the commands' standard input comes from: nothing said, that of the test.
    struct Input
    {
        std::string OfShell; ///< a redirection of a POSIX shell
        std::string File;
    };

    /// Exit status, output and messages of a command.
    std::string Typed(const std::string& arguments, const Input& input = {}) const
    {
        const std::string errors = folder / "errors", output = folder / "output";
        const int status =
            testing::RunWithStreams("marvane", arguments + input.OfShell, {input.File, output, errors});
        return std::to_string(status) + " " + Named(testing::FileText(output) + testing::FileText(errors));
    }
    std::string Roots() const
    {
        return " --root " + testing::Quoted(root) + " --to " + testing::Quoted(folder / "copies");
    }
    std::string InstallWords() const
    {
        return "install SimVci" + Roots() + " --from " + testing::Quoted(testing::BuildFolder() + ".") +
               " --log-dir " + testing::Quoted(folder / "logs");
    }
    std::string TypedAll(const std::vector<std::string>& commands, const Input& input) const
    {
        std::string shown;
        for (const std::string& command : commands)
            shown += Typed(command, input);
        // The time of the backup and the system's words.
        shown = testing::ReplaceMatches(shown, "[0-9]{8}-[0-9]{6}", "TIME");
        return testing::ReplaceMatches(shown, "(D_PDU_API_CFG.xml: )[^\n]*", "$1EXISTS");
    }
    /// Each command over what is there already, logs too: its exit status and what it prints.
    std::string Session(const Input& input) const
    {
        std::string shown = TypedAll({InstallWords() + " --dry-run", InstallWords(), InstallWords()}, input);
        std::filesystem::create_directory(folder.Path() / "logs");
        testing::WriteFileBytes(folder.Path() / "logs" / "D-PDU_API_Logger_01-11-2026_14-03-07.LGR", "");
        const std::string uninstall = "uninstall SimVci --logs" + Roots();
        return shown + TypedAll({"level SimVci full" + Roots(), "level SimVci full" + Roots(),
                                 "set SimVci LogFlush=1" + Roots(), "set SimVci LogFlush=1" + Roots(),
                                 "get SimVci LogFlush" + Roots(),
                                 "init " + testing::Quoted(PathOf({"copies", "SimVci", "D_PDU_API_CFG.xml"})),
                                 "diag-levels DATA=DEBUG", uninstall + " --dry-run", uninstall, uninstall},
                                input);
    }
    std::string PathOf(const std::vector<const char*>& names) const
    {
        std::filesystem::path path = folder.Path();
        for (const char* const name : names)
            path /= name;
        return testing::PathText(path);
    }
    /// What they print, whatever the standard input is.
    std::string Expected() const
    {
        const auto entry = [this](const std::string& path) {
            return "<MVCI_PDU_API><SHORT_NAME>SimVci</SHORT_NAME><LIBRARY_FILE URI=\"" +
                   Named(UriOfPath(path, platform::PathSeparator)) + "\"/></MVCI_PDU_API>\n";
        };
        return "0 would copy LIBRARY 1.0.0.0 to DIR/copies/SimVci/LIBRARY\n"
               "would write DIR/copies/SimVci/D_PDU_API_CFG.xml\n"
               "--- DIR/root.xml\n+++ DIR/root.xml\n@@ -2 +2 @@\n-" +
               entry(library) + "+" + entry(PathOf({"copies", "SimVci", platform::OwnLibraryName})) +
               "0 SimVci\n"
               "   copied        DIR/copies/SimVci/LIBRARY  1.0.0.0\n"
               "   configured    DIR/copies/SimVci/D_PDU_API_CFG.xml\n"
               "   changed       LIBRARY_FILE of \"SimVci\" in DIR/root.xml\n"
               "   backup        DIR/root.xml.marvane-TIME.bak\n"
               "   target        DIR/VENDOR\n"
               "   logs          DIR/logs/\n"
               "   next          restart the application, then: marvane talk DIR/logs/\n"
               "0 SimVci\n"
               "   unchanged     DIR/copies/SimVci/LIBRARY is installed already\n"
               "0 LogFnDecodeArgs: 1 -> 2   takes effect at the next PDUConstruct\n"
               "LogFnDecodeRsps: 1 -> 2   takes effect at the next PDUConstruct\n"
               "LogCallOuts: 0 -> 1   takes effect at the next PDUConstruct\n"
               "LogMaxPduBuff: 32 -> 4096   takes effect at the next PDUConstruct\n"
               "0 nothing to change in DIR/copies/SimVci/D_PDU_API_CFG.xml\n"
               "0 LogFlush: 0 -> 1   takes effect at the next PDUConstruct\n"
               "0 nothing to change in DIR/copies/SimVci/D_PDU_API_CFG.xml\n"
               "0 1\n"
               "2 marvane: DIR/copies/SimVci/D_PDU_API_CFG.xml: EXISTS\n"
               "0 DATA        DEBUG\n"
               "0 SimVci\n"
               "   would change  LIBRARY_FILE of \"SimVci\" in DIR/root.xml back to " +
               Named(UriOfPath(library, platform::PathSeparator)) +
               "\n   would delete  1 log file in DIR/logs/\n"
               "   would remove  DIR/copies/SimVci\n"
               "0 SimVci\n"
               "   restored      LIBRARY_FILE of \"SimVci\" in DIR/root.xml\n"
               "   deleted       1 log file in DIR/logs/\n"
               "   removed       DIR/copies/SimVci\n"
               "2 marvane: nothing is installed for an entry \"SimVci\"\n";
    }

    testing::EnvironmentValue none{"PDU_CFG_FILE", std::nullopt};
    testing::EnvironmentValue appData{"APPDATA", folder.Path().string()};
};

TEST_F(NoQuestion, WouldBeNoticed)
{
    testing::UnreadInput input;
    input.CloseOtherEnd();
    Typed("show -");
    EXPECT_EQ(input.Left(), "");
}

TEST_F(NoQuestion, IsAskedOfAPipeThatHoldsAnswers)
{
    testing::UnreadInput input;
    EXPECT_EQ(Session({}), Expected());
    EXPECT_EQ(input.Left(), testing::UnreadInput::Answers());
}

TEST_F(NoQuestion, IsAskedWhereStandardInputIsClosed)
{
    const Input closed = platform::PathSeparator == '/' ? Input{" <&-", ""} : Input{"", "NUL"};
    EXPECT_EQ(Session(closed), Expected());
}

TEST_F(NoQuestion, IsAskedByCommandsThatOnlyLook)
{
    Install();
    testing::UnreadInput input;
    for (const char* const command :
         {"list --root ", "status --root ", "status --json --root ", "check SimVci --root "})
        EXPECT_EQ(Typed(command + testing::Quoted(root)).substr(0, 2), "0 ") << command;
    // Of this build alone: the other width beside it may be half built.
    EXPECT_EQ(Typed("selftest --from " + testing::Quoted(testing::BuildFolder() + ".")).substr(0, 2), "0 ");
    EXPECT_EQ(input.Left(), testing::UnreadInput::Answers());
}

} // namespace
} // namespace marvane::tool
