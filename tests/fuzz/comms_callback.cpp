// Communication reports of a target library, with parameters of every type.
#include <filesystem>

#include "logger/call/comms_log.h"
#include "logger/log/log_files.h"
#include "tests/fuzz/fuzz_target.h"

using namespace marvane;
using namespace marvane::testing;

namespace {

LogParameter Parameter(RecordSource& source)
{
    const CHAR8* const label = source.Text();
    const CHAR8* const name = label ? label : source.New('\0');
    switch (source.Below(4)) {
    case 0: // A name of at most 20 characters, or a full array without a NUL.
        return {0x1000, 0, reinterpret_cast<CHAR8*>(source.Bytes(21)), source.Bytes(4)};
    case 1: {
        const UNUM32 size = source.Below(64);
        return {0x1002, 0, name,
                source.New(LogParameterBytes{.Length = size,
                                             .Bytes = source.Coin() ? source.Bytes(size) : nullptr})};
    }
    case 2: // Longer than the buffer, or of any length.
        return {0x1002, 0, name,
                source.New(LogParameterBytes{.Length = 2400 + source.Take<UNUM32>() / 2,
                                             .Bytes = source.Bytes(2400)})};
    default: // The value of an unknown type is not read.
        return {source.Take<UNUM32>() | 1, 0, nullptr, nullptr};
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const std::string path = FuzzFolder() / "comms";
    RecordSource source(data, size);
    SetSetting(NumericKey::LogEnabled, source.Below(8) != 0);
    SetSetting(NumericKey::LogFlush, source.Coin());
    const UNUM32 protocol = source.Coin() ? 255 + source.Below(5) : source.Number();
    const auto direction = source.Take<UNUM8>();
    const CHAR8* const text = source.Text();
    std::vector<LogParameter> parameters(source.Below(8));
    for (LogParameter& parameter : parameters)
        parameter = Parameter(source);
    std::filesystem::remove(path);
    CommsLogFile = LogFile::Open(path).release();
    const auto count = static_cast<UNUM32>(parameters.size());
    Require(CommsLogCallback(text, direction, protocol, count, count ? parameters.data() : nullptr) == 0,
            "0 goes back");
    delete CommsLogFile.exchange(nullptr);

    const std::string written = FileText(path);
    Require(written.empty() == !LoggingActive() && written.size() < LogBuffer::Size, "one block is written");
    // Names of fixed size may contain line breaks.
    if (std::string_view(reinterpret_cast<const char*>(data), size).find('\n') == std::string_view::npos)
        Require(FirstOddLine(written).empty(), "each line has its stamp", FirstOddLine(written));
    return 0;
}
