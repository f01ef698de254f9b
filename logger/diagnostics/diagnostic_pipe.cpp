#include "logger/diagnostics/diagnostic_pipe.h"

#include <cstdio>
#include <string>

#include "logger/diagnostics/CLog.h"
#include "logger/diagnostics/CMutexWindows.h"
#include "platform/environment.h"
#include "platform/files.h"
#include "platform/uninterrupted.h"

namespace marvane {

namespace {

// Guarded by LogMutex.
std::FILE* DiagnosticPipeFile = nullptr;

// The standard error stream, which the diagnostic log falls back to, belongs to the application.
void CloseOwned(std::FILE* stream)
{
    const platform::Uninterrupted scope;
    if (stream && stream != stderr)
        std::fclose(stream);
}

} // namespace

void OpenDiagnosticPipe()
{
    const std::string path =
        platform::ExpandEnvironment(std::string("%TEMP%") + platform::PathSeparator + "d-pdu-api-logger.log");
    LogMutexHold hold;
    std::FILE* const opened = platform::OpenTemporaryStream(path, "w");
    if (!opened)
        return;
    std::FILE* const replaced = CLog::SetPipe(opened);
    CloseOwned(replaced);
    if (DiagnosticPipeFile != replaced)
        CloseOwned(DiagnosticPipeFile);
    DiagnosticPipeFile = opened;
}

void CloseDiagnosticPipe()
{
    LogMutexHold hold;
    if (!DiagnosticPipeFile)
        return;
    std::FILE* const replaced = CLog::SetPipe(nullptr);
    CloseOwned(replaced);
    if (replaced != DiagnosticPipeFile)
        CloseOwned(DiagnosticPipeFile);
    DiagnosticPipeFile = nullptr;
}

} // namespace marvane
