#include "tool/setup/check.h"

#include "config/paths.h"
#include "platform/files.h"
#include "platform/narrow_text.h"
#include "tool/console/json_text.h"
#include "tool/setup/configuration_findings.h"
#include "tool/setup/folder_findings.h"
#include "tool/setup/library_findings.h"
#include "tool/setup/setup_files.h"
#include "tool/setup/surrounding_findings.h"

namespace marvane::tool {

namespace {

CheckFinding MarvaneFinding(const LibraryLook& look)
{
    if (!look.Exists)
        return {FindingLevel::Error, "Marvane", look.Path + "\ndoes not exist.", 0};
    if (!look.Facts || !look.Facts->IsMarvane)
        return {FindingLevel::Error, "Marvane", look.Path + "\nis not Marvane.", 0};
    return {FindingLevel::Ok, "Marvane", look.Path + "\n" + LibrarySummary(look), 0};
}

/// The configuration that a logger library reads, and why that one.
struct ChosenConfiguration
{
    std::string Path;
    CheckFinding Found;
};

ChosenConfiguration ChooseConfiguration(const std::string& marvane, const std::optional<std::string>& given)
{
    const std::string variable = platform::Utf8Variable(ConfigurationVariable).value_or("");
    const std::string beside = ConfigurationBeside(marvane, platform::PathSeparator);
    const std::string path = given ? *given : variable.empty() ? beside : variable;
    const auto found = [&](FindingLevel level, const std::string& text) {
        return ChosenConfiguration{path, {level, "configuration", path + "\n" + text, 0}};
    };
    if (!IsFile(path)) {
        const std::string why =
            !given && !variable.empty()
                ? "does not exist. PDU_CFG_FILE names it, so the one beside Marvane is not read. "
                : "does not exist. ";
        return found(FindingLevel::Error, why + "Marvane does not start without a configuration.");
    }
    if (given && !variable.empty() && !IsSameFile(*given, variable))
        return found(FindingLevel::Warning, "is not read: PDU_CFG_FILE names another, " + variable);
    if (given)
        return found(FindingLevel::Ok,
                     IsSameFile(*given, beside) ? "beside Marvane; PDU_CFG_FILE is not set" : "as given");
    if (!variable.empty())
        return found(FindingLevel::Warning,
                     "PDU_CFG_FILE names it for every copy of Marvane" +
                         (IsFile(beside) ? "; " + beside + " is not read" : std::string()) + ".");
    return found(FindingLevel::Ok, "beside Marvane; PDU_CFG_FILE is not set");
}

class ChainCheck
{
public:
    ChainCheck(const Configuration& configuration, const std::string& marvane, Machine machine)
        : configuration_(configuration), marvane_(marvane), machine_(machine)
    {
    }

    CheckReport Run(CheckFindings before)
    {
        report_.All = std::move(before);
        CheckFindings findings =
            ConfigurationFindings(configuration_, platform::PathSeparator, platform::ExpandUtf8);
        isPathWrong_ = HasPathError(findings);
        Append(report_.All, std::move(findings));
        const bool starts = Folder();
        const bool loads = Target();
        report_.Result = Result(starts, loads);
        return std::move(report_);
    }

private:
    std::uint32_t Value(NumericKey key) const { return configuration_.Number(key).Value; }
    bool IsActive() const
    {
        return LoggingActive(Value(NumericKey::LogEnabled), Value(NumericKey::LogNewFileCfg));
    }

    /// An error about the path of the target library, which is then not looked for.
    bool HasPathError(const CheckFindings& findings) const
    {
        for (const CheckFinding& finding : findings)
            if (finding.Level == FindingLevel::Error &&
                (finding.Place == "InstalledPath" || finding.Place == "PDUAPILibDll"))
                return true;
        return false;
    }

    /// False if the log folder keeps the logger from starting.
    bool Folder()
    {
        const SettingText setting = configuration_.Text(LogFileDirKey.Name);
        if (setting.Line == 0)
            return false;
        report_.LogFolder = LogFolder(setting.Value, platform::ExpandUtf8);
        if (report_.LogFolder.empty()) // The separator that follows it makes it the root folder.
            report_.LogFolder = platform::PathSeparator;
        if (!IsActive())
            return true;
        FolderCheck check = CheckLogFolder(report_.LogFolder, setting.Line);
        Append(report_.All, std::move(check.All));
        return check.IsUsable;
    }

    bool Target()
    {
        const std::string folder = platform::ExpandUtf8(configuration_.Text("InstalledPath").Value);
        const std::string name = platform::ExpandUtf8(configuration_.Text("PDUAPILibDll").Value);
        const std::string path =
            JoinTargetPath(IsStandAlone(folder) ? FolderOf(marvane_, platform::PathSeparator) : folder, name);
        if (name.empty())
            return false;
        if (isPathWrong_ && !IsFile(path)) {
            report_.All.push_back({FindingLevel::Note, "target library", "not tried: its path is wrong", 0});
            return false;
        }
        LibraryCheck check = CheckTarget(path, machine_);
        Append(report_.All, std::move(check.All));
        lacksFunctions_ = check.LacksFunctions;
        return check.IsUsable;
    }

    CheckOutcome Result(bool starts, bool loads) const
    {
        if (!configuration_.Opened || !starts || !loads || Value(NumericKey::LogEnabled) >= 2)
            return CheckOutcome::NotConstructed;
        if (lacksFunctions_)
            return CheckOutcome::CallEndsApplication;
        if (!IsActive())
            return CheckOutcome::NoLog;
        return Value(NumericKey::LogFnCalls) == 0 ? CheckOutcome::LogWithHeaders : CheckOutcome::LogWithCalls;
    }

    const Configuration& configuration_;
    const std::string& marvane_;
    Machine machine_;
    CheckReport report_;
    bool isPathWrong_ = false;
    bool lacksFunctions_ = false;
};

} // namespace

CheckReport CheckChain(const std::string& marvane, const std::optional<std::string>& given)
{
    const LibraryLook look = LookAtLibrary(marvane);
    CheckFindings before = {MarvaneFinding(look)};
    ChosenConfiguration chosen = ChooseConfiguration(marvane, given);
    before.push_back(std::move(chosen.Found));
    const Configuration configuration = ReadConfiguration(chosen.Path);
    if (configuration.Opened) {
        CheckReport report = ChainCheck(configuration, marvane, look.Facts ? look.Facts->For : OwnMachine())
                                 .Run(std::move(before));
        report.Marvane = marvane;
        Append(report.All, DiagnosticLogFindings());
        return report;
    }
    CheckReport report;
    report.All = std::move(before);
    return report;
}

CheckReport CheckConfiguration(const Configuration& configuration, const std::string& marvane,
                               Machine machine)
{
    return ChainCheck(configuration, marvane, machine).Run({});
}

CheckReport CheckLibrary(const std::string& path)
{
    const LibraryLook look = LookAtLibrary(path);
    const Machine machine = look.Facts && IsSupported(look.Facts->For) ? look.Facts->For : OwnMachine();
    CheckReport report;
    report.All = CheckTarget(path, machine).All;
    report.HasOutcome = false;
    return report;
}

std::string OutcomeText(const CheckReport& report)
{
    switch (report.Result) {
    case CheckOutcome::LogWithCalls:
        return "Outcome: works, log in " + report.LogFolder + ".";
    case CheckOutcome::LogWithHeaders:
        return "Outcome: works, log in " + report.LogFolder + " with headers only.";
    case CheckOutcome::NoLog:
        return "Outcome: works, no log.";
    case CheckOutcome::CallEndsApplication:
        return "Outcome: a call ends the application.";
    case CheckOutcome::NotConstructed:
        break;
    }
    return "Outcome: every call returns 0x20 (PDU_ERR_PDUAPI_NOT_CONSTRUCTED).";
}

int StatusOf(const CheckReport& report)
{
    return HasErrors(report.All) || HasWarnings(report.All) ? 1 : 0;
}

std::string ReportJson(const CheckReport& report)
{
    JsonObject object;
    if (!report.Title.empty())
        object.Add("title", report.Title);
    object.AddRaw("findings", FindingsJson(report.All));
    if (report.HasOutcome)
        object.Add("outcome", OutcomeText(report));
    return object.Text();
}

} // namespace marvane::tool
