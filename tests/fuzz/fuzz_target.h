// Shared by the fuzz targets. A target is a function of bytes that aborts the process on a fault.
#pragma once

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "logger/decode/decode.h"
#include "logger/decode/object_names.h"
#include "tests/fuzz/odd_lines.h"
#include "tests/fuzz/record_source.h"
#include "tests/support/temporary_folder.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace marvane::testing {

inline void Require(bool holds, const char* what, std::string_view found = "")
{
    if (holds)
        return;
    std::fprintf(stderr, "Does not hold: %s\n%.*s\n", what, static_cast<int>(found.size()), found.data());
    std::abort();
}

/// A folder in place of the user's folders for the whole run, below TMPDIR.
inline const TemporaryFolder& FuzzFolder()
{
    static const TemporaryFolder folder;
    static const EnvironmentValue temp("TEMP", folder.Path().string());
    static const EnvironmentValue tmp("TMP", folder.Path().string());
    static const EnvironmentValue appData("APPDATA", folder.Path().string());
    return folder;
}

/// The context of a decoder: levels, settings, learned names and buffer contents are chosen by the bytes.
class FuzzedFrame
{
public:
    explicit FuzzedFrame(RecordSource& source) : frame_{source.Below(4), source.Below(4), text_}
    {
        SetSetting(NumericKey::LogEnabled, source.Below(8) != 0);
        SetSetting(NumericKey::LogMaxPduBuff, source.Number());
        ClearObjectNames();
        for (UNUM32 named = source.Below(3); named != 0; --named)
            RecordObjectName(PDU_OBJT_PROTOCOL + source.Below(7), source.Below(8), "A name");
        const std::string filler(source.Below(4) == 0 ? source.Take<UNUM16>() % LogBuffer::Size : 0, 'x');
        if (!filler.empty()) {
            text_.AddStamp();
            text_.AddLine("%s"_fmt, filler);
        }
    }
    const DecoderContext& Frame() const { return frame_; }

    /// Conditions that hold after every decoder.
    void Check() const
    {
        Require(text_.Text().size() < LogBuffer::Size, "the text fits the buffer");
        const std::string odd = FirstOddLine(text_.Text());
        Require(odd.empty(), "each line has its stamp", odd);
        Require(text_.Text().empty() || text_.Text().ends_with('\n'), "the last line has its end");
    }

private:
    PhaseText text_{PhaseTime(7, 8, 9, 10)};
    DecoderContext frame_;
};

} // namespace marvane::testing
