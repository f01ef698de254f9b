#include "tool/setup/check.h"

#include <gtest/gtest.h>

#include "platform/files.h"
#include "platform/library.h"
#include "tests/support/session.h"
#include "tool/setup/configuration_findings.h"
#include "tool/setup/folder_findings.h"
#include "tool/setup/library_findings.h"

namespace marvane::tool {
namespace {

/// Findings as one line each: "level place: text", the folder of the test as DIR.
class Checked : public ::testing::Test
{
protected:
    Checked() : temp("TEMP", folder.Path().string()) {}

    std::string Flat(const CheckFindings& findings) const
    {
        static constexpr const char* levels[] = {"ok", "note", "warning", "error"};
        std::string flat;
        for (const CheckFinding& finding : findings) {
            std::string text = finding.Text;
            for (std::size_t at = text.find('\n'); at != std::string::npos; at = text.find('\n'))
                text.replace(at, 1, " | ");
            flat += std::string(levels[static_cast<std::size_t>(finding.Level)]) + " " +
                    (finding.Line != 0 ? "line " + std::to_string(finding.Line) : finding.Place) + ": " +
                    text + "\n";
        }
        return Named(Named(flat, build, "BUILD/"), folder.Path().string(), "DIR");
    }

    static std::string Named(std::string text, const std::string& path, const std::string& name)
    {
        for (std::size_t at = text.find(path); at != std::string::npos; at = text.find(path))
            text.replace(at, path.size(), name);
        return text;
    }

    std::string OfTarget(const std::string& path) const { return Flat(CheckTarget(path, OwnMachine()).All); }

    testing::TemporaryFolder folder;
    testing::EnvironmentValue temp; ///< without a diagnostic log
    std::string build = testing::BuildFolder();
    std::string fake = testing::LibraryName("fake_target");
    std::string bits = sizeof(void*) == 8 ? "64-bit" : "32-bit";
    std::string separator = std::string(1, platform::PathSeparator);
};

using CheckedTarget = Checked;
using CheckedLogFolder = Checked;
using CheckedChain = Checked;

TEST_F(CheckedTarget, ThatWorksIsDescribed)
{
    EXPECT_EQ(OfTarget(build + fake),
              "ok target library: BUILD/" + fake + " | 4.3.2.1, " + bits + ", 29 of 29 functions\n");
}

TEST_F(CheckedTarget, ThatIsMissingHasANearNameOfAnotherCase)
{
    testing::WriteFileBytes(folder / "Pdu.so", "");
    EXPECT_EQ(OfTarget(folder / "libpdu7.dll"), "error target library: DIR" + separator +
                                                    "libpdu7.dll | does not exist. Its folder is there.\n");
    EXPECT_EQ(OfTarget(folder / "Pdux.so"),
              "error target library: DIR" + separator + "Pdux.so | does not exist. Did you mean Pdu.so?\n");
    EXPECT_EQ(OfTarget(folder / ("none" + separator + "pdu.so")),
              "error target library: DIR" + separator + "none" + separator +
                  "pdu.so | does not exist; neither does its folder.\n");
    EXPECT_EQ(OfTarget(folder.Path().string()),
              "error target library: DIR | is a folder: the name of the library is missing.\n");
}

TEST_F(CheckedTarget, ThatIsNoLibraryIsRefused)
{
    testing::WriteFileBytes(folder / "pdu.txt", "a text");
    EXPECT_EQ(OfTarget(folder / "pdu.txt"),
              "error target library: DIR" + separator + "pdu.txt | is no library.\n");
    EXPECT_EQ(OfTarget(build + testing::LibraryName("Marvane")),
              "error target library: BUILD/" + testing::LibraryName("Marvane") +
                  " | is Marvane itself. Write the vendor's library.\n");
}

TEST_F(CheckedTarget, OfAnotherMachineIsRefused)
{
    const Machine other = OwnMachine() == Machine::X64 ? Machine::X86 : Machine::X64;
    EXPECT_EQ(Flat(CheckTarget(build + fake, other).All),
              "error target library: BUILD/" + fake + " | is " + bits +
                  "; Marvane and the application must be " + bits + " too, and this Marvane is " +
                  MachineText(other) + ".\n");
}

TEST_F(CheckedTarget, ThatLacksAFunctionEndsTheApplication)
{
    const std::string name = testing::LibraryName("fake_target_no_lock");
    const LibraryCheck check = CheckTarget(build + name, OwnMachine());
    EXPECT_TRUE(check.IsUsable);
    EXPECT_TRUE(check.LacksFunctions);
    EXPECT_EQ(Flat(check.All),
              "error target library: BUILD/" + name +
                  " | lacks 1 of 29 functions: PDULockResource | A call of it ends the application.\n");
}

TEST_F(CheckedTarget, WithoutVersionInformationIsNoted)
{
    const std::string name = testing::LibraryName("fake_target_no_version");
    EXPECT_EQ(
        OfTarget(build + name),
        "ok target library: BUILD/" + name + " | " + bits +
            ", 29 of 29 functions\nnote target library: no version information: \"Failed to load\" in a log's "
            "header is harmless then\n");
}

TEST_F(CheckedTarget, OfAnotherCaseIsNoFileOnLinux)
{
    testing::WriteFileBytes(folder / "LibPDU.so", "a text");
    EXPECT_EQ(OfTarget(folder / "libpdu.so"),
              "error target library: DIR" + separator + "libpdu.so | " +
                  (separator == "/" ? "does not exist: upper and lower case matter. Write LibPDU.so."
                                    : "is no library.") +
                  "\n");
}

TEST_F(CheckedTarget, OfAnotherApiIsRefused)
{
    const std::string name =
        std::filesystem::path(fake).extension() == ".so" ? "fake_dependency.so" : "fake_dependency.dll";
    EXPECT_EQ(OfTarget(build + "dependent/" + name),
              "error target library: BUILD/dependent/" + name +
                  " | exports none of the 29 functions of the D-PDU API: another library is meant.\n");
}

/// The system's words about a library that lacks its dependency.
std::string WithoutDependency(const std::string& dependency)
{
    if (platform::PathSeparator == '/')
        return dependency + ": cannot open shared object file: No such file or directory";
    return platform::LoadTargetLibrary("Z:\\no such folder\\none.dll").Error;
}

TEST_F(CheckedTarget, WithoutItsDependencyNamesIt)
{
    const std::string extension = std::filesystem::path(fake).extension().string();
    const std::string path = folder / ("fake_target_dependent" + extension);
    const std::string dependency = "fake_dependency" + extension;
    std::filesystem::copy_file(build + "dependent/fake_target_dependent" + extension, path);
    EXPECT_FALSE(CheckTarget(path, OwnMachine()).IsUsable);
    std::string reason = WithoutDependency(dependency);
    reason.erase(reason.find_last_not_of("\r\n") + 1);
    EXPECT_EQ(OfTarget(path), "error target library: DIR" + separator + "fake_target_dependent" + extension +
                                  " | " + reason + " | Not found, but needed: " + dependency + "\n");
    std::filesystem::copy_file(build + "dependent/" + dependency, folder / dependency);
    EXPECT_EQ(OfTarget(path), "ok target library: DIR" + separator + "fake_target_dependent" + extension +
                                  " | 4.3.2.1, " + bits + ", 29 of 29 functions\n");
}

TEST_F(CheckedTarget, WithoutAFolderIsLeftToTheSystem)
{
    const std::string system = separator == "/" ? "libz.so.1" : "version.dll";
    EXPECT_EQ(OfTarget(system), "ok target library: " + system + " | is found by the system's search\n");
    const LibraryCheck check = CheckTarget("no_such_library", OwnMachine());
    EXPECT_FALSE(check.IsUsable);
    ASSERT_EQ(check.All.size(), 1u);
    EXPECT_TRUE(check.All[0].Text.starts_with("no_such_library\nis not found by the system's search\n"))
        << check.All[0].Text;
}

FolderFacts Gigabytes70(const std::string&)
{
    return {.FreeBytes = std::uintmax_t{70} << 30};
}
FolderFacts Megabytes99(const std::string&)
{
    return {.FreeBytes = (std::uintmax_t{100} << 20) - 1};
}
FolderFacts OnNetwork(const std::string&)
{
    return {.FreeBytes = std::uintmax_t{70} << 30, .IsOnNetwork = true};
}

TEST_F(CheckedLogFolder, ThatCanBeMadeIsNotMade)
{
    const FolderCheck check = CheckLogFolder(folder / ("a" + separator + "b"), 5, Gigabytes70);
    EXPECT_TRUE(check.IsUsable);
    EXPECT_EQ(Flat(check.All), "ok LogFileDir: DIR" + separator + "a" + separator +
                                   "b | does not exist yet and can be made, 70 GB free\n");
    EXPECT_FALSE(std::filesystem::exists(folder.Path() / "a"));
}

TEST_F(CheckedLogFolder, WithScarceSpaceIsWarnedAbout)
{
    const FolderCheck check = CheckLogFolder(folder.Path().string(), 5, Megabytes99);
    EXPECT_TRUE(check.IsUsable);
    EXPECT_EQ(Flat(check.All),
              "ok LogFileDir: DIR | can be written, 99 MB free\n"
              "warning LogFileDir: DIR | Only 99 MB are free: a log of some hours may fill the disk.\n");
}

TEST_F(CheckedLogFolder, OnTheNetworkIsWarnedAbout)
{
    const FolderCheck check = CheckLogFolder(folder.Path().string(), 5, OnNetwork);
    EXPECT_TRUE(check.IsUsable);
    EXPECT_EQ(Flat(check.All),
              "ok LogFileDir: DIR | can be written, 70 GB free\n"
              "warning line 5: DIR | A folder on the network: each line of the log waits for it.\n");
}

TEST_F(CheckedLogFolder, OfThisMachineHasItsFacts)
{
    const FolderFacts facts = FactsOfFolder(folder.Path().string());
    EXPECT_GT(facts.FreeBytes.value(), 0u);
    EXPECT_FALSE(facts.IsOnNetwork);
}

TEST_F(CheckedLogFolder, OnAnAbsentDriveCanNotBeMade)
{
    if (separator == "/")
        GTEST_SKIP() << "there are no drives here";
    const FolderCheck check = CheckLogFolder("Q:\\Logs\\", 5);
    EXPECT_FALSE(check.IsUsable);
    EXPECT_EQ(Flat(check.All), "error line 5: Q:\\Logs\\ | can't be made: there is no such drive.\n");
}

TEST_F(CheckedLogFolder, BelowAFileCanNotBeMade)
{
    testing::WriteFileBytes(folder / "file", "");
    const FolderCheck check = CheckLogFolder(folder / ("file" + separator + "logs"), 5);
    EXPECT_FALSE(check.IsUsable);
    EXPECT_EQ(Flat(check.All), "error line 5: DIR" + separator + "file" + separator +
                                   "logs | can't be made: DIR" + separator + "file is a file.\n");
}

TEST_F(CheckedLogFolder, OfWhichFewerBytesAreMadeThanUsedCanNotBeUsed)
{
    // The log is opened in the first 256 bytes, and the first 255 are made.
    std::string path = folder / ("a" + separator);
    path.resize(256, 'x');
    const FolderCheck check = CheckLogFolder(path, 5, Gigabytes70);
    EXPECT_FALSE(check.IsUsable);
    EXPECT_EQ(Flat(check.All),
              "error line 5: " + Named(path, folder.Path().string(), "DIR") +
                  " | can't be used: its first 255 bytes would be made, and the log opened in its "
                  "first 256.\n");
    path.back() = platform::PathSeparator;
    EXPECT_TRUE(CheckLogFolder(path, 5, Gigabytes70).IsUsable);
}

std::string File(const std::string& lines)
{
    return "<?xml version=\"1.0\"?>\n<D_PDU_API_CFG>\n" + lines + "</D_PDU_API_CFG>\n";
}

TEST_F(CheckedChain, HasTheOutcomeThatTheApplicationSees)
{
    const std::string marvane = build + testing::LibraryName("Marvane");
    const std::string logs = folder.Path().string() + separator;
    const auto outcome = [&](const std::string& library, const std::string& more) {
        const std::string text = File(AttributeText("InstalledPath", build) + "\n" +
                                      AttributeText("PDUAPILibDll", library) + "\n" + more);
        return Named(OutcomeText(CheckConfiguration(ParseConfiguration(text), marvane, OwnMachine())), logs,
                     "LOGS");
    };
    const std::string dir = AttributeText("LogFileDir", logs) + "\n";
    const std::string enabled = dir + AttributeText("LogEnabled", "1") + "\n";
    EXPECT_EQ(outcome(fake, enabled + AttributeText("LogFnCalls", "2") + "\n"),
              "Outcome: works, log in LOGS.");
    EXPECT_EQ(outcome(fake, enabled), "Outcome: works, log in LOGS with headers only.");
    EXPECT_EQ(outcome(fake, dir), "Outcome: works, no log.");
    EXPECT_EQ(outcome(testing::LibraryName("fake_target_no_lock"), enabled),
              "Outcome: a call ends the application.");
    const std::string notConstructed = "Outcome: every call returns 0x20 (PDU_ERR_PDUAPI_NOT_CONSTRUCTED).";
    EXPECT_EQ(outcome(fake, AttributeText("LogEnabled", "1") + "\n"), notConstructed);
    EXPECT_EQ(outcome(fake, dir + AttributeText("LogEnabled", "2") + "\n"), notConstructed);
    EXPECT_EQ(outcome("none.dll", enabled), notConstructed);
}

TEST_F(CheckedChain, NamesTheConfigurationThatIsRead)
{
    const std::string marvane = build + testing::LibraryName("Marvane");
    const testing::EnvironmentValue variable("PDU_CFG_FILE", folder / "none.xml");
    const CheckReport report = CheckChain(marvane, std::nullopt);
    EXPECT_EQ(
        Flat(report.All),
        "ok Marvane: BUILD/" + testing::LibraryName("Marvane") + " | 1.0.0.0, " + bits +
            ", 29 of 29 functions\n" + "error configuration: DIR" + separator +
            "none.xml | does not exist. PDU_CFG_FILE names it, so the one beside Marvane is not read. Marvane does "
            "not start without a configuration.\n");
    EXPECT_EQ(OutcomeText(report), "Outcome: every call returns 0x20 (PDU_ERR_PDUAPI_NOT_CONSTRUCTED).");
}

TEST_F(CheckedChain, WithoutAConfigurationDoesNotStart)
{
    const std::string marvane = folder / testing::LibraryName("Marvane");
    std::filesystem::copy_file(build + testing::LibraryName("Marvane"), marvane);
    const testing::EnvironmentValue variable("PDU_CFG_FILE", std::nullopt);
    const CheckReport report = CheckChain(marvane, std::nullopt);
    EXPECT_EQ(Flat(report.All),
              "ok Marvane: DIR" + separator + testing::LibraryName("Marvane") + " | 1.0.0.0, " + bits +
                  ", 29 of 29 functions\nerror configuration: DIR" + separator +
                  "D_PDU_API_CFG.xml | does not exist. Marvane does not start without a configuration.\n");
    EXPECT_EQ(OutcomeText(report), "Outcome: every call returns 0x20 (PDU_ERR_PDUAPI_NOT_CONSTRUCTED).");
}

TEST_F(CheckedChain, WithAPathErrorDoesNotTryTheTarget)
{
    const std::string text =
        File(AttributeText("InstalledPath", "/no/such") + "\n" + AttributeText("PDUAPILibDll", fake) + "\n" +
             AttributeText("LogFileDir", folder.Path().string() + separator) + "\n");
    const CheckReport report = CheckConfiguration(ParseConfiguration(text), build, OwnMachine());
    EXPECT_EQ(Flat({report.All.back()}), "note target library: not tried: its path is wrong\n");
}

TEST_F(CheckedChain, NeedsMarvaneItself)
{
    testing::WriteFileBytes(folder / "text", "a text");
    const auto first = [&](const std::string& path) {
        return Flat({CheckChain(path, std::nullopt).All.at(0)});
    };
    EXPECT_EQ(first(folder / "none"), "error Marvane: DIR" + separator + "none | does not exist.\n");
    EXPECT_EQ(first(folder / "text"), "error Marvane: DIR" + separator + "text | is not Marvane.\n");
    EXPECT_EQ(first(build + fake), "error Marvane: BUILD/" + fake + " | is not Marvane.\n");
}

TEST_F(CheckedChain, NamesTheConfigurationOfTheEnvironment)
{
    const testing::EnvironmentValue variable("PDU_CFG_FILE", folder / "other.xml");
    testing::WriteFileBytes(folder / "other.xml", File(""));
    EXPECT_EQ(Flat({CheckChain(build + testing::LibraryName("Marvane"), std::nullopt).All.at(1)}),
              "warning configuration: DIR" + separator +
                  "other.xml | PDU_CFG_FILE names it for every copy of Marvane.\n");
}

TEST_F(CheckedChain, OfAConfigurationThatIsNotRead)
{
    testing::WriteFileBytes(folder / "one.xml", File(""));
    testing::WriteFileBytes(folder / "other.xml", File(""));
    const testing::EnvironmentValue variable("PDU_CFG_FILE", folder / "other.xml");
    const CheckReport report = CheckChain(build + testing::LibraryName("Marvane"), folder / "one.xml");
    EXPECT_EQ(Flat({report.All.at(1)}), "warning configuration: DIR" + separator +
                                            "one.xml | is not read: PDU_CFG_FILE names another, DIR" +
                                            separator + "other.xml\n");
}

} // namespace
} // namespace marvane::tool
