// Folders and files whose names are not ASCII: of the library, its configuration, its target, its logs. A
// configuration in UTF-8 names them on both systems; one in the code page does on Windows.
#include <gtest/gtest.h>

#include "logger/target/target_library.h"
#include "platform/files.h"
#include "platform/library.h"
#include "tests/support/network_folder.h"
#include "tests/support/session.h"

namespace marvane::testing {
namespace {

namespace fs = std::filesystem;

const bool OnWindows = platform::PathSeparator == '\\';

/// The name of a test bench in three scripts, each in UTF-8.
constexpr const char* Umlauts = "Pr\xC3\xBC"
                                "fstand";
constexpr const char* Chinese = "\xE8\xAF\x8A\xE6\x96\xAD\xE5\x8F\xB0";
constexpr const char* Mixed = "\xC3\xBC \xE8\xAF\x8A \xF0\x9F\x9A\x97";

/// The first name in the code page of Western Europe.
constexpr const char* InCodePage = "Pr\xFC"
                                   "fstand";

/// A folder with a copy of the logger library and of a target library, and the session of an application that
/// loads the copy.
class Bench
{
public:
    /// The folder is a new one of this name, in UTF-8.
    explicit Bench(const std::string& name)
        : path_(folder_.Path() / FilePath(name)), noVariable_("PDU_CFG_FILE", std::nullopt),
          temp_("TEMP", folder_.Path().string()), tmp_("TMP", folder_.Path().string()),
          appData_("APPDATA", folder_.Path().string())
    {
        fs::create_directory(path_);
        fs::copy_file(BuildFolder() + LibraryName("Marvane"), path_ / LibraryName("Marvane"));
        AddTarget(LibraryName("fake_target"));
    }
    ~Bench()
    {
        if (!library_)
            return;
        api_->PDUDestruct();
        platform::UnloadLibrary(library_);
    }
    Bench(const Bench&) = delete;
    Bench& operator=(const Bench&) = delete;

    const fs::path& Path() const { return path_; }
    /// A path in the folder, in UTF-8.
    std::string operator/(const std::string& name) const { return PathText(path_ / FilePath(name)); }

    void AddTarget(const std::string& name) const
    {
        fs::copy_file(BuildFolder() + LibraryName("fake_target"), path_ / FilePath(name));
    }

    /// Loads the library, with this configuration beside it, and starts it.
    T_PDU_ERROR Start(const Settings& settings)
    {
        WriteFileBytes(path_ / "D_PDU_API_CFG.xml", Text(settings));
        return Start();
    }
    T_PDU_ERROR Start()
    {
        const platform::LoadedLibrary loaded = platform::LoadTargetLibrary(*this / LibraryName("Marvane"));
        EXPECT_TRUE(loaded.Handle) << loaded.Error;
        library_ = loaded.Handle;
        api_ = std::make_unique<CPduDll>(library_);
        return api_->PDUConstruct(nullptr, nullptr);
    }

    static std::string Text(const Settings& settings)
    {
        std::string text = "<?xml version=\"1.0\"?>\n<D_PDU_API_CFG>\n"
                           "<Attribute Name=\"LogEnabled\" Type=\"UNUM32\" Value=\"1\"/>\n"
                           "<Attribute Name=\"LogFlush\" Type=\"UNUM32\" Value=\"1\"/>\n";
        for (const auto& [key, value] : settings)
            text += "<Attribute Name=\"" + key + "\" Type=\"" +
                    (key == "LogFileMaxNum" ? "UNUM32" : "String") + "\" Value=\"" + value + "\"/>\n";
        return text + "</D_PDU_API_CFG>\n";
    }

    /// The text of the API logs in a folder.
    static std::string LogIn(const std::string& folder)
    {
        std::string text;
        std::error_code none;
        for (const auto& entry : fs::directory_iterator(FilePath(folder), none))
            text += FileText(entry.path());
        return text;
    }

    const TemporaryFolder& Outside() const { return folder_; }

private:
    TemporaryFolder folder_;
    fs::path path_;
    EnvironmentValue noVariable_, temp_, tmp_, appData_;
    platform::Library library_ = nullptr;
    std::unique_ptr<CPduDll> api_;
};

std::string WithSeparator(const std::string& folder)
{
    return folder + platform::PathSeparator;
}

std::string LoadingLine(const std::string& target)
{
    return "   -->  LOADING: DLL = \"" + target + "\"\n";
}

class Paths : public ::testing::TestWithParam<const char*>
{
protected:
    Bench bench{GetParam()};
};

TEST_P(Paths, OfTheLibrarysOwnFolder)
{
    // Beside the library are its configuration and the target; the rest of the configuration is ASCII.
    const std::string logs = bench.Outside() / "logs";
    EXPECT_EQ(
        bench.Start(
            {{"InstalledPath", "."}, {"PDUAPILibDll", LibraryName("fake_target")}, {"LogFileDir", logs}}),
        PDU_STATUS_NOERROR);
    EXPECT_NE(Bench::LogIn(logs).find("LOGGER VERSION: R01.000.0000.0000"), std::string::npos);
    EXPECT_NE(Bench::LogIn(logs).find("LOADED:  Version 'R04.003.0002.0001' of"), std::string::npos);
}

TEST_P(Paths, OfAConfigurationInUtf8)
{
    const std::string target =
        std::string("target ") + GetParam() + fs::path(LibraryName("x")).extension().string();
    bench.AddTarget(target);
    const std::string logs = WithSeparator(bench / (std::string("logs ") + GetParam())) + "more";
    const std::string configuration = bench / (std::string(GetParam()) + ".xml");
    WriteFileBytes(FilePath(configuration),
                   Bench::Text({{"InstalledPath", WithSeparator(PathText(bench.Path()))},
                                {"PDUAPILibDll", target},
                                {"LogFileDir", logs}}));
    const EnvironmentValue named("PDU_CFG_FILE", configuration);
    EXPECT_EQ(bench.Start(), PDU_STATUS_NOERROR);
    const std::string log = Bench::LogIn(logs);
    EXPECT_NE(log.find("Config setting: LogFileDir=" + logs + "\n"), std::string::npos) << log;
    EXPECT_NE(log.find(LoadingLine(bench / target)), std::string::npos) << log;
    EXPECT_NE(log.find("LOADED:  Version 'R04.003.0002.0001' of '" + bench / target), std::string::npos)
        << log;
}

TEST_P(Paths, OfFoldersInTheEnvironment)
{
    const EnvironmentValue temp("TEMP", PathText(bench.Path()));
    const EnvironmentValue tmp("TMP", PathText(bench.Path()));
    const EnvironmentValue appData("APPDATA", bench / "settings");
    EXPECT_EQ(bench.Start({{"InstalledPath", WithSeparator("%TEMP%")},
                           {"PDUAPILibDll", LibraryName("fake_target")},
                           {"LogFileDir", WithSeparator("%APPDATA%") + "logs"}}),
              PDU_STATUS_NOERROR);
    EXPECT_NE(Bench::LogIn(PathText(bench.Path() / "settings" / "logs")), "");
    EXPECT_TRUE(fs::exists(bench.Path() / "d-pdu-api-logger.log"));
    EXPECT_EQ(fs::file_size(bench.Path() / "settings" / "Kestrix" / "PDUAPI" / "DEBUG.CFG"), 76u);
}

TEST_P(Paths, OfLogsThatAreErasedAndReused)
{
    const fs::path logs = bench.Path() / FilePath(GetParam());
    fs::create_directory(logs);
    for (const char* day : {"01", "02", "03"})
        WriteFileBytes(logs / (std::string("D-PDU_API_Logger_") + day + "-03-2020_10-11-12.LGR"), "");
    EXPECT_EQ(bench.Start({{"InstalledPath", "."},
                           {"PDUAPILibDll", LibraryName("fake_target")},
                           {"LogFileMaxNum", "0"},
                           {"LogFileDir", PathText(logs)}}),
              PDU_STATUS_NOERROR);
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(logs))
        names.push_back(entry.path().filename().string());
    EXPECT_EQ(names, std::vector<std::string>{"D-PDU_API_Logger_03-03-2020_10-11-12.LGR"});
    EXPECT_NE(Bench::LogIn(PathText(logs)), "");
}

std::string NameOfTest(const ::testing::TestParamInfo<const char*>& test)
{
    static constexpr const char* names[] = {"Umlauts", "Chinese", "ThreeScripts"};
    return names[test.index];
}

INSTANTIATE_TEST_SUITE_P(In, Paths, ::testing::Values(Umlauts, Chinese, Mixed), NameOfTest);

TEST(PathsInTheCodePage, AreThoseOfTheCharactersOnWindowsAndOfTheBytesElsewhere)
{
    Bench bench(OnWindows ? Umlauts : InCodePage);
    const std::string folder = WithSeparator(bench.Outside().Path().string()) + InCodePage;
    EXPECT_EQ(bench.Start({{"InstalledPath", WithSeparator(folder)},
                           {"PDUAPILibDll", LibraryName("fake_target")},
                           {"LogFileDir", WithSeparator(folder) + "logs"}}),
              PDU_STATUS_NOERROR);
    const std::string log = Bench::LogIn(bench / "logs");
    EXPECT_NE(log.find("Config setting: InstalledPath        = '" + WithSeparator(folder) + "'\n"),
              std::string::npos)
        << log;
    EXPECT_NE(log.find("Config setting: LogFileDir=" + WithSeparator(folder) + "logs\n"), std::string::npos)
        << log;
    EXPECT_NE(log.find(LoadingLine(WithSeparator(folder) + LibraryName("fake_target"))), std::string::npos)
        << log;
}

TEST(PathsInTheCodePage, AreJoinedWithAFolderThatItCanNotName)
{
    Bench bench(Chinese);
    const std::string extension = fs::path(LibraryName("x")).extension().string();
    bench.AddTarget((OnWindows ? Umlauts : InCodePage) + extension);
    const std::string logs = bench.Outside() / "logs";
    EXPECT_EQ(
        bench.Start({{"InstalledPath", "."}, {"PDUAPILibDll", InCodePage + extension}, {"LogFileDir", logs}}),
        PDU_STATUS_NOERROR);
    const std::string target = bench / ((OnWindows ? Umlauts : InCodePage) + extension);
    EXPECT_NE(Bench::LogIn(logs).find(LoadingLine(target)), std::string::npos) << Bench::LogIn(logs);
}

TEST(PathsInTheCodePage, OfTheLibraryAreShownAsBefore)
{
    Bench bench(OnWindows ? Umlauts : InCodePage);
    const std::string logs = bench.Outside() / "logs";
    EXPECT_EQ(
        bench.Start(
            {{"InstalledPath", "."}, {"PDUAPILibDll", LibraryName("fake_target")}, {"LogFileDir", logs}}),
        PDU_STATUS_NOERROR);
    const std::string folder = WithSeparator(bench.Outside().Path().string()) + InCodePage;
    EXPECT_NE(Bench::LogIn(logs).find(LoadingLine(WithSeparator(folder) + LibraryName("fake_target"))),
              std::string::npos)
        << Bench::LogIn(logs);
}

TEST(PathsOnANetwork, BeginAtTheirShare)
{
    if (!OnWindows)
        GTEST_SKIP() << "there are no such paths here";
    // The long form of a local path begins as one on a network does, "?" for the server.
    Bench bench(Chinese);
    const std::string logs = "\\\\?\\" + bench / "one\\two";
    EXPECT_EQ(
        bench.Start(
            {{"InstalledPath", "."}, {"PDUAPILibDll", LibraryName("fake_target")}, {"LogFileDir", logs}}),
        PDU_STATUS_NOERROR);
    EXPECT_NE(Bench::LogIn(bench / "one\\two").find("LogFileDir=" + logs + "\n"), std::string::npos);
}

/// What the environment says about a network that tests may write to.
class PathsOnANetworkOf : public ::testing::TestWithParam<const char*>
{
};

TEST_P(PathsOnANetworkOf, ReceiveLogs)
{
    const NetworkFolder network(GetParam());
    if (!network.Exists())
        GTEST_SKIP() << GetParam() << " names no place on a network";
    Bench bench(Chinese);
    const std::string logs = network.Path() + Umlauts + "\\logs";
    EXPECT_EQ(
        bench.Start(
            {{"InstalledPath", "."}, {"PDUAPILibDll", LibraryName("fake_target")}, {"LogFileDir", logs}}),
        PDU_STATUS_NOERROR);
    EXPECT_NE(Bench::LogIn(logs).find("LogFileDir=" + logs + "\n"), std::string::npos) << Bench::LogIn(logs);
}

std::string NameOfPlace(const ::testing::TestParamInfo<const char*>& test)
{
    return test.index == 0 ? "Share" : "MappedDrive";
}

INSTANTIATE_TEST_SUITE_P(A, PathsOnANetworkOf,
                         ::testing::Values("MARVANE_TEST_SHARE", "MARVANE_TEST_NETWORK_DRIVE"), NameOfPlace);

} // namespace
} // namespace marvane::testing
