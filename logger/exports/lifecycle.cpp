// PDUConstruct and PDUDestruct: the two calls that start and end the logger itself.
#include "logger/call/call_frame.h"
#include "logger/call/comms_log.h"
#include "logger/call/start_stop.h"
#include "logger/diagnostics/CMutexWindows.h"
#include "logger/log/log_files.h"
#include "logger/state/settings.h"

using namespace marvane;

namespace {

void SetCommsCallback(PDU_MS_LOG_CALLBACK callback)
{
    const CPduDll* const target = TargetLibrary();
    if (target && target->PDU_MS_SetLogCallback)
        target->PDU_MS_SetLogCallback(callback);
}

void CloseLog(CallText& text)
{
    LogMutexHold hold;
    if (!ApiLogFile || !LoggingActive())
        return;
    if (Setting(NumericKey::LogFnCalls) >= 2) {
        text.Buffer.Clear();
        LogStamp(text.Buffer, text.Time);
        LogAppend(text.Buffer, "%s%s"_fmt, marks::FileChange, "PDUDestruct");
        LogAppendLine(text.Buffer, "%s"_fmt, marks::ClosingFile);
        LogCommit(text.Buffer, ApiLogFile);
    }
    CloseLogFiles();
}

} // namespace

T_PDU_ERROR PDUConstruct(CHAR8* OptionStr, void* pAPITag)
{
    LOGGER_Initialise();
    return LogCall({
        .name = "PDUConstruct",
        .arguments =
            [&](LogBuffer& text) {
                LogAppend(text, "(OptionStr= \"%s\", pAPITag= %8p)"_fmt, TextOrNull(OptionStr), pAPITag);
            },
        .forward = [&](const CPduDll& target) { return target.PDUConstruct(OptionStr, pAPITag); },
        .after =
            [&](CallText&, T_PDU_ERROR status) {
                if (status == PDU_STATUS_NOERROR)
                    SetCommsCallback(CommsLogCallback);
            },
    });
}

T_PDU_ERROR PDUDestruct()
{
    return LogCall({
        .name = "PDUDestruct",
        .before = [](CallText&) { SetCommsCallback(nullptr); },
        .forward = [](const CPduDll& target) { return target.PDUDestruct(); },
        .finish =
            [](CallText& text) {
                LOGGER_Uninitialise();
                CloseLog(text);
                Loaded = 0;
            },
    });
}
