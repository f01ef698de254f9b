#include "logger/target/library_path.h"

#include "config/paths.h"
#include "line/arrows.h"
#include "logger/diagnostics/CMutexWindows.h"
#include "logger/state/process_texts.h"
#include "logger/state/settings.h"
#include "platform/files.h"
#include "platform/library.h"
#include "platform/narrow_text.h"

namespace marvane {

namespace {

/// Adds one line about the start: stamp, arrow, text.
template <class Format, class... Arguments>
void StartUpLine(PhaseText& text, Format format, const Arguments&... arguments)
{
    text.AddStamp();
    text.Add("%s"_fmt, ToTarget.Text());
    text.AddLine(format, arguments...);
}

/// Folder of this library with its separator; empty if the module is not found.
std::string OwnFolder()
{
    const platform::ModulePath own = platform::OwnModulePath(TargetPathLimit);
    if (own.ModuleError != 0) {
        Diagnose({DebugLevel::Error, Subsystem::APP, "logger/logger", "GetLibPath"},
                 "GetModuleHandle Error=", own.ModuleError);
        return {};
    }
    return FolderOf(own.Path, platform::PathSeparator);
}

void SetTargetLibraryPath(std::string folder, std::string fileName)
{
    platform::MatchEncodings(folder, fileName);
    const std::string path = JoinTargetPath(folder, fileName);
    LogMutexHold hold;
    TargetLibraryPath = path;
}

} // namespace

bool GetLibPath(PhaseText& text, const CConfigData& config)
{
    const std::uint32_t enabled = Setting(NumericKey::LogEnabled);
    if (enabled >= 2) {
        StartUpLine(text, "Unsupported LogEnabled=%d setting"_fmt, enabled);
        return true;
    }
    std::string fileName;
    if (config.GetStringValue("PDUAPILibDll", fileName) != 0) {
        text.AddStamp();
        text.AddLine("Logger 'PDUAPILibDll' not in config"_fmt);
    }
    std::string folder;
    config.GetStringValue("InstalledPath", folder);
    if (IsStandAlone(folder)) {
        if (enabled != 0)
            StartUpLine(text, "StandAlone installation"_fmt);
        folder = OwnFolder();
        if (folder.empty())
            return false;
    }
    SetTargetLibraryPath(folder, fileName);
    if (enabled != 0)
        StartUpLine(text, "LOADING: DLL = \"%s\""_fmt, CopyGuarded(TargetLibraryPath));
    return true;
}

bool ReadVersionText(const std::string& file, std::string& versionText)
{
    if (!LoggingActive())
        return false;
    const auto version = platform::ProductVersion(file);
    LogMutexHold hold;
    if (!version) {
        versionText.replace(0, 8, "<UNKNOWN");
        return false;
    }
    char text[40];
    const auto [major, minor, build, patch] = *version;
    versionText.assign(
        text, FormatText(text, std::end(text), "R%02d.%03d.%04d.%04d"_fmt, major, minor, build, patch));
    return true;
}

} // namespace marvane
