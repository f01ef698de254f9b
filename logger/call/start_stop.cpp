#include "logger/call/start_stop.h"

#include <cstdio>
#include <stdexcept>
#include <string>

#include "config/paths.h"
#include "logger/call/call_frame.h"
#include "logger/decode/object_names.h"
#include "logger/diagnostics/CLog.h"
#include "logger/diagnostics/CMutexWindows.h"
#include "logger/diagnostics/diagnostic_pipe.h"
#include "logger/log/log_files.h"
#include "logger/log/log_header.h"
#include "logger/log/rotation.h"
#include "logger/state/CConfigData.h"
#include "logger/state/process_texts.h"
#include "logger/state/settings.h"
#include "logger/target/library_path.h"
#include "logger/target/target_library.h"
#include "platform/environment.h"
#include "platform/library.h"
#include "platform/uninterrupted.h"

namespace marvane {

namespace {

void FillSettings(const CConfigData& config)
{
    for (const NumericKeyName& key : NumericKeyNames) {
        const auto found = config.Numbers().find(key.Name);
        SetSetting(key.Key, found != config.Numbers().end() ? found->second : key.Default);
    }
    for (const StringKeyName& key : StringKeyNames) {
        std::string value;
        if (config.GetStringValue(key.Name, value) != 0)
            continue;
        LogMutexHold hold;
        StringSettings[key.Key] = value;
    }
}

/// Sets the log folder, and opens the log file if anything is to be logged. Returns 0 on success, else 1.
int OpenLog(PhaseText& text, const CConfigData& config)
{
    const auto configured = config.Texts().find(LogFileDirKey.Name);
    if (configured == config.Texts().end())
        return 1;
    const std::string directory = LogFolder(configured->second, platform::ExpandEnvironment);
    LogLogFileDir(text, directory);
    {
        LogMutexHold hold;
        LogDirectory = directory;
    }
    return LoggingActive() ? OpenLogFile(directory) : 0;
}

void LogTargetVersion(PhaseText& text)
{
    const std::string path = CopyGuarded(TargetLibraryPath);
    const bool read = ReadVersionText(path, TargetVersionText);
    if (Setting(NumericKey::LogEnabled) == 0)
        return;
    text.AddStamp();
    text.Add("%s"_fmt, FromTarget.Text());
    if (read)
        text.AddLine("LOADED:  Version '%s' of '%s'"_fmt, CopyGuarded(TargetVersionText), path);
    else
        text.AddLine("LOADING:  Failed to load - '%s'"_fmt, path);
}

// These lines depend on LogEnabled where those of calls depend on LogFnCalls.
DecoderContext StartUpContext(PhaseText& text, NumericKey decodeLevel)
{
    return {Setting(NumericKey::LogEnabled), Setting(decodeLevel), text};
}

void LoadTarget(PhaseText& text, const CConfigData& config)
{
    if (GetLibPath(text, config))
        LogTargetVersion(text);
    else {
        text.AddStamp();
        text.Add("\tERROR: Couldn't find library path (%s)"_fmt, CopyGuarded(TargetLibraryPath));
    }
    CommitEntry(text);
    std::string failure;
    try {
        LoadTargetLibrary();
    } catch (const std::runtime_error& error) {
        failure = error.what();
    }
    CloseCallOut(text, "LOGGER_Initialise");
    const DecoderContext results = StartUpContext(text, NumericKey::LogFnDecodeRsps);
    if (!failure.empty())
        GatedLine(results, FromTarget, "LOAD FAILURE: %s"_fmt, failure);
    if (const CPduDll* target = TargetLibrary())
        GatedLine(results, FromTarget, "DLL Loaded @ %8p"_fmt, target);
    else
        GatedLine(results, FromTarget, "DLL Load *FAILED*"_fmt);
}

void LogResult(PhaseText& text, const char* name, T_PDU_ERROR result)
{
    if (LoggingActive() && Setting(NumericKey::LogEnabled) != 0) {
        LogExit(text, name, result);
        WritePhase(text, ApiLogFile);
    }
    CheckRotation(text, name);
}

void UnloadTarget(PhaseText& text)
{
    GatedLine(StartUpContext(text, NumericKey::LogFnDecodeArgs), ToTarget, "Deleting DLL"_fmt);
    CommitEntry(text);
    UnloadTargetLibrary();
    CloseCallOut(text, "LOGGER_Uninitialise");
    GatedLine(StartUpContext(text, NumericKey::LogFnDecodeRsps), FromTarget, "DLL Deleted"_fmt);
}

} // namespace

int LOGGER_Initialise()
{
    const platform::CancellationDeferred deferred;
    CLog::EnsureLevelTable();
    OpenDiagnosticPipe();
    CConfigData config("D_PDU_API_CFG");
    config.ProcessConfigurationElements(CConfigData::GetConfigQualifiedName());
    config.ProcessLogLevels();
    FillSettings(config);
    ReadVersionText(platform::OwnVersionFile(), LoggerVersionText);

    PhaseText text;
    text.Begin();
    text.AddStamp();
    text.AddLine("%s"_fmt, marks::Initialise);
    LogHeader(text);

    if (!IsLoaded()) {
        const int result = OpenLog(text, config);
        Loaded = result == 0;
        if (result != 0)
            return result;
    }
    if (!TargetLibrary())
        LoadTarget(text, config);
    LogResult(text, "LOGGER_Initialise", 0);
    return 0;
}

int LOGGER_Uninitialise()
{
    const platform::CancellationDeferred deferred;
    PhaseText text;
    text.Begin();
    const bool up = IsLoaded();
    if (up) {
        if (LoggingActive() && Setting(NumericKey::LogEnabled) != 0) {
            LogEntry(text, "LOGGER_Uninitialise");
            if (Setting(NumericKey::LogFnCalls) >= 2)
                text.Add("{Loaded=%d}"_fmt, Loaded.load());
            text.Add("\n"_fmt);
        }
        if (TargetLibrary())
            UnloadTarget(text);
        ClearObjectNames();
    }
    CloseDiagnosticPipe();
    CLog::Shutdown();
    if (!up)
        return 1;
    LogResult(text, "LOGGER_Uninitialise", 0);
    return 0;
}

} // namespace marvane
