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

/// Finds the log folder and opens the log file if anything is to be logged. Returns 0 on success, else 1.
int OpenLog(CallText& text, const CConfigData& config)
{
    const auto configured = config.Texts().find(LogFileDirKey.Name);
    if (configured == config.Texts().end())
        return 1;
    const std::string directory = LogFolder(configured->second, platform::ExpandEnvironment);
    LogLogFileDir(text.Buffer, text.Time, directory);
    {
        LogMutexHold hold;
        LogDirectory = directory;
    }
    return LoggingActive() ? OpenLogFile(directory) : 0;
}

void LogTargetVersion(CallText& text)
{
    const std::string path = CopyGuarded(TargetLibraryPath);
    const bool read = ReadVersionText(path, TargetVersionText);
    if (Setting(NumericKey::LogEnabled) == 0)
        return;
    LogStamp(text.Buffer, text.Time);
    LogAppend(text.Buffer, "%s"_fmt, Incoming);
    if (read)
        LogAppendLine(text.Buffer, "LOADED:  Version '%s' of '%s'"_fmt, CopyGuarded(TargetVersionText), path);
    else
        LogAppendLine(text.Buffer, "LOADING:  Failed to load - '%s'"_fmt, path);
}

// These lines ask LogEnabled where those of the calls ask LogFnCalls.
DecoderFrame StartUpFrame(CallText& text, NumericKey decodeLevel)
{
    return {Setting(NumericKey::LogEnabled), Setting(decodeLevel), text.Buffer, text.Time};
}

void LoadTarget(CallText& text, const CConfigData& config)
{
    if (GetLibPath(text.Buffer, text.Time, config))
        LogTargetVersion(text);
    else {
        LogStamp(text.Buffer, text.Time);
        LogAppend(text.Buffer, "\tERROR: Couldn't find library path (%s)"_fmt,
                  CopyGuarded(TargetLibraryPath));
    }
    CommitEntry(text);
    std::string failure;
    try {
        LoadTargetLibrary();
    } catch (const std::runtime_error& error) {
        failure = error.what();
    }
    CloseCallOut(text, "LOGGER_Initialise");
    const DecoderFrame results = StartUpFrame(text, NumericKey::LogFnDecodeRsps);
    if (!failure.empty())
        GatedLine(results, Incoming, "LOAD FAILURE: %s"_fmt, failure);
    if (const CPduDll* target = TargetLibrary())
        GatedLine(results, Incoming, "DLL Loaded @ %8p"_fmt, target);
    else
        GatedLine(results, Incoming, "DLL Load *FAILED*"_fmt);
}

void LogResult(CallText& text, const char* name, T_PDU_ERROR result)
{
    if (LoggingActive() && Setting(NumericKey::LogEnabled) != 0) {
        LogExit(text, name, result);
        LogCommit(text.Buffer, ApiLogFile);
    }
    CheckRotation(text, name);
}

void UnloadTarget(CallText& text)
{
    GatedLine(StartUpFrame(text, NumericKey::LogFnDecodeArgs), Outgoing, "Deleting DLL"_fmt);
    CommitEntry(text);
    UnloadTargetLibrary();
    CloseCallOut(text, "LOGGER_Uninitialise");
    GatedLine(StartUpFrame(text, NumericKey::LogFnDecodeRsps), Incoming, "DLL Deleted"_fmt);
}

} // namespace

int LOGGER_Initialise()
{
    CLog::EnsureLevelTable();
    OpenDiagnosticPipe();
    CConfigData config("D_PDU_API_CFG");
    config.ProcessConfigurationElements(CConfigData::GetConfigQualifiedName());
    config.ProcessLogLevels();
    FillSettings(config);
    ReadVersionText(platform::OwnLibraryName, LoggerVersionText);

    CallText text;
    ReadFrameTime(text);
    LogStamp(text.Buffer, text.Time);
    LogAppendLine(text.Buffer, "%s"_fmt, marks::Initialise);
    LogHeader(text.Buffer, text.Time);

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
    CallText text;
    ReadFrameTime(text);
    const bool up = IsLoaded();
    if (up) {
        if (LoggingActive() && Setting(NumericKey::LogEnabled) != 0) {
            LogEntry(text, "LOGGER_Uninitialise");
            if (Setting(NumericKey::LogFnCalls) >= 2)
                LogAppend(text.Buffer, "{Loaded=%d}"_fmt, Loaded.load());
            LogAppend(text.Buffer, "\n"_fmt);
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
