#include "tool/setup/selftest.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "config/file_rules.h"
#include "platform/child_process.h"
#include "platform/files.h"
#include "platform/library.h"
#include "platform/replace_file.h"
#include "tool/setup/configuration_text.h"
#include "tool/setup/delivered_library.h"
#include "tool/setup/library_look.h"
#include "tool/setup/private_folder.h"
#include "tool/setup/session_log.h"
#include "tool/setup/setup_files.h"

namespace marvane::tool {

namespace {

namespace fs = std::filesystem;

/// File names of the package on this system.
std::string ProgramName(const char* name)
{
    return std::string(name) + (platform::PathSeparator == '\\' ? ".exe" : "");
}
std::string InterfaceName()
{
    return platform::PathSeparator == '\\' ? "SimVci.dll" : "libSimVci.so";
}

std::string WithoutReturns(std::string text)
{
    std::erase(text, '\r');
    return text;
}

class Selftest
{
public:
    Selftest(std::string folder, Machine machine)
        : folder_(std::move(folder)), marvane_(In(platform::OwnLibraryName)), interface_(In(InterfaceName())),
          application_(In(ProgramName("diag_session"))), command_(CommandFor(machine))
    {
        result_.For = machine;
        result_.IsDelivered = true;
        fs::create_directory(scratch_.Path() / "logs");
    }

    SelftestResult Run()
    {
        const bool hasMarvane = Library("Marvane", marvane_, true);
        const bool hasInterface = Library("interface", interface_, false);
        if (hasMarvane && hasInterface) {
            Configure("full");
            if (Session("without Marvane", interface_) && Session("with Marvane", marvane_))
                Log();
            Measure();
        }
        if (scratch_.Remove())
            Add(FindingLevel::Ok, "left behind", "nothing");
        else
            Add(FindingLevel::Error, "left behind", Scratch("") + " can't be removed");
        return std::move(result_);
    }

private:
    std::string In(const std::string& name) const { return folder_ + platform::PathSeparator + name; }
    std::string Scratch(const std::string& name) const { return PathText(scratch_.Path() / name); }

    void Add(FindingLevel level, const char* place, const std::string& text)
    {
        result_.All.push_back({level, place, text, 0});
    }

    bool Library(const char* place, const std::string& path, bool isMarvane)
    {
        const LibraryLook look = LookAtLibrary(path);
        const bool isRight = look.Facts && look.Facts->For == result_.For &&
                             look.Facts->IsMarvane == isMarvane && MissingFunctions(*look.Facts).empty();
        Add(isRight ? FindingLevel::Ok : FindingLevel::Error, place, path + "\n" + LibrarySummary(look));
        if (isMarvane && look.Facts && look.Facts->Version)
            result_.Version = VersionText(*look.Facts->Version);
        return isRight;
    }

    void Configure(const char* level) const
    {
        NewConfiguration values;
        values.InstalledPath = folder_ + platform::PathSeparator;
        values.TargetName = InterfaceName();
        values.LogFolder = Scratch("logs") + platform::PathSeparator;
        values.Level = level;
        values.MaxSize = 0;
        const std::string path = Scratch(ConfigurationFileName);
        platform::RemoveFile(path);
        platform::CreateNewFile(path, ConfigurationText(values, platform::PathSeparator));
    }

    /// What keeps every file of the logger library in the temporary folder.
    platform::EnvironmentChanges Environment() const
    {
        return {{"PDU_CFG_FILE", Scratch(ConfigurationFileName)},
                {"TEMP", Scratch("")},
                {"TMP", Scratch("")},
                {"APPDATA", Scratch("")}};
    }

    bool Session(const char* how, const std::string& library)
    {
        const platform::ChildResult run =
            platform::RunChild({application_, "--library", library}, Environment());
        std::string fault;
        if (!run.Started)
            fault = "the sample application can't be started\n" + application_;
        else if (!run.Ended)
            fault = "the sample application crashed (" + std::to_string(run.Status) + ")";
        else if (run.Status != 0)
            fault = "the sample application ended with status " + std::to_string(run.Status);
        const std::string results = WithoutReturns(run.Output);
        const std::string difference =
            run.Started ? FirstDifference(std::string(ExpectedResults()), results) : std::string();
        if (fault.empty() && !difference.empty())
            fault = "the results differ from what they must be";
        if (!fault.empty()) {
            Add(FindingLevel::Error, "session",
                std::string(how) + ": " + fault + (difference.empty() ? "" : "\n" + difference));
            return false;
        }
        const auto count = std::count(results.begin(), results.end(), '\n');
        Add(FindingLevel::Ok, "session",
            std::string(how) + ": all " + std::to_string(count) + " results are as they must be");
        return true;
    }

    void Log()
    {
        std::vector<std::string> names = NamesIn(Scratch("logs"));
        const std::string log =
            names.size() == 1 ? Scratch("logs") + platform::PathSeparator + names[0] : std::string();
        result_.Log = NormalisedLog(ReadFileBytes(log).value_or(""));
        const CallCount count = CountCalls(result_.Log);
        result_.Calls = count.Calls;
        result_.Functions = count.Functions;
        result_.LogLines = static_cast<std::size_t>(std::count(result_.Log.begin(), result_.Log.end(), '\n'));
        if (names.size() != 1)
            return Add(FindingLevel::Error, "log", std::to_string(names.size()) + " files instead of one");
        const std::string difference = FirstDifference(std::string(ExpectedLog()), result_.Log);
        if (!difference.empty())
            return Add(FindingLevel::Error, "log",
                       "differs from what it must be (marvane selftest --log shows it): " + difference);
        Add(FindingLevel::Ok, "log",
            std::to_string(count.Calls) + " calls in " + std::to_string(count.Functions) +
                " functions; all " + std::to_string(result_.LogLines) + " lines are as they must be");
    }

    std::optional<double> NanosecondsOfACall(const std::string& library) const
    {
        const platform::ChildResult run =
            platform::RunChild({command_, MeasureHelperName, library}, Environment());
        if (!run.Started || !run.Ended || run.Status != 0)
            return std::nullopt;
        const double measured = std::strtod(run.Output.c_str(), nullptr);
        return measured > 0 ? std::optional(measured) : std::nullopt;
    }

    /// The command beside the library, or this one where the libraries have a folder of their own.
    std::string CommandFor(Machine machine) const
    {
        const std::string beside = In(ProgramName("marvane"));
        return IsFile(beside) || machine != OwnMachine() ? beside : platform::ProgramPath();
    }

    void Measure()
    {
        Configure("decoded");
        result_.BareCall = NanosecondsOfACall(interface_);
        result_.LoggedCall = NanosecondsOfACall(marvane_);
        const auto text = [](double nanoseconds) {
            return std::to_string(std::llround(nanoseconds)) + " ns";
        };
        if (result_.BareCall && result_.LoggedCall)
            Add(FindingLevel::Ok, "cost of a call",
                text(*result_.LoggedCall) + " logged (level decoded), " + text(*result_.BareCall) +
                    " without Marvane");
        else
            Add(FindingLevel::Error, "cost of a call", "can't be measured with\n" + command_);
    }

    std::string folder_;
    std::string marvane_;
    std::string interface_;
    std::string application_;
    std::string command_;
    PrivateFolder scratch_;
    SelftestResult result_;
};

/// The first place that has all of the package, else the first that has its logger library; empty if there is
/// none.
std::string PackageFolder(const std::string& from, Machine machine)
{
    const std::vector<std::string> places = DeliveredFolders(from, machine);
    for (const std::string& place : places) {
        const std::string base = place + platform::PathSeparator;
        if (IsFile(base + InterfaceName()) && IsFile(base + ProgramName("diag_session")))
            return place;
    }
    return places.empty() ? std::string() : places.front();
}

} // namespace

SelftestResult RunSelftest(const std::string& from, Machine machine)
{
    const std::string folder = PackageFolder(from, machine);
    if (!folder.empty())
        return Selftest(folder, machine).Run();
    SelftestResult result;
    result.For = machine;
    result.All.push_back({FindingLevel::Note, "Marvane",
                          std::string("no ") + MachineText(machine) + " " + platform::OwnLibraryName +
                              " is delivered here: not tested",
                          0});
    return result;
}

} // namespace marvane::tool
