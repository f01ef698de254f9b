#include "logger/log/log_header.h"

#include "line/arrows.h"
#include "logger/diagnostics/CMutexWindows.h"
#include "logger/state/process_texts.h"
#include "logger/state/settings.h"

namespace marvane {

namespace {

void AppendNumericSettings(PhaseText& text)
{
    for (const NumericKeyName& key : NumericKeyNames) {
        const std::uint32_t value = Setting(key.Key);
        if (key.Key == NumericKey::LogEngineeringMode && value == 0)
            continue;
        text.AddStamp();
        text.Add("%s%-20s = %9u (0x%08X)\n"_fmt, marks::Setting, key.Name, value, value);
    }
}

void AppendStringSettings(PhaseText& text)
{
    for (const StringKeyName& key : StringKeyNames) {
        text.AddStamp();
        text.Add("%s%-20s = '%s'\n"_fmt, marks::Setting, key.Name, StringSettings[key.Key]);
    }
}

} // namespace

void LogHeader(PhaseText& text)
{
    LogMutexHold hold;
    text.AddStamp();
    text.Add("%s%s%s\n"_fmt, marks::Version, LoggerVersionText, marks::VersionEnd);
    text.AddStamp();
    text.Add("%s"_fmt, marks::Header);
    text.Add("{Loaded=%d}\n"_fmt, Loaded.load());
    AppendNumericSettings(text);
    AppendStringSettings(text);
    if (!IsLoaded())
        return;
    LogLogFileDir(text, LogDirectory);
    if (Setting(NumericKey::LogEnabled) == 0)
        return;
    text.AddStamp();
    text.Add("%s"_fmt, FromTarget.Text());
    text.AddLine("LOADED:  Version '%s' of '%s'"_fmt, TargetVersionText, TargetLibraryPath);
}

void LogLogFileDir(PhaseText& text, const std::string& directory)
{
    text.AddStamp();
    text.Add("%s%s=%s\n"_fmt, marks::Setting, "LogFileDir",
             directory.empty() ? "<NULL STRING>" : directory.c_str());
}

} // namespace marvane
