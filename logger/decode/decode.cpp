// The contexts of decoders.
#include "logger/decode/decode.h"

#include "logger/state/settings.h"

namespace marvane {

DecoderContext ArgumentContext(PhaseText& text)
{
    return {Setting(NumericKey::LogFnCalls), Setting(NumericKey::LogFnDecodeArgs), text};
}

DecoderContext ResultContext(PhaseText& text)
{
    return {Setting(NumericKey::LogFnCalls), Setting(NumericKey::LogFnDecodeRsps), text};
}

} // namespace marvane
