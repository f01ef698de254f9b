// Names and defaults of a module description file, for numbers that a log shows without a name.

#include <gtest/gtest.h>

#include "platform/files.h"
#include "tests/logs/log_digest.h"
#include "tests/support/child_program.h"
#include "tests/support/pattern.h"
#include "tests/support/session.h"
#include "tool/setup/file_uri.h"

namespace marvane::testing {
namespace {

constexpr const char* LogName = "D-PDU_API_Logger_21-11-2026_10-00-00.LGR";

std::string Replaced(std::string text, const std::string& old, const std::string& now)
{
    for (std::size_t at = 0; (at = text.find(old, at)) != std::string::npos; at += now.size())
        text.replace(at, old.size(), now);
    return text;
}

/// A folder with a log that names no protocol and not all ComParams, a module description and a root
/// description file that leads from the library to it.
class ModuleNames : public ::testing::Test
{
protected:
    ModuleNames()
    {
        WriteFileBytes(Library(), "");
        WriteFileBytes(Mdf(), FileText(HandMadeLog("module_description.xml")));
        WriteLog("param_changes.LGR");
        WriteRoot(Library());
    }

    std::string Library() const { return folder_ / "vendor.lib"; }
    std::string Mdf() const { return folder_ / "vendor mdf.xml"; }
    std::string Root() const { return folder_ / "root.xml"; }
    std::string Log() const { return folder_ / LogName; }

    void WriteLog(const std::string& name) { WriteFileBytes(Log(), Nameless(name)); }

    /// A log of that library in which protocols have numbers only.
    std::string Nameless(const std::string& name) const
    {
        std::string text = Replaced(FileText(HandMadeLog(name)), "/opt/vendor/libpdu2.so", Library());
        text = Replaced(text, "/opt/vendor/libpdu.so", Library());
        return ReplaceMatches(text, "ProtocolId = [^ ]+ ", "ProtocolId = <UNKNOWN> ");
    }

    void WriteRoot(const std::string& library) const
    {
        const auto uri = [](const std::string& path) {
            return tool::UriOfPath(path, platform::PathSeparator);
        };
        WriteFileBytes(Root(), "<MVCI_PDU_API_ROOT>\r\n"
                               "  <MVCI_PDU_API><SHORT_NAME>Other</SHORT_NAME><LIBRARY_FILE URI=\"" +
                                   uri(folder_ / "other.lib") +
                                   "\"/></MVCI_PDU_API>\r\n"
                                   "  <MVCI_PDU_API><SHORT_NAME>Vendor</SHORT_NAME><LIBRARY_FILE URI=\"" +
                                   uri(library) + "\"/><MODULE_DESCRIPTION_FILE URI=\"" + uri(Mdf()) +
                                   "\"/></MVCI_PDU_API>\r\n</MVCI_PDU_API_ROOT>\r\n");
    }

    ProgramResult Run(const std::string& command, const std::string& options) const
    {
        return RunProgram("marvane", command + " " + Quoted(Log()) + " " + options);
    }

    std::string ParamsWith(const std::string& options) const
    {
        const ProgramResult result = Run("params", options);
        EXPECT_EQ(result.Errors, "");
        EXPECT_EQ(result.Status, 0);
        return result.Output;
    }

    TemporaryFolder folder_;
};

constexpr const char* NamedParams =
    "link 1   ISO_15765_3_on_ISO_15765_2\n"
    "    ComParam                     default   read          set                                  line\n"
    "  ! CP_P2Max                     150       50            50 -> 5000 -> 100  restored (64)       50\n"
    "\n"
    "link 2   ISO_15765_3_on_ISO_15765_2\n"
    "    ComParam                     default   read          set                                  line\n"
    "    CP_P2Max                     150       60                                                   58\n"
    "    CP_RepeatReqCountApp         3                       7                                      54\n"
    "\n"
    "3 ComParams, 1 changed (!)    defaults: ";

TEST_F(ModuleNames, AreThoseOfTheFileThatTheRootFileHasForTheLibrary)
{
    EXPECT_EQ(ParamsWith("--root " + Quoted(Root())), NamedParams + Mdf() + "\n");
}

TEST_F(ModuleNames, AreFoundThroughACopyOfMarvane)
{
    std::filesystem::create_directory(folder_ / "copy");
    WriteRoot((folder_.Path() / "copy" / "libMarvane.so").string());
    WriteFileBytes(folder_.Path() / "copy" / "D_PDU_API_CFG.xml",
                   "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<D_PDU_API_CFG>\n"
                   "<Attribute Name=\"InstalledPath\" Type=\"String\" Value=\"" +
                       (folder_.Path() / "").string() +
                       "\"/>\n<Attribute Name=\"PDUAPILibDll\" Type=\"String\" Value=\"vendor.lib\"/>\n"
                       "</D_PDU_API_CFG>\n");
    EXPECT_EQ(ParamsWith("--root " + Quoted(Root())), NamedParams + Mdf() + "\n");
}

TEST_F(ModuleNames, AreThoseOfTheGivenFile)
{
    EXPECT_EQ(ParamsWith("--mdf " + Quoted(Mdf())), NamedParams + Mdf() + "\n");
}

TEST_F(ModuleNames, AreMissingWithoutAFile)
{
    WriteRoot(folder_ / "another.lib");
    EXPECT_EQ(
        ParamsWith("--root " + Quoted(Root())),
        "link 1   100\n"
        "    ComParam                     read              set                                        line\n"
        "  ! CP_P2Max                     50                50 -> 5000 -> 100  restored (64)             50\n"
        "\n"
        "link 2   100\n"
        "    ComParam                     read              set                                        line\n"
        "    CP_P2Max                     60                                                             58\n"
        "    ComParam 700                                   7                                            54\n"
        "\n"
        "3 ComParams, 1 changed (!)    defaults: --mdf FILE\n");
}

/// The same file by another path, of which "//" begins one on the network.
TEST_F(ModuleNames, AreNotLookedForOnTheNetworkBecauseOfALog)
{
    if (platform::PathSeparator != '/')
        GTEST_SKIP() << "only here a path on the network can be one of this machine too";
    const std::string log = FileText(Log());
    WriteFileBytes(Log(), Replaced(log, Library(), "/." + Library()));
    EXPECT_TRUE(ParamsWith("--root " + Quoted(Root())).ends_with(Mdf() + "\n"));
    WriteFileBytes(Log(), Replaced(log, Library(), "/" + Library()));
    EXPECT_TRUE(ParamsWith("--root " + Quoted(Root())).ends_with("defaults: --mdf FILE\n"));
}

TEST_F(ModuleNames, ThatCanNotBeReadAreNoFault)
{
    std::filesystem::remove(Mdf());
    const ProgramResult result = Run("talk", "--root " + Quoted(Root()));
    EXPECT_EQ(result.Status, 0);
    EXPECT_EQ(result.Errors, "");
    EXPECT_NE(result.Output.find("link 1   100 "), std::string::npos) << result.Output;
}

TEST_F(ModuleNames, GiveTheConversationItsWords)
{
    WriteLog("pending.LGR");
    const std::string plain = Run("talk", "").Output;
    EXPECT_EQ(plain.find("routine"), std::string::npos) << plain;
    EXPECT_EQ(Run("talk", "--root " + Quoted(Root())).Output,
              FileText(HandMadeLog("output/pending_talk.txt")));
    EXPECT_EQ(Run("errors", "--all --root " + Quoted(Root())).Output,
              FileText(HandMadeLog("output/pending_errors.txt")));
}

TEST_F(ModuleNames, TellWhatAnErrorNumberOfTheLibraryMeans)
{
    const std::string log = Nameless("lost_data_and_errors.LGR");
    WriteFileBytes(Log(), Replaced(log, "ExtraErrorData = 0", "ExtraErrorData = 4096"));
    const auto found = [this](const std::string& options) {
        const std::string output = Run("errors", options).Output;
        return output.substr(output.find("   35 "), output.find("\n\n") - output.find("   35 "));
    };
    const std::string finding =
        "   35   +0.004  22 F1 90, link 1                 EVT_TX_ERROR (0x0101), ~1 ms after the call\n"
        "                extra error 4096";
    EXPECT_EQ(found(""), finding);
    EXPECT_EQ(found("--mdf " + Quoted(Mdf())), finding + ": ERR_BUS_OFF, The controller is off the bus");
}

TEST_F(ModuleNames, NameAnErrorThatTheLogDoesNotKnow)
{
    WriteFileBytes(Log(), Replaced(Nameless("lost_data_and_errors.LGR"), "PDU_ERR_EVT_TX_ERROR (0x0101)",
                                   "<UNKNOWN ERROR> (0x010A)"));
    EXPECT_NE(Run("errors", "").Output.find("<UNKNOWN ERROR> (0x010A), ~1 ms"), std::string::npos);
    EXPECT_NE(Run("errors", "--mdf " + Quoted(Mdf())).Output.find("ERR_FUSE (0x010A), ~1 ms"),
              std::string::npos);
}

TEST_F(ModuleNames, NameTheChangedParameters)
{
    const ProgramResult result = Run("talk", "--link 2 --root " + Quoted(Root()));
    EXPECT_EQ(
        result.Output,
        "link 2   ISO_15765_3_on_ISO_15765_2   pins 6, 14                                          +0.003 s\n"
        "   time    #  request                                  response                         ms    line\n"
        "  0.003       CP_RepeatReqCountApp = 7                                                          54\n"
        "\n0 requests\n");
}

TEST_F(ModuleNames, AreUsedForBothRunsThatAreCompared)
{
    WriteLog("diff_first.LGR");
    const std::string first = Log();
    const std::string second = folder_ / "second.LGR";
    WriteFileBytes(second, Nameless("diff_second.LGR"));
    const ProgramResult result =
        RunProgram("marvane", "diff " + Quoted(first) + " " + Quoted(second) + " --root " + Quoted(Root()));
    std::string expected = FileText(HandMadeLog("output/diff_first_second.txt"));
    expected = Replaced(expected, "same: ", "same: library, ");
    expected = ReplaceMatches(expected, "      X library.*\n", "");
    expected = Replaced(expected, "diff_first.LGR            diff_second.LGR",
                        "D-PDU_API_Logger_21-11-.. second.LGR");
    EXPECT_EQ(result.Output, expected);
}

} // namespace
} // namespace marvane::testing
