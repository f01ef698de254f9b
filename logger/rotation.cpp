#include "logger/rotation.h"

#include "lib/CMutexWindows.h"
#include "logger/log_files.h"
#include "logger/log_header.h"
#include "logger/settings.h"

namespace marvane {

namespace {

void BeginFileLine(CallText& text, std::string_view name)
{
    text.Buffer.Clear();
    LogStamp(text.Buffer, text.Time);
    LogAppend(text.Buffer, "# %s", name);
}

} // namespace

void ChangeLogFile(CallText& text, std::string_view name)
{
    LogMutexHold hold;
    BeginFileLine(text, name);
    LogAppendLine(text.Buffer, " - Changing log file");
    LogCommit(text.Buffer, ApiLogFile);
    CloseLogFiles();

    OpenLogFile(LogDirectory);
    BeginFileLine(text, name);
    LogAppendLine(text.Buffer, " - Continuation file");
    LogHeader(text.Buffer, text.Time);
    LogCommit(text.Buffer, ApiLogFile);
}

} // namespace marvane
