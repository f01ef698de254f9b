// A root description file that is named on the command line and can't be read: every command that looks for
// an entry in it ends with status 2 and changes nothing.
#include "tests/support/child_program.h"
#include "tests/support/setup_commands.h"

namespace marvane::tool {
namespace {

class RootOption : public SetupCommands
{
protected:
    /// A command with this file as its root description file, and one that can be read before it.
    testing::ProgramResult RunWith(const std::string& command, const std::string& file) const
    {
        return testing::RunProgram("marvane", command + " --root " + testing::Quoted(root) + " --root " +
                                                  testing::Quoted(folder / file));
    }
    std::string To() const { return " --to " + testing::Quoted(folder / "copies"); }
    /// The commands that look for an entry, for one that is installed.
    std::vector<std::string> Commands() const
    {
        return {"list",
                "list --json",
                "install SimVci" + To(),
                "install SimVci --dry-run" + To(),
                "uninstall SimVci" + To(),
                "uninstall --all --dry-run" + To(),
                "status" + To(),
                "status --json" + To(),
                "check" + To(),
                "check SimVci" + To(),
                "check --json" + To(),
                "get SimVci LogFlush" + To(),
                "set SimVci LogFlush=0" + To(),
                "level SimVci calls" + To(),
                "init " + testing::Quoted(folder / "new.xml") + " --entry SimVci"};
    }
    void ExpectTroubleWith(const std::string& file, const std::string& fault) const
    {
        Install();
        const std::string configuration =
            testing::PathText(folder.Path() / "copies" / "SimVci" / "D_PDU_API_CFG.xml");
        const std::string before = testing::FileBytes(root) + testing::FileBytes(configuration);
        for (const std::string& command : Commands()) {
            const testing::ProgramResult result = RunWith(command, file);
            EXPECT_EQ(result.Status, 2) << command;
            EXPECT_EQ(Named(result.Errors), "marvane: DIR/" + file + " " + fault + "\n") << command;
        }
        EXPECT_EQ(testing::FileBytes(root) + testing::FileBytes(configuration), before);
        EXPECT_FALSE(std::filesystem::exists(folder.Path() / "new.xml"));
    }

    testing::EnvironmentValue none{"PDU_CFG_FILE", std::nullopt};
};

TEST_F(RootOption, OfAMissingFileIsTrouble)
{
    ExpectTroubleWith("none.xml", "does not exist");
}

TEST_F(RootOption, OfAFileThatIsNoXmlIsTrouble)
{
    testing::WriteFileBytes(folder / "no.xml", "no XML");
    ExpectTroubleWith("no.xml", "line 1: holds text outside its root element");
}

TEST_F(RootOption, CheckAndStatusStillShowWhatTheyFound)
{
    Install();
    std::filesystem::remove(root);
    EXPECT_EQ(Run({"status", "--root", root, "--to", folder / "copies"}),
              "SimVci   DIR/root.xml\n"
              "   application -> Marvane 1.0.0.0 -> VENDOR 1.4.2.7   logging: on, decoded\n"
              " ! not used    the root description file is gone: DIR/root.xml\n"
              "   logs in     DIR/logs/\n               0 of at most 20 files, 0.0 MB\nexit status 2\n");
    EXPECT_EQ(Run({"check", "--root", folder / "none.xml", "--to", folder / "copies"}),
              "   X  root file       DIR/none.xml\n                      does not exist\n"
              "\n1 error, 0 warnings\nexit status 2\n");
}

TEST_F(RootOption, StatusDoesNotSayThatNothingIsInstalledWhereItCouldNotLook)
{
    EXPECT_EQ(Run({"status", "--root", folder / "none.xml", "--to", folder / "copies"}), "exit status 2\n");
}

TEST_F(RootOption, IsNotReadByCommandsThatNeedNoEntry)
{
    const testing::EnvironmentValue appData("APPDATA", folder.Path().string());
    const std::string missing = folder / "none.xml", file = folder / "cfg.xml";
    EXPECT_EQ(Run({"init", file, "--library", library, "--log-dir", folder / "logs", "--root", missing}),
              "written: DIR/cfg.xml\n");
    EXPECT_EQ(Run({"get", "--config", file, "LogFlush", "--root", missing}), "0\n");
    EXPECT_EQ(Run({"diag-levels", "DATA", "--root", missing}), "DATA        WARN\n");
}

} // namespace
} // namespace marvane::tool
