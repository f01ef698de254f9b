#include "tool/setup/install.h"

#include "tests/support/install_machine.h"

namespace marvane::tool {
namespace {

using Uninstalling = Machines;

TEST_F(Uninstalling, SaysWhatItDidAndLeavesNoTrace)
{
    WriteRoot(Entry("One"));
    Install(Options());
    EXPECT_EQ(Uninstalled(), "One\n"
                             "   restored      LIBRARY_FILE of \"One\" in DIR/root.xml\n"
                             "   removed       DIR/copies/One\n");
    EXPECT_EQ(Traces(), "copies\nroot.xml\n");
}

TEST_F(Uninstalling, SaysWhereLogsStay)
{
    WriteRoot(Entry("One"));
    Install(Options());
    std::filesystem::create_directory(folder.Path() / "logs");
    testing::WriteFileBytes(folder.Path() / "logs" / "D-PDU_API_Logger_25-11-2026_14-03-07.LGR", "log");
    EXPECT_EQ(Uninstalled(), "One\n"
                             "   restored      LIBRARY_FILE of \"One\" in DIR/root.xml\n"
                             "   kept          1 log file in DIR/logs/ (--logs deletes them)\n"
                             "   removed       DIR/copies/One\n");
    EXPECT_EQ(Traces(), "copies\nlogs\nlogs/D-PDU_API_Logger_25-11-2026_14-03-07.LGR\nroot.xml\n");
}

TEST_F(Uninstalling, KeepsWhatOthersHaveChangedMeanwhile)
{
    WriteRoot(Entry("One"));
    Install(Options());
    std::string changed = RootBytes();
    changed.replace(changed.find("<MVCI_PDU_API>"), 0, Entry("New"));
    testing::WriteFileBytes(root, changed);
    Uninstalled();
    EXPECT_EQ(RootBytes(), "<MVCI_PDU_API_ROOT>\n" + Entry("New") + Entry("One") + "</MVCI_PDU_API_ROOT>\n");
}

TEST_F(Uninstalling, LeavesAPathThatAVendorHasPutBack)
{
    WriteRoot(Entry("One"));
    const std::string before = RootBytes();
    Install(Options());
    WriteRoot(Entry("One"));
    EXPECT_EQ(Uninstalled(),
              "One\n"
              "   note          DIR/root.xml no longer leads to this copy: somebody put another path there\n"
              "   removed       DIR/copies/One\n");
    EXPECT_EQ(RootBytes(), before);
}

TEST_F(Uninstalling, ACopyInUseLeavesItUntilTheNextTime)
{
    if (platform::PathSeparator != '\\')
        GTEST_SKIP() << "a library in use can be removed here";
    WriteRoot(Entry("One"));
    Install(Options());
    const std::string before = Traces();
    const platform::LoadedLibrary held =
        platform::LoadTargetLibrary((folder.Path() / "copies" / "One" / platform::OwnLibraryName).string());
    ASSERT_NE(held.Handle, nullptr) << held.Error;
    EXPECT_EQ(Uninstalled(),
              "One\n"
              "   restored      LIBRARY_FILE of \"One\" in DIR/root.xml\n"
              "   kept          DIR/copies/One: an application still uses the library there; the next "
              "install or uninstall removes it\n");
    EXPECT_EQ(Traces(), "copies\ncopies/One\ncopies/One/LIBRARY.marvane-old\nroot.xml\n");
    // Installed again meanwhile, it takes the same folder.
    Install(Options());
    EXPECT_NE(Traces().find("copies/One/LIBRARY.marvane-old\n"), std::string::npos);
    EXPECT_EQ(Traces().find("copies/One-2"), std::string::npos);
    platform::UnloadLibrary(held.Handle);
    Uninstalled();
    EXPECT_EQ(Traces(), "copies\nroot.xml\n");
}

TEST_F(Uninstalling, RemovesWhatWasLeftInUseTheNextTime)
{
    std::filesystem::create_directories(folder.Path() / "copies" / "One");
    const std::string old = std::string(platform::OwnLibraryName) + ".marvane-old";
    testing::WriteFileBytes(folder.Path() / "copies" / "One" / old, "library");
    EXPECT_EQ(Uninstalled(), "   removed       DIR/copies/One, left while an application still used it\n");
    EXPECT_EQ(Traces(), "copies\n");
    // What is not of this command stays.
    std::filesystem::create_directories(folder.Path() / "copies" / "Mine");
    testing::WriteFileBytes(folder.Path() / "copies" / "Mine" / "notes.marvane-old", "mine");
    EXPECT_THROW(Uninstalled(), InstallRefused);
    EXPECT_EQ(Traces(), "copies\ncopies/Mine\ncopies/Mine/notes.marvane-old\n");
}

TEST_F(Uninstalling, DeletesLogsOnlyIfTold)
{
    WriteRoot(Entry("One"));
    Install(Options());
    std::filesystem::create_directory(folder.Path() / "logs");
    testing::WriteFileBytes(folder.Path() / "logs" / "D-PDU_API_Logger_25-11-2026_14-03-07.LGR", "log");
    testing::WriteFileBytes(folder.Path() / "logs" / "notes.txt", "mine");
    Uninstalled("One", true);
    EXPECT_EQ(Traces(), "copies\nlogs\nlogs/notes.txt\nroot.xml\n");
}

TEST_F(Uninstalling, RefusesWhatIsNotInstalled)
{
    EXPECT_THROW(Uninstalled(), InstallRefused);
}

std::string Wide(const std::string& text)
{
    std::string wide = "\xFF\xFE";
    for (const char character : text)
        wide += std::string{character, '\0'};
    return wide;
}

/// Every spelling of a root description file, with URI for the value.
const std::vector<std::string>& Spellings()
{
    static const std::string entry =
        "<MVCI_PDU_API><SHORT_NAME>One</SHORT_NAME><LIBRARY_FILE URI=\"URI\"/></MVCI_PDU_API>";
    static const std::vector<std::string> spellings = {
        "<MVCI_PDU_API_ROOT>" + entry + "</MVCI_PDU_API_ROOT>",
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n<MVCI_PDU_API_ROOT>\r\n\t" + entry +
            "\r\n</MVCI_PDU_API_ROOT>\r\n",
        "\xEF\xBB\xBF<MVCI_PDU_API_ROOT><!-- " + entry + " -->" + entry + "</MVCI_PDU_API_ROOT>\n\n",
        "<MVCI_PDU_API_ROOT><MVCI_PDU_API a='1' ><SHORT_NAME> One\n</SHORT_NAME><LIBRARY_FILE  x=''  URI = 'URI' "
        "/></MVCI_PDU_API></MVCI_PDU_API_ROOT>",
        "<!DOCTYPE MVCI_PDU_API_ROOT [<!ENTITY e \"v\">]><MVCI_PDU_API_ROOT><MVCI_PDU_API><DESCRIPTION>&e;</DESCRIPTION>"
        "<SHORT_NAME><![CDATA[One]]></SHORT_NAME><LIBRARY_FILE URI=\"URI\"></LIBRARY_FILE></MVCI_PDU_API></MVCI_PDU_API_ROOT>",
        "<n:MVCI_PDU_API_ROOT xmlns:n='u'><n:MVCI_PDU_API><n:SHORT_NAME>One</n:SHORT_NAME><n:LIBRARY_FILE "
        "URI=\"URI\"/></n:MVCI_PDU_API></n:MVCI_PDU_API_ROOT>",
        "<?xml version='1.0' encoding='ISO-8859-1'?><MVCI_PDU_API_ROOT v='\xE4'>" + entry +
            "\xFC</MVCI_PDU_API_ROOT>",
        "<MVCI_PDU_API_ROOT><MVCI_PDU_API><SHORT_NAME>\xC3\x84</SHORT_NAME></MVCI_PDU_API>" + entry +
            "</MVCI_PDU_API_ROOT>",
        Wide("<?xml version='1.0' encoding='UTF-16'?>\r\n<MVCI_PDU_API_ROOT>" + entry +
             "</MVCI_PDU_API_ROOT>"),
    };
    return spellings;
}

void ReplaceAll(std::string& text, const std::string& from, const std::string& to)
{
    for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
        text.replace(at, from.size(), to);
}

TEST_F(Uninstalling, GivesTheIdenticalFileBackWhateverItsSpelling)
{
    const std::string path = UriOfVendor().substr(std::string("file:///").size());
    for (const std::string& original : Spellings())
        for (const std::string& uri : {"file:///" + path, "file:/" + path, "file://localhost/" + path,
                                       "file:///" + path.substr(0, path.size() - 1) + "&#x" +
                                           (path.ends_with('o') ? "6F" : "6C") + ";"}) {
            std::string spelling = original;
            const bool isWide = spelling.starts_with("\xFF\xFE");
            ReplaceAll(spelling, isWide ? Wide("=\"URI\"").substr(2) : "URI\"",
                       isWide ? Wide("=\"" + uri + "\"").substr(2) : uri + "\"");
            ReplaceAll(spelling, "'URI'", "'" + uri + "'");
            testing::WriteFileBytes(root, spelling);
            Install(Options());
            EXPECT_NE(RootBytes(), spelling);
            Uninstalled();
            EXPECT_EQ(RootBytes(), spelling);
        }
}

} // namespace
} // namespace marvane::tool
