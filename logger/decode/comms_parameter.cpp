// The parameters of comms reports.
#include "logger/decode/decode.h"

namespace marvane {

namespace {

// Types of parameters.
constexpr UNUM32 NumberParameter = 0x1000;
constexpr UNUM32 BytesParameter = 0x1002;

/// Bytes of the name of a number, which need not be NUL-terminated.
constexpr std::size_t NameSize = 21;

} // namespace

void DecodeCommsParameter(const DecoderContext& context, Arrow arrow, const LogParameter& parameter)
{
    switch (parameter.Type) {
    case NumberParameter:
        return DecodeLine(context, arrow, "%-20s\t= 0x%08X"_fmt, VisibleText(parameter.Name, NameSize),
                          *static_cast<const UNUM32*>(parameter.Data));
    case BytesParameter: {
        const auto& bytes = *static_cast<const LogParameterBytes*>(parameter.Data);
        return DumpBuffer(context, arrow, TextOrNull(parameter.Name), bytes.Bytes, bytes.Length,
                          bytes.Length);
    }
    default:
        return DecodeLine(context, arrow, "Unhandled parameter - Type= 0x%04X"_fmt, parameter.Type);
    }
}

} // namespace marvane
