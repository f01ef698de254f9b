#include "logger/log/log_header.h"

#include "logger/diagnostics/CMutexWindows.h"
#include "logger/state/process_texts.h"
#include "logger/state/settings.h"

namespace marvane {

namespace {

void AppendNumericSettings(LogBuffer& text, const FrameTime& time)
{
    for (const NumericKeyName& key : NumericKeyNames) {
        const std::uint32_t value = Setting(key.Key);
        if (key.Key == NumericKey::LogEngineeringMode && value == 0)
            continue;
        LogStamp(text, time);
        LogAppend(text, "%s%-20s = %9u (0x%08X)\n"_fmt, marks::Setting, key.Name, value, value);
    }
}

void AppendStringSettings(LogBuffer& text, const FrameTime& time)
{
    for (const StringKeyName& key : StringKeyNames) {
        LogStamp(text, time);
        LogAppend(text, "%s%-20s = '%s'\n"_fmt, marks::Setting, key.Name, StringSettings[key.Key]);
    }
}

} // namespace

void LogHeader(LogBuffer& text, const FrameTime& time)
{
    LogMutexHold hold;
    LogStamp(text, time);
    LogAppend(text, "%s%s%s\n"_fmt, marks::Version, LoggerVersionText, marks::VersionEnd);
    LogStamp(text, time);
    LogAppend(text, "%s"_fmt, marks::Header);
    LogAppend(text, "{Loaded=%d}\n"_fmt, Loaded.load());
    AppendNumericSettings(text, time);
    AppendStringSettings(text, time);
    if (!IsLoaded())
        return;
    LogLogFileDir(text, time, LogDirectory);
    if (Setting(NumericKey::LogEnabled) == 0)
        return;
    LogStamp(text, time);
    LogAppend(text, "%s"_fmt, "   <--  ");
    LogAppendLine(text, "LOADED:  Version '%s' of '%s'"_fmt, TargetVersionText, TargetLibraryPath);
}

void LogLogFileDir(LogBuffer& text, const FrameTime& time, const std::string& directory)
{
    LogStamp(text, time);
    LogAppend(text, "%s%s=%s\n"_fmt, marks::Setting, "LogFileDir",
              directory.empty() ? "<NULL STRING>" : directory.c_str());
}

} // namespace marvane
