#include "logger/log/rotation.h"

#include "logger/diagnostics/CMutexWindows.h"
#include "logger/log/log_files.h"
#include "logger/log/log_header.h"
#include "logger/state/process_texts.h"
#include "logger/state/settings.h"
#include "platform/uninterrupted.h"

namespace marvane {

namespace {

void BeginFileLine(PhaseText& text, std::string_view name)
{
    // A call that writes nothing has read no time.
    if (!text.Time().IsSet())
        text.Begin();
    text.Clear();
    text.AddStamp();
    text.Add("%s%s"_fmt, marks::FileChange, name);
}

void BeginContinuation(PhaseText& text, std::string_view name)
{
    BeginFileLine(text, name);
    text.AddLine("%s"_fmt, marks::ContinuationFile);
    LogHeader(text);
    WritePhase(text, ApiLogFile);
}

} // namespace

void ChangeLogFile(PhaseText& text, std::string_view name)
{
    const platform::CancellationDeferred deferred;
    LogMutexHold hold;
    BeginFileLine(text, name);
    text.AddLine("%s"_fmt, marks::ChangingFile);
    WritePhase(text, ApiLogFile);
    CloseLogFiles();

    ReopenLogFile();
    BeginContinuation(text, name);
}

void FinishChange(PhaseText& text, std::string_view name)
{
    const platform::CancellationDeferred deferred;
    LogMutexHold hold;
    // Another thread may have been faster, or have closed the log.
    if (!ReopeningFailed || !LoggingActive())
        return;
    OpenLogFile(LogDirectory);
    ReopeningFailed = !ApiLogFile;
    if (ApiLogFile)
        BeginContinuation(text, name);
}

} // namespace marvane
