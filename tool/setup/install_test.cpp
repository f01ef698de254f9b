#include "tool/setup/install.h"

#include <algorithm>
#include <fstream>
#include <regex>
#include <set>

#include <gtest/gtest.h>

#include "config/paths.h"
#include "platform/files.h"
#include "platform/library.h"
#include "tests/support/session.h"
#include "tool/setup/check.h"
#include "tool/setup/file_changes.h"
#include "tool/setup/file_uri.h"
#include "tool/setup/root_file.h"
#include "tool/setup/setup_files.h"

namespace marvane::tool {
namespace {

/// A machine with a vendor's library in a folder and a root description file that names it.
class Machines : public ::testing::Test
{
protected:
    Machines()
    {
        std::filesystem::create_directory(folder.Path() / "vendor");
        std::filesystem::copy_file(testing::BuildFolder() + testing::LibraryName("SimVci"), vendor);
    }
    ~Machines() override
    {
        FileChanges::BeforeChange = nullptr;
        FileChanges::Abandoned = false;
    }

    std::string UriOfVendor() const { return UriOfPath(vendor, platform::PathSeparator); }
    std::string Entry(const std::string& name, const std::string& uri) const
    {
        return "<MVCI_PDU_API><SHORT_NAME>" + name + "</SHORT_NAME><LIBRARY_FILE URI=\"" + uri +
               "\"/></MVCI_PDU_API>\n";
    }
    std::string Entry(const std::string& name) const { return Entry(name, UriOfVendor()); }
    void WriteRoot(const std::string& entries)
    {
        testing::WriteFileBytes(root, "<MVCI_PDU_API_ROOT>\n" + entries + "</MVCI_PDU_API_ROOT>\n");
    }
    std::string RootBytes() const { return testing::FileBytes(root); }

    InstallOptions Options(const std::string& name = "One") const
    {
        InstallOptions options;
        options.Roots = {root};
        options.Name = name;
        options.To = copies;
        options.From = testing::BuildFolder();
        options.LogFolder = folder / "logs";
        return options;
    }
    std::string Uninstalled(const std::string& name = "One", bool logs = false)
    {
        UninstallOptions options;
        options.Name = name;
        options.To = copies;
        options.Logs = logs;
        return Named(Uninstall(options));
    }
    /// The reason of a refusal, the folder of the test as DIR.
    std::string Refusal(const InstallOptions& options) const
    {
        try {
            Install(options);
        } catch (const InstallRefused& refused) {
            return Named(refused.what());
        }
        return "not refused";
    }
    std::string Named(std::string text) const
    {
        for (const auto& [path, name] :
             {std::pair(folder.Path().string(), std::string("DIR")),
              std::pair(std::string(platform::OwnLibraryName), std::string("LIBRARY")),
              std::pair(vendorName, std::string("VENDOR"))})
            for (std::size_t at = text.find(path); at != std::string::npos; at = text.find(path))
                text.replace(at, path.size(), name);
        if (platform::PathSeparator == '\\')
            std::replace(text.begin(), text.end(), '\\', '/');
        return text;
    }
    /// Every file and folder of the test but the vendor's, sorted.
    std::string Traces() const
    {
        std::set<std::string> names;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(folder.Path()))
            names.insert(entry.path().lexically_relative(folder.Path()).generic_string());
        std::string traces;
        for (const std::string& name : names)
            if (!name.starts_with("vendor"))
                traces += name + "\n";
        return Named(traces);
    }

    testing::TemporaryFolder folder;
    std::string vendorName = testing::LibraryName("SimVci");
    std::string vendor = (folder.Path() / "vendor" / vendorName).string();
    std::string root = folder / "root.xml";
    std::string copies = folder / "copies";
};

using Installing = Machines;
using Uninstalling = Machines;

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
    EXPECT_EQ(refusal(Entry("Other")), "no entry \"One\"; 'marvane list' shows them");
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
    record = std::regex_replace(record, std::regex("installed=[0-9-]+T[0-9:]+Z\n"), "installed=TIME\n");
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
#ifdef MARVANE_SANITIZED
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

TEST_F(Installing, AFaultAtAnyChangeTakesEverythingBack)
{
    WriteRoot(Entry("One"));
    const std::string before = RootBytes();
    int faults = 0;
    for (int wanted = 1;; ++wanted) {
        int changes = 0;
        FileChanges::BeforeChange = [&] {
            if (++changes == wanted)
                throw InstallRefused("a fault");
        };
        if (Refusal(Options()) != "a fault")
            break;
        ++faults;
        EXPECT_EQ(RootBytes(), before) << "fault at change " << wanted;
        EXPECT_EQ(Traces(), "root.xml\n") << "fault at change " << wanted;
    }
    EXPECT_GE(faults, 10);
}

TEST_F(Installing, APowerFailureAtAnyChangeLeavesTheOldOrTheNewFile)
{
    int failures = 0;
    for (int wanted = 1;; ++wanted) {
        WriteRoot(Entry("One"));
        const std::string before = RootBytes();
        int changes = 0;
        FileChanges::Abandoned = true;
        FileChanges::BeforeChange = [&] {
            if (++changes == wanted)
                throw InstallRefused("a power failure");
        };
        const bool failed = Refusal(Options()) == "a power failure";
        FileChanges::BeforeChange = nullptr;
        FileChanges::Abandoned = false;
        if (!failed)
            break;
        ++failures;
        EXPECT_EQ(RootBytes(), before) << "at change " << wanted;
        // The next run finishes what was left, and it can be taken away again.
        Install(Options());
        EXPECT_NE(RootBytes(), before);
        Uninstalled();
        EXPECT_EQ(RootBytes(), before) << "at change " << wanted;
        std::filesystem::remove_all(folder.Path() / "copies");
    }
    EXPECT_GE(failures, 10);
}

TEST_F(Installing, RefusesAFileThatOthersChangeMeanwhile)
{
    WriteRoot(Entry("One"));
    int changes = 0;
    FileChanges::BeforeChange = [&] {
        // Each step in turn; the last look at the file is one of them.
        ++changes;
        std::ofstream(root, std::ios::app) << " ";
    };
    EXPECT_EQ(Refusal(Options()), "DIR/root.xml: the file was changed by another program");
    FileChanges::BeforeChange = nullptr;
    EXPECT_EQ(Traces(), "root.xml\n");
    EXPECT_TRUE(RootBytes().ends_with(std::string(static_cast<std::size_t>(changes), ' ')));
}

TEST_F(Uninstalling, SaysWhatItDidAndLeavesNoTrace)
{
    WriteRoot(Entry("One"));
    Install(Options());
    EXPECT_EQ(Uninstalled(), "One\n"
                             "   restored      LIBRARY_FILE of \"One\" in DIR/root.xml\n"
                             "   removed       DIR/copies/One\n");
    EXPECT_EQ(Traces(), "copies\nroot.xml\n");
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
