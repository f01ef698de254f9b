// The logger's process-wide state in unit tests, without starting the logger.
#pragma once

#include <string>

#include <gtest/gtest.h>

#include "logger/log/log_files.h"
#include "logger/state/process_texts.h"
#include "logger/state/settings.h"
#include "logger/target/library_path.h"
#include "tests/support/temporary_folder.h"

namespace marvane::testing {

/// Logging is active, with a log file in a temporary folder. At the end all state is as before the first
/// start.
class LoggerState : public ::testing::Test
{
protected:
    LoggerState()
    {
        Reset();
        SetSetting(NumericKey::LogEnabled, 1);
        ApiLogFile = LogFile::Open(LogPath()).release();
    }
    ~LoggerState() override
    {
        CloseLogFiles();
        Reset();
    }

    std::string LogPath() const { return folder / "api.log"; }

    /// The text logged so far. Flushes the file.
    std::string Log() const
    {
        ApiLogFile.load()->Flush();
        return FileText(LogPath());
    }

    const TemporaryFolder folder;

private:
    static void Reset()
    {
        for (const NumericKeyName& key : NumericKeyNames)
            SetSetting(key.Key, key.Default);
        for (std::string& text : StringSettings)
            text.clear();
        Loaded = 0;
        LogDirectory.clear();
        TargetLibraryPath.clear();
        LoggerVersionText = "<UNREAD>";
        TargetVersionText = "<UNREAD>";
    }
};

} // namespace marvane::testing
