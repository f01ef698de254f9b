#include "tool/setup/install.h"

#include "config/paths.h"
#include "tests/support/install_machine.h"
#include "tests/support/pattern.h"
#include "tool/setup/check.h"
#include "tool/setup/root_file.h"

namespace marvane::tool {
namespace {

using Installing = Machines;

TEST_F(Installing, PutsACopyWithItsConfigurationInFrontOfTheLibrary)
{
    WriteRoot(Entry("One"));
    Install(Options());
    const RootFile file = ParseRootFile(RootBytes());
    const std::string copy = PathOfUri(file.Entries.at(0).Uri.value(), platform::PathSeparator);
    EXPECT_EQ(Named(copy), "DIR/copies/One/LIBRARY");
    EXPECT_EQ(testing::FileBytes(copy),
              testing::FileBytes(testing::BuildFolder() + platform::OwnLibraryName));
    const CheckReport report = CheckChain(copy, std::nullopt);
    EXPECT_FALSE(HasErrors(report.All));
    EXPECT_EQ(Named(OutcomeText(report)), "Outcome: works, log in DIR/logs/.");
}

TEST_F(Installing, SaysWhatItDid)
{
    WriteRoot(Entry("One"));
    std::string report = Named(Install(Options()));
    const std::size_t stamp = report.find(".marvane-") + 9;
    report.replace(stamp, 15, "STAMP");
    EXPECT_EQ(report, "One\n"
                      "   copied        DIR/copies/One/LIBRARY  1.0.0.0\n"
                      "   configured    DIR/copies/One/D_PDU_API_CFG.xml\n"
                      "   changed       LIBRARY_FILE of \"One\" in DIR/root.xml\n"
                      "   backup        DIR/root.xml.marvane-STAMP.bak\n"
                      "   target        DIR/vendor/VENDOR\n"
                      "   logs          DIR/logs/\n"
                      "   next          restart the application, then: marvane talk DIR/logs/\n");
}

TEST_F(Installing, DryShowsTheChangeAndLeavesNoTrace)
{
    WriteRoot(Entry("One"));
    InstallOptions options = Options();
    options.DryRun = true;
    const std::string line = "<MVCI_PDU_API><SHORT_NAME>One</SHORT_NAME><LIBRARY_FILE URI=\"";
    const std::string report = Install(options);
    EXPECT_EQ(report.substr(report.find("@@")),
              "@@ -2 +2 @@\n-" + line + UriOfVendor() + "\"/></MVCI_PDU_API>\n+" + line +
                  UriOfPath((folder.Path() / "copies" / "One" / platform::OwnLibraryName).string(),
                            platform::PathSeparator) +
                  "\"/></MVCI_PDU_API>\n");
    EXPECT_EQ(Traces(), "root.xml\n");
}

TEST_F(Installing, TwiceChangesNothing)
{
    WriteRoot(Entry("One"));
    Install(Options());
    const std::string traces = Traces();
    const std::string bytes = RootBytes();
    EXPECT_EQ(Named(Install(Options())),
              "One\n   unchanged     DIR/copies/One/LIBRARY is installed already\n");
    EXPECT_EQ(Traces(), traces);
    EXPECT_EQ(RootBytes(), bytes);
}

TEST_F(Installing, ANewerLibraryReplacesTheCopyAndKeepsTheConfiguration)
{
    WriteRoot(Entry("One"));
    Install(Options());
    const std::string copy = (folder.Path() / "copies" / "One" / platform::OwnLibraryName).string();
    const std::string configuration = ConfigurationBeside(copy, platform::PathSeparator);
    testing::WriteFileBytes(copy, testing::FileBytes(copy) + "older");
    testing::WriteFileBytes(configuration, WithValue(testing::FileBytes(configuration), "LogFlush", "1"));
    const std::string changed = testing::FileBytes(configuration);
    EXPECT_EQ(Named(Install(Options())), "One\n   updated       DIR/copies/One/LIBRARY  1.0.0.0\n");
    EXPECT_EQ(testing::FileBytes(copy),
              testing::FileBytes(testing::BuildFolder() + platform::OwnLibraryName));
    EXPECT_EQ(testing::FileBytes(configuration), changed);
}

TEST_F(Installing, AllChangesEveryEntryInOneStep)
{
    WriteRoot(Entry("One") + Entry("Two"));
    const std::string before = RootBytes();
    Install(Options(""));
    const RootFile file = ParseRootFile(RootBytes());
    EXPECT_EQ(Named(PathOfUri(file.Entries.at(1).Uri.value(), platform::PathSeparator)),
              "DIR/copies/Two/LIBRARY");
    EXPECT_NE(Traces().find("copies/One/LIBRARY"), std::string::npos);
    Uninstalled("");
    EXPECT_EQ(RootBytes(), before);
}

TEST_F(Installing, EntriesOfOneNameGetLogFoldersOfTheirOwn)
{
    // As the two views of the registry may have it.
    WriteRoot(Entry("One"));
    InstallOptions options = Options();
    options.Roots.push_back(folder / "other.xml");
    testing::WriteFileBytes(options.Roots[1], RootBytes());
    Install(options);
    const auto logs = [&](const std::string& copy) {
        const std::filesystem::path at = folder.Path() / "copies" / copy / ConfigurationFileName;
        return Named(ReadConfiguration(at.string()).Text("LogFileDir").Value);
    };
    EXPECT_EQ(logs("One"), "DIR/logs/One/");
    EXPECT_EQ(logs("One-2"), "DIR/logs/One-2/");
    // Installed again, or one after the other, they keep them.
    options.LogFolder.reset();
    Install(options);
    EXPECT_EQ(logs("One-2"), "DIR/logs/One-2/");
    Uninstalled();
    for (const std::string& each : std::vector(options.Roots)) {
        options.Roots = {each};
        Install(options);
    }
    EXPECT_TRUE(logs("One").ends_with("/One/"));
    EXPECT_TRUE(logs("One-2").ends_with("/One-2/"));
}

TEST_F(Installing, RefusesWhatItCanNotUndo)
{
    const auto refusal = [&](const std::string& entries) {
        WriteRoot(entries);
        const std::string reason = Refusal(Options());
        InstallOptions dry = Options();
        dry.DryRun = true;
        EXPECT_EQ(Refusal(dry), reason);
        EXPECT_EQ(Traces(), "root.xml\n");
        return reason;
    };
    EXPECT_EQ(refusal(Entry("Other")), "no entry \"One\"; there is \"Other\"");
    EXPECT_EQ(refusal(Entry("A") + Entry("B") + Entry("A")), "no entry \"One\"; there are \"A\", \"B\"");
    const std::string what = "entry \"One\" in DIR/root.xml: ";
    EXPECT_EQ(refusal(Entry("One") + Entry("One")), what + "there are two entries of this name");
    EXPECT_EQ(refusal("<x>" + Entry("One") + "</x>"),
              what + "it is nested deeper than the root element's children");
    EXPECT_EQ(refusal(Entry("One", "pdu.dll")), what + "its URI \"pdu.dll\" does not begin with file:");
    EXPECT_EQ(refusal(Entry("One", "file:pdu.dll")), what + "its URI \"file:pdu.dll\" is a relative path");
    EXPECT_EQ(refusal(Entry("One", UriOfVendor() + "x")), what + "DIR/vendor/VENDORx does not exist");
    EXPECT_EQ(refusal(Entry("One", UriOfPath(root, platform::PathSeparator))),
              what + "DIR/root.xml is no library");
    EXPECT_EQ(refusal("<MVCI_PDU_API><SHORT_NAME>One</SHORT_NAME>"
                      "<LIBRARY_FILE URI='a'/><LIBRARY_FILE URI='b'/></MVCI_PDU_API>"),
              what + "it has two LIBRARY_FILE elements");
    EXPECT_EQ(refusal(Entry("One", UriOfVendor() + "&v;")),
              "DIR/root.xml line 2: the entity \"&v;\" is unknown");
    EXPECT_EQ(refusal("<a>"), "DIR/root.xml line 2: the end tag MVCI_PDU_API_ROOT ends no open element");
}

TEST_F(Installing, RefusesUtf16WithoutAMark)
{
    WriteRoot(Entry("One"));
    std::string wide;
    for (const char character : RootBytes())
        wide += std::string{character, '\0'};
    testing::WriteFileBytes(root, wide);
    EXPECT_EQ(Refusal(Options()), "DIR/root.xml is UTF-16 without a byte-order mark");
    EXPECT_EQ(RootBytes(), wide);
    EXPECT_EQ(Traces(), "root.xml\n");
}

TEST_F(Installing, RecordsWhatItChanged)
{
    WriteRoot(Entry("One", "file:/" + UriOfVendor().substr(8)));
    Install(Options());
    std::string record = testing::FileBytes(folder.Path() / "copies" / "One" / "marvane-install.txt");
    record = testing::ReplaceMatches(record, "installed=[0-9-]+T[0-9:]+Z\n", "installed=TIME\n");
    EXPECT_EQ(record, "root=" + root + "\nentry=One\nold_uri=file:/" + UriOfVendor().substr(8) +
                          "\nnew_uri=" +
                          UriOfPath((folder.Path() / "copies" / "One" / platform::OwnLibraryName).string(),
                                    platform::PathSeparator) +
                          "\ninstalled=TIME\nversion=1.0.0.0\n");
}

TEST(CopyFolders, ByDefaultAreThoseOfPrograms)
{
    if (platform::PathSeparator == '/') {
        EXPECT_EQ(CopyFolders(""), std::vector<std::string>{"/usr/local/lib/marvane"});
        return;
    }
    const std::vector<std::string> both = {"C:\\Program Files\\Marvane\\installed",
                                           "C:\\Program Files (x86)\\Marvane\\installed"};
    EXPECT_EQ(CopyFolders(""), both);
    EXPECT_EQ(DefaultCopyFolder(Machine::X86), both[1]);
}

TEST_F(Installing, RefusesALibraryThatDoesNotLoad)
{
#if defined(MARVANE_SANITIZED) || defined(MARVANE_COVERAGE)
    GTEST_SKIP() << "with debug information, half of the file is a whole library";
#endif
    // As much of a library as its headers and tables need, and nothing that could be loaded.
    std::string bytes = testing::FileBytes(vendor);
    bytes.replace(bytes.size() / 2, bytes.size() / 2, "");
    testing::WriteFileBytes(vendor, bytes);
    WriteRoot(Entry("One"));
    EXPECT_NE(Refusal(Options()), "not refused");
    EXPECT_EQ(Traces(), "root.xml\n");
}

TEST_F(Installing, RefusesWithoutALibraryOfTheMachineType)
{
    WriteRoot(Entry("One"));
    InstallOptions options = Options();
    options.From = folder / "vendor";
    const std::string bits = sizeof(void*) == 8 ? "64-bit" : "32-bit";
    EXPECT_EQ(Refusal(options), "entry \"One\": its library is " + bits + ", and there is no " + bits +
                                    " LIBRARY in DIR/vendor");
}

} // namespace
} // namespace marvane::tool
