// `marvane check` where the log folder is on the network.
#include "tests/support/network_folder.h"
#include "tests/support/setup_commands.h"

namespace marvane::tool {
namespace {

class CheckNetwork : public SetupCommands
{
protected:
    /// What `check` shows of an installed entry with this log folder, which is named "LOGS/".
    std::string CheckedWith(const std::string& logs) const
    {
        Run({"install", "SimVci", "--root", root, "--to", folder / "copies", "--from", testing::BuildFolder(),
             "--log-dir", logs, "--flush"});
        std::string shown = Check({"SimVci"});
        const std::string named = Named(logs);
        for (std::size_t at = shown.find(named); at != std::string::npos; at = shown.find(named))
            shown.replace(at, named.size(), "LOGS/");
        return shown;
    }

    /// The whole screen, with these lines about the log folder.
    std::string Screen(const std::string& aboutFolder) const
    {
        std::string screen =
            Checked("SimVci", LeadsToMarvane("SimVci"), "", "", "0 errors, 1 warning", "works, log in LOGS/");
        const std::size_t begin = screen.find("  ok  LogFileDir");
        return screen.replace(begin, screen.find('\n', begin) + 1 - begin, aboutFolder) + "exit status 1\n";
    }

    testing::EnvironmentValue none{"PDU_CFG_FILE", std::nullopt};
};

/// A folder on the network, and what `check` says of it as a log folder.
struct Place
{
    const char* Name;
    const char* Variable; ///< of the environment, which names the place
    const char* Below;    ///< of the folder there
    const char* Lines;
};

class CheckNetworkFolder : public CheckNetwork, public ::testing::WithParamInterface<Place>
{
};

TEST_P(CheckNetworkFolder, IsWarnedOf)
{
    const testing::NetworkFolder network(GetParam().Variable);
    if (!network.Exists())
        GTEST_SKIP() << "the environment does not set " << GetParam().Variable;
    EXPECT_EQ(CheckedWith(network.Path() + GetParam().Below), Screen(GetParam().Lines));
}

const Place Places[] = {
    {"AShareByItsSpelling", "MARVANE_TEST_SHARE", "",
     "   !  line 10         LogFileDir = \"LOGS/\" A folder on the network: each line of the log waits for it.\n"
     "  ok  LogFileDir      LOGS/ can be written, SPACE free\n"},
    {"ADriveThatTheSystemCallsRemote", "MARVANE_TEST_NETWORK_DRIVE", "",
     "  ok  LogFileDir      LOGS/ can be written, SPACE free\n"
     "   !  line 10         LOGS/ A folder on the network: each line of the log waits for it.\n"},
    {"AFolderOnSuchADriveThatIsYetToBeMade", "MARVANE_TEST_NETWORK_DRIVE", "new\\logs\\",
     "  ok  LogFileDir      LOGS/ does not exist yet and can be made, SPACE free\n"
     "   !  line 10         LOGS/ A folder on the network: each line of the log waits for it.\n"},
};
std::string NameOf(const ::testing::TestParamInfo<Place>& info)
{
    return info.param.Name;
}
INSTANTIATE_TEST_SUITE_P(Places, CheckNetworkFolder, ::testing::ValuesIn(Places), NameOf);

TEST_F(CheckNetwork, OfAShareThatIsNotThereIsAnError)
{
    if (platform::PathSeparator == '/')
        GTEST_SKIP() << "there are no shares in paths here";
    const std::string file = folder / "cfg.xml";
    Run({"init", file, "--library", library, "--log-dir", "\\\\marvane-absent\\share\\logs"});
    const std::string shown = Unwrapped(Run({"check", "--config", file}));
    EXPECT_NE(
        shown.find(
            "   X  line 10         //marvane-absent/share/logs/ can't be made: there is no such share.\n"),
        std::string::npos)
        << shown;
}

TEST_F(CheckNetwork, FindsWhatIsOnAShare)
{
    const testing::NetworkFolder network("MARVANE_TEST_SHARE");
    if (!network.Exists())
        GTEST_SKIP() << "the environment names no share";
    const std::string onShare = network.Path() + "root.xml";
    std::filesystem::copy_file(testing::FilePath(root), testing::FilePath(onShare));
    EXPECT_EQ(Run({"install", "SimVci", "--root", onShare, "--to", network.Path() + "copies", "--from",
                   testing::BuildFolder(), "--log-dir", folder / "logs"})
                  .find("exit status"),
              std::string::npos);
    const std::string copies = network.Path() + "copies";
    EXPECT_EQ(Run({"get", "SimVci", "LogFlush", "--root", onShare}), "0\n");
    EXPECT_EQ(Run({"uninstall", "SimVci", "--root", onShare, "--to", copies}).find("exit status"),
              std::string::npos);
    EXPECT_EQ(testing::FileBytes(testing::FilePath(onShare)), testing::FileBytes(root));
}

} // namespace
} // namespace marvane::tool
