#include "logger/call/comms_log.h"

#include "logger/decode/decode.h"
#include "logger/log/log_files.h"
#include "logger/state/settings.h"
#include "platform/error_state.h"
#include "platform/in_flight.h"

namespace marvane {

UNUM32 CommsLogCallback(const CHAR8* text, UNUM8 direction, UNUM32 protocol, UNUM32 count,
                        const LogParameter* parameters)
{
    if (!LoggingActive())
        return 0;
    const platform::InFlight inside;
    const platform::ErrorStateKept kept;
    const Direction way = direction != 0 ? Direction::ToTarget : Direction::FromTarget;
    PhaseText report;
    report.Begin();
    report.AddStamp();
    report.Add("%s"_fmt, NameOf(CommsProtocolLabels, protocol, "NULL"));
    report.AddLine("%s %s"_fmt, ReportArrow(way), text);

    // Fixed levels: reports are shown whole, whatever the settings for calls.
    const DecoderContext context{2, 2, report};
    for (UNUM32 i = 0; i < count && report.HasRoom(); ++i)
        DecodeCommsParameter(context, Arrow(way), parameters[i]);
    WritePhase(report, CommsLogFile);
    return 0;
}

} // namespace marvane
