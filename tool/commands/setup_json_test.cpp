// The commands of the set-up with --json: the whole documents.
#include "tests/support/pattern.h"
#include "tests/support/setup_commands.h"

namespace marvane::tool {
namespace {

class SetupJson : public SetupCommands
{
protected:
    /// The document of a command about the root description file of the test.
    std::string Shown(const std::string& command) const
    {
        return Document({command, "--json", "--root", root, "--to", folder / "copies"});
    }
    std::string Document(std::vector<std::string> words) const
    {
        words.insert(words.begin(), testing::BuildFolder() + "marvane" + Extension());
        std::string json = platform::RunChild(words).Output;
        // A backslash of a Windows path is two of JSON.
        for (std::size_t at = json.find("\\\\"); at != std::string::npos; at = json.find("\\\\", at + 1))
            json.erase(at, 1);
        return WithoutSpace(Named(json));
    }
    /// What `list` says about the simulated interface, without its braces.
    std::string VendorFacts() const
    {
        return "\"library\":\"DIR/VENDOR\",\"exists\":true,\"machine\":\"" + bits +
               "\",\"version\":\"1.4.2.7\",\"missing_functions\":[],\"is_marvane\":false";
    }
    void RunSession() const
    {
        const std::string copy =
            testing::PathText(folder.Path() / "copies" / "SimVci" / platform::OwnLibraryName);
        EXPECT_EQ(platform::RunChild(
                      {testing::BuildFolder() + "diag_session" + Extension(), "--library", copy, "--quiet"})
                      .Status,
                  0);
    }

    testing::EnvironmentValue none{"PDU_CFG_FILE", std::nullopt};
};

/// `list` takes no --to.
std::string ListOf(const std::string& entries)
{
    return "{\"schema\":\"marvane.list/1\",\"root_files\":[{\"path\":\"DIR/root.xml\",\"origin\":\"--root\"," +
           entries + "}]}\n";
}

TEST_F(SetupJson, ListOfARootFileWithoutEntries)
{
    testing::WriteFileBytes(root, "<MVCI_PDU_API_ROOT/>");
    EXPECT_EQ(Document({"list", "--json", "--root", root}), ListOf("\"entries\":[]"));
}

TEST_F(SetupJson, ListOfAFileThatIsNoRootFile)
{
    std::filesystem::remove(root);
    EXPECT_EQ(Document({"list", "--json", "--root", root}),
              ListOf("\"fault\":\"does not exist\",\"entries\":[]"));
}

TEST_F(SetupJson, ListOfALibrary)
{
    EXPECT_EQ(Document({"list", "--json", "--root", root}),
              ListOf("\"entries\":[{\"short_name\":\"SimVci\",\"supplier\":\"\",\"line\":2," + VendorFacts() +
                     "}]"));
}

TEST_F(SetupJson, ListOfAChainHasTheLibraryBehindMarvane)
{
    Install();
    EXPECT_EQ(
        Document({"list", "--json", "--root", root}),
        ListOf("\"entries\":[{\"short_name\":\"SimVci\",\"supplier\":\"\",\"line\":2,\"library\":\"DIR/"
               "copies/SimVci/LIBRARY\",\"exists\":true,\"machine\":\"" +
               bits +
               "\",\"version\":\"1.0.0.0\",\"missing_functions\":[],\"is_marvane\":true,\"behind\":{"
               "\"configuration\":\"DIR/copies/SimVci/D_PDU_API_CFG.xml\",\"configuration_exists\":true," +
               VendorFacts() + "}}]"));
}

TEST_F(SetupJson, ListSaysWhyAnEntryCanNotBeUsed)
{
    std::filesystem::remove(library);
    EXPECT_EQ(Document({"list", "--json", "--root", root}),
              ListOf("\"entries\":[{\"short_name\":\"SimVci\",\"supplier\":\"\",\"line\":2,\"library\":\"DIR/"
                     "VENDOR\",\"exists\":false}]"));
    testing::WriteFileBytes(root,
                            "<MVCI_PDU_API_ROOT><MVCI_PDU_API><SHORT_NAME>No</SHORT_NAME></MVCI_PDU_API>"
                            "</MVCI_PDU_API_ROOT>");
    EXPECT_EQ(
        Document({"list", "--json", "--root", root}),
        ListOf(
            "\"entries\":[{\"short_name\":\"No\",\"supplier\":\"\",\"line\":1,\"fault\":\"it has no LIBRARY_FILE with a "
            "URI\",\"not_changeable\":\"it has no LIBRARY_FILE with a URI\"}]"));
}

/// `status` of the installed entry.
std::string StatusOf(const std::string& effect, const std::string& logs)
{
    return "{\"schema\":\"marvane.status/1\",\"installed\":[{\"entry\":\"SimVci\",\"root_file\":\"DIR/"
           "root.xml\",\"marvane\":\"DIR/copies/SimVci/LIBRARY\",\"version\":\"1.0.0.0\"," +
           effect + ",\"target\":\"DIR/VENDOR\",\"logging\":\"on, decoded\",\"log_folder\":\"DIR/logs/\"," +
           logs + "}]}\n";
}

TEST_F(SetupJson, StatusIsEmptyWithoutAnInstallation)
{
    EXPECT_EQ(Shown("status"), "{\"schema\":\"marvane.status/1\",\"installed\":[]}\n");
}

TEST_F(SetupJson, StatusOfAChainWithoutLogs)
{
    Install();
    EXPECT_EQ(Shown("status"),
              StatusOf("\"in_effect\":true", "\"log_files\":0,\"log_bytes\":0,\"newest\":[]"));
}

TEST_F(SetupJson, StatusOfAChainWithASession)
{
    Install();
    RunSession();
    std::string status = testing::ReplaceMatches(Shown("status"), "(bytes|_ms|calls)\":[0-9]+", "$1\":0");
    status = testing::ReplaceMatches(status, "Logger_[0-9_-]+[.]", "Logger_TIME.");
    EXPECT_EQ(
        status,
        StatusOf(
            "\"in_effect\":true",
            "\"log_files\":1,\"log_bytes\":0,\"newest\":[{\"file\":\"DIR/logs/D-PDU_API_Logger_TIME.LGR\",\"duration_ms\":0,\"calls\":0,\"failed\":2,\"ended\":true,\"outcome\":\"2 failed\"}]"));
}

TEST_F(SetupJson, StatusOfAnEntryThatIsGone)
{
    Install();
    testing::WriteFileBytes(root, "<MVCI_PDU_API_ROOT/>");
    EXPECT_EQ(Shown("status"),
              StatusOf("\"in_effect\":false,\"trouble\":\"the entry is gone from DIR/root.xml\"",
                       "\"log_files\":0,\"log_bytes\":0,\"newest\":[]"));
}

TEST_F(SetupJson, CheckOfAHealthyChain)
{
    Install();
    // Named turns the escape of a line feed or a quote into "/n" and "/\"" on Windows.
    std::string checked = Shown("check");
    if (platform::PathSeparator == '\\')
        checked = testing::ReplaceMatches(testing::ReplaceMatches(checked, "/n", "\\n"), "/\"", "\\\"");
    EXPECT_EQ(checked,
              "{\"schema\":\"marvane.check/1\",\"checked\":[{\"title\":\"SimVci\",\"findings\":["
              "{\"level\":\"ok\",\"place\":\"Marvane\",\"text\":\"DIR/copies/SimVci/LIBRARY\\n1.0.0.0, " +
                  bits +
                  ", 29 of 29 functions\"},"
                  "{\"level\":\"ok\",\"place\":\"root file\",\"text\":\"DIR/root.xml (--root)\\nentry "
                  "\\\"SimVci\\\" leads to Marvane\"},"
                  "{\"level\":\"ok\",\"place\":\"configuration\",\"text\":\"DIR/copies/SimVci/"
                  "D_PDU_API_CFG.xml\\nbeside Marvane; PDU_CFG_FILE is not set\"},"
                  "{\"level\":\"ok\",\"place\":\"LogFileDir\",\"text\":\"DIR/logs/\\ndoes not exist yet and "
                  "can be made, SPACE free\"},"
                  "{\"level\":\"ok\",\"place\":\"target library\",\"text\":\"DIR/VENDOR\\n1.4.2.7, " +
                  bits + ", 29 of 29 functions\"}],\"outcome\":\"Outcome: works, log in DIR/logs/.\"}]}\n");
}

} // namespace
} // namespace marvane::tool
