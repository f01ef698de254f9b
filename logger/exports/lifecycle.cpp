// PDUConstruct and PDUDestruct: the two calls that start and end the logger itself.
#include "logger/call/call_frame.h"
#include "logger/call/comms_log.h"
#include "logger/call/start_stop.h"
#include "logger/diagnostics/CMutexWindows.h"
#include "logger/log/log_files.h"
#include "logger/state/settings.h"
#include "platform/error_state.h"
#include "platform/uninterrupted.h"

using namespace marvane;

namespace {

void SetCommsCallback(PDU_MS_LOG_CALLBACK callback)
{
    const CPduDll* const target = TargetLibrary();
    if (target && target->PDU_MS_SetLogCallback)
        target->PDU_MS_SetLogCallback(callback);
}

void StartLogger()
{
    const platform::ErrorStateKept kept;
    LOGGER_Initialise();
}

void CloseLog(PhaseText& text)
{
    const platform::CancellationDeferred deferred;
    LogMutexHold hold;
    if (!ApiLogFile || !LoggingActive())
        return;
    if (Setting(NumericKey::LogFnCalls) >= 2) {
        text.Clear();
        text.AddStamp();
        text.Add("%s%s"_fmt, marks::FileChange, "PDUDestruct");
        text.AddLine("%s"_fmt, marks::ClosingFile);
        WritePhase(text, ApiLogFile);
    }
    CloseLogFiles();
}

} // namespace

T_PDU_ERROR PDUConstruct(CHAR8* OptionStr, void* pAPITag)
{
    StartLogger();
    return LogCall({
        .name = "PDUConstruct",
        .arguments = Arguments("(OptionStr= \"%s\", pAPITag= %8p)"_fmt, TextOrNull(OptionStr), pAPITag),
        .forward = [=](const CPduDll& target) { return target.PDUConstruct(OptionStr, pAPITag); },
        .after =
            [&](PhaseText&, T_PDU_ERROR status) {
                if (status == PDU_STATUS_NOERROR)
                    SetCommsCallback(CommsLogCallback);
            },
    });
}

T_PDU_ERROR PDUDestruct()
{
    return LogCall({
        .name = "PDUDestruct",
        .before = [](PhaseText&) { SetCommsCallback(nullptr); },
        .forward = [](const CPduDll& target) { return target.PDUDestruct(); },
        .finish =
            [](PhaseText& text) {
                LOGGER_Uninitialise();
                CloseLog(text);
                Loaded = 0;
            },
    });
}
