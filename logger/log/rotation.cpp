#include "logger/log/rotation.h"

#include "logger/diagnostics/CMutexWindows.h"
#include "logger/log/log_files.h"
#include "logger/log/log_header.h"
#include "logger/state/process_texts.h"
#include "logger/state/settings.h"

namespace marvane {

namespace {

void BeginFileLine(CallText& text, std::string_view name)
{
    text.Buffer.Clear();
    LogStamp(text.Buffer, text.Time);
    LogAppend(text.Buffer, "%s%s"_fmt, marks::FileChange, name);
}

} // namespace

void ChangeLogFile(CallText& text, std::string_view name)
{
    LogMutexHold hold;
    BeginFileLine(text, name);
    LogAppendLine(text.Buffer, "%s"_fmt, marks::ChangingFile);
    LogCommit(text.Buffer, ApiLogFile);
    CloseLogFiles();

    OpenLogFile(LogDirectory);
    BeginFileLine(text, name);
    LogAppendLine(text.Buffer, "%s"_fmt, marks::ContinuationFile);
    LogHeader(text.Buffer, text.Time);
    LogCommit(text.Buffer, ApiLogFile);
}

} // namespace marvane
