#include "logger/log/log_trimming.h"

#include <cstdint>
#include <set>

#include "logger/diagnostics/CLog.h"
#include "logger/diagnostics/CMutexWindows.h"
#include "logger/log/log_files.h"
#include "logger/state/process_texts.h"
#include "logger/state/settings.h"
#include "platform/files.h"

namespace marvane {

namespace {

struct Trimming : DiagnosticSource
{
    explicit Trimming(DebugLevel level, std::uint32_t line = __builtin_LINE())
        : DiagnosticSource(level, Subsystem::APP, "logger/logger", "TrimLogFiles", line)
    {
    }
};

} // namespace

void TrimLogFiles(LogFamily family, std::string& soleFile)
{
    Diagnose(Trimming(DebugLevel::Debug), "FileName=", std::string(BaseName(family)));
    soleFile.clear();
    const std::string directory = CopyGuarded(LogDirectory);
    const std::string folder = directory + platform::PathSeparator;
    Diagnose(Trimming(DebugLevel::Debug), "SearchPath=", directory);
    // Names begin with the day, so their order is not that of age. Kept: installations count on which file
    // goes.
    const auto found = platform::FindFiles(folder + LogFilePattern(family));
    if (!found)
        return;
    std::set<std::string> names(found->begin(), found->end());

    // Wraps round to 0 for the largest number, which erases every file.
    const std::uint32_t most = Setting(NumericKey::LogFileMaxNum) + 1;
    Diagnose(Trimming(DebugLevel::Debug), "NumFiles=", names.size(), ", Max=", most);
    while (most < names.size()) {
        const std::string path = folder + *names.begin();
        Diagnose(Trimming(DebugLevel::Debug1), "Erasing=", path);
        platform::RemoveFile(path);
        names.erase(names.begin());
    }
    // All that matched may have been folders.
    if (Setting(NumericKey::LogFileMaxNum) == 0 && !names.empty()) {
        soleFile = *names.begin();
        Diagnose(Trimming(DebugLevel::Debug), "SoleFile=", soleFile);
    }
}

} // namespace marvane
