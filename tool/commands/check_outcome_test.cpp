// What `marvane check` says that the application will see is what it sees: each configuration is checked, and
// the sample application runs with it.
#include "tests/support/setup_commands.h"
#include "tool/setup/configuration_findings.h"

namespace marvane::tool {
namespace {

class CheckedOutcome : public SetupCommands
{
protected:
    CheckedOutcome()
    {
        std::filesystem::create_directory(place);
        for (const std::string& name :
             {std::string(platform::OwnLibraryName), testing::LibraryName("SimVci")})
            std::filesystem::copy_file(testing::BuildFolder() + name, place / name);
    }

    /// The good configuration, the line of one key replaced; empty: without it.
    std::string With(const std::string& key, const std::string& line) const
    {
        std::string file = "<?xml?>\n<D_PDU_API_CFG>\n";
        for (const auto& [name, value] : good)
            file += name != key ? AttributeText(name, value) + "\n" : !line.empty() ? line + "\n" : "";
        return file + "</D_PDU_API_CFG>\n";
    }
    std::string WithValue(const std::string& key, const std::string& value) const
    {
        return With(key, AttributeText(key, value));
    }

    /// The last line of `check`, shortened: "0x20", "no log", "headers", "calls" or "ends".
    std::string Foretold() const
    {
        const std::string screen = Run({"check", "--config", testing::PathText(place / "D_PDU_API_CFG.xml")});
        const std::string outcome = screen.substr(screen.find("\nOutcome: ") + 10);
        return outcome.starts_with("every call returns 0x20")       ? "0x20"
               : outcome.starts_with("a call ends the application") ? "ends"
               : outcome.starts_with("works, no log")               ? "no log"
               : outcome.find("with headers only.\n") < outcome.size()
                   ? "headers"
                   : outcome.substr(0, outcome.find('\n'));
    }

    /// The same of what the sample application saw.
    std::string Seen() const
    {
        const platform::ChildResult session =
            platform::RunChild({testing::BuildFolder() + "diag_session" + Extension(), "--library",
                                testing::PathText(place / platform::OwnLibraryName), "--quiet"});
        std::string log;
        if (std::filesystem::exists(place / "logs"))
            for (const auto& file : std::filesystem::directory_iterator(place / "logs"))
                log += testing::FileBytes(file.path());
        if (!session.Ended)
            return "ends";
        if (session.Status != 0)
            return "0x20";
        return log.empty() ? "no log" : log.find("+ PDU") == std::string::npos ? "headers" : InLogs;
    }

    /// Both, which must be the same.
    std::string Outcome(const std::string& configuration)
    {
        testing::WriteFileBytes(place / "D_PDU_API_CFG.xml", configuration);
        std::filesystem::remove_all(place / "logs");
        const std::string foretold = Foretold();
        EXPECT_FALSE(std::filesystem::exists(place / "logs")) << "check makes nothing";
        EXPECT_EQ(foretold, Seen()) << configuration;
        return foretold;
    }

    static constexpr const char* InLogs = "works, log in DIR/place/logs/.";
    const testing::EnvironmentValue none{"PDU_CFG_FILE", std::nullopt};
    /// Under AddressSanitizer too, a crash is the end by a signal.
    const testing::EnvironmentValue crashes{"ASAN_OPTIONS", "handle_segv=0"};
    std::filesystem::path place = folder.Path() / "place";
    std::string folderOfLogs = testing::PathText(place / "logs") + platform::PathSeparator;
    std::vector<std::pair<std::string, std::string>> good = {
        {"InstalledPath", testing::PathText(place) + platform::PathSeparator},
        {"PDUAPILibDll", testing::LibraryName("SimVci")},
        {"LogFileDir", folderOfLogs},
        {"LogEnabled", "1"},
        {"LogFnCalls", "2"},
    };
};

TEST_F(CheckedOutcome, OfASoundConfigurationIsALog)
{
    EXPECT_EQ(Outcome(With("", "")), InLogs);
    EXPECT_EQ(Outcome(WithValue("InstalledPath", ".")), InLogs);
    EXPECT_EQ(Outcome(WithValue("LogFnCalls", "0")), "headers");
    EXPECT_EQ(Outcome(With("LogEnabled", "")), "no log");
}

TEST_F(CheckedOutcome, OfAWrongPathIsThatNothingWorks)
{
    const std::string whole = testing::PathText(place);
    EXPECT_EQ(Outcome(WithValue("InstalledPath", whole)), "0x20");
    EXPECT_EQ(Outcome(WithValue("InstalledPath", "%NO_SUCH_VARIABLE%")), "0x20");
    EXPECT_EQ(Outcome(WithValue("PDUAPILibDll", (place / testing::LibraryName("SimVci")).string())), "0x20");
    EXPECT_EQ(Outcome(WithValue("PDUAPILibDll", platform::OwnLibraryName)), "0x20");
    EXPECT_EQ(Outcome(With("PDUAPILibDll", "")), "0x20");
    EXPECT_EQ(Outcome(With("LogFileDir", "")), "0x20");
    EXPECT_EQ(Outcome(WithValue("LogFileDir", (place / platform::OwnLibraryName / "logs").string())), "0x20");
}

TEST_F(CheckedOutcome, OfALogFolderThatIsTooLong)
{
    std::string path = testing::PathText(place / "far") + platform::PathSeparator;
    path.resize(254, 'x');
    path[200] = platform::PathSeparator;
    EXPECT_EQ(Outcome(WithValue("LogFileDir", path + "yzz")), "0x20");
}

TEST_F(CheckedOutcome, OfAFunctionThatIsMissingIsTheEndOfTheApplication)
{
    const std::string name = "PDULockResource";
    std::string vci = testing::FileBytes(place / testing::LibraryName("SimVci"));
    for (std::size_t at = 0; (at = vci.find(name, at)) != std::string::npos; ++at)
        vci[at + name.find('o')] = '0'; // Its other functions are found as before.
    testing::WriteFileBytes(place / testing::LibraryName("NoLock"), vci);
    EXPECT_EQ(Outcome(WithValue("PDUAPILibDll", testing::LibraryName("NoLock"))), "ends");
}

TEST_F(CheckedOutcome, OfLogEnabledInOtherSpellings)
{
    const auto outcome = [this](const std::string& line) { return Outcome(With("LogEnabled", line)); };
    EXPECT_EQ(outcome("<!--\n" + AttributeText("LogEnabled", "1") + "\n-->"), InLogs);
    EXPECT_EQ(outcome("<Attribute Value=\"1\" Type=\"UNUM32\" Name=\"LogEnabled\"></Attribute>"), InLogs);
    EXPECT_EQ(outcome(AttributeText("LogEnabled", "2")), "0x20");
    EXPECT_EQ(outcome(AttributeText("LogEnabled", "-1")), "0x20");
    EXPECT_EQ(outcome(AttributeText("LogEnabled", "4294967297")), "0x20");
    for (const char* const line :
         {"<Attribute Name=\"LogEnabled\" Type=\"UNUM32\" Value=\"0x1\"/>",
          "<Attribute Name=\"LogEnabled\" Type=\"UNUM32\" Value=\"on\"/>",
          "<Attribute Name=\"LogEnabled\" Type=\"UNUM32\"\n Value=\"1\"/>",
          "<Attribute Name=\"LogEnabled\" Type=\"String\" Value=\"1\"/>",
          "<Attribute Name=\"LogEnabled\" Value=\"1\"/>", "<LogEnabled>1</LogEnabled>",
          "<Attribute Name=\"logenabled\" Type=\"UNUM32\" Value=\"1\"/>",
          "<attribute Name=\"LogEnabled\" Type=\"UNUM32\" Value=\"1\"/>",
          "<Attribute Name='LogEnabled' Type='UNUM32' Value='1'/>",
          "<Attribute Name = \"LogEnabled\" Type=\"UNUM32\" Value=\"1\"/>",
          "<Attribute Name=\"LogEnabled\" Type=\"UNUM32\" Value=\"1/>"})
        EXPECT_EQ(outcome(line), "no log");
}

TEST_F(CheckedOutcome, OfTheFirstLinesAndTheLast)
{
    const std::string whole = With("", "");
    const std::string body = whole.substr(whole.find("<Attribute"));
    EXPECT_EQ(Outcome("anything\n<D_PDU_API_CFG>\n" + body), InLogs);
    EXPECT_EQ(Outcome("\xEF\xBB\xBF" + whole), InLogs);
    EXPECT_EQ(Outcome(whole.substr(0, whole.rfind("</"))), InLogs);
    for (const char* const begin :
         {"", "<D_PDU_API_CFG>\n", "<?xml?>\n<D_PDU_API_CFG> \n", "<?xml?>\n\n<D_PDU_API_CFG>\n"})
        EXPECT_EQ(Outcome(begin + body), "0x20");
    const std::string late = With("LogEnabled", "") + AttributeText("LogEnabled", "1") + "\n";
    EXPECT_EQ(Outcome(late), "no log");
    EXPECT_EQ(Outcome(With("LogEnabled", std::string(1000, ' ') + "\n" + AttributeText("LogEnabled", "1"))),
              "no log");
}

} // namespace
} // namespace marvane::tool
