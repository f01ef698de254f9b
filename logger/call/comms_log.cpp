#include "logger/call/comms_log.h"

#include "logger/call/call_frame.h"
#include "logger/log/log_files.h"
#include "logger/state/settings.h"

namespace marvane {

namespace {

constexpr UNUM32 NumberParameter = 0x1000;
constexpr UNUM32 BytesParameter = 0x1002;

constexpr std::size_t NameSize = 21;

void LogCommsParameter(const DecoderFrame& frame, int direction, const LogParameter& parameter)
{
    const std::size_t indent = IndentIndex(direction, 0);
    switch (parameter.Type) {
    case NumberParameter:
        return DecodeLine(frame, indent, "%-20s\t= 0x%08X"_fmt, BoundedText(parameter.Name, NameSize),
                          *static_cast<const UNUM32*>(parameter.Data));
    case BytesParameter: {
        const auto& bytes = *static_cast<const LogParameterBytes*>(parameter.Data);
        return DumpBuffer(frame, direction, 0, TextOrNull(parameter.Name), bytes.Bytes, bytes.Length,
                          bytes.Length);
    }
    default:
        return DecodeLine(frame, indent, "Unhandled parameter - Type= 0x%04X"_fmt, parameter.Type);
    }
}

} // namespace

UNUM32 CommsLogCallback(const CHAR8* text, UNUM8 direction, UNUM32 protocol, UNUM32 count,
                        const LogParameter* parameters)
{
    if (!LoggingActive())
        return 0;
    CallText report;
    ReadFrameTime(report);
    LogStamp(report.Buffer, report.Time);
    LogAppend(report.Buffer, "%s"_fmt, NameOf(CommsProtocolLabels, protocol, "NULL"));
    LogAppendLine(report.Buffer, "%s %s"_fmt, direction ? " -> " : " <- ", text);

    // Fixed levels: what a report holds is shown whatever the settings say about calls.
    const DecoderFrame frame{2, 2, report.Buffer, report.Time};
    for (UNUM32 i = 0; i < count && report.Buffer.HasRoom(); ++i)
        LogCommsParameter(frame, direction ? DirectionIn : DirectionOut, parameters[i]);
    LogCommit(report.Buffer, CommsLogFile);
    return 0;
}

} // namespace marvane
