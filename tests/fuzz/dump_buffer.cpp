// DumpBuffer compared with a slower listing.
#include <algorithm>
#include <array>

#include "tests/fuzz/fuzz_target.h"

using namespace marvane;
using namespace marvane::testing;

namespace {

std::string ExpectedRun(const char* indent, const std::string& label, UNUM32 offset, std::string_view bytes,
                        bool cut)
{
    char line[300];
    std::snprintf(line, sizeof line, "%s%-14s |%08lX <%66s|\n", indent, label.substr(0, 14).c_str(),
                  static_cast<unsigned long>(offset), "");
    std::string text = line;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        std::snprintf(line, sizeof line, "%02X", static_cast<unsigned char>(bytes[i]));
        text.replace(34 + 3 * i, 2, line);
        text[84 + i] = bytes[i] >= 0x20 && bytes[i] <= 0x7E ? bytes[i] : '.';
    }
    text[33 + 3 * bytes.size()] = '>';
    return cut ? text.substr(0, 85 + bytes.size()) + "( ...)|\n" : text;
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    SetSetting(NumericKey::LogEnabled, 1);
    RecordSource source(data, size);
    const bool out = source.Coin();
    const UNUM32 limit = source.Coin() ? source.Number() : 0xFFFFFFFF;
    const std::string label(source.Below(24), 'L');
    const auto count = static_cast<UNUM32>(source.Left());
    const UNUM8* const bytes = source.Bytes(count);

    const PhaseTime time(7, 8, 9, 10);
    PhaseText phase(time);
    const Arrow arrow = (out ? FromTarget : ToTarget).Deeper();
    DumpBuffer(DecoderContext{2, 2, phase}, arrow, label.c_str(), bytes, count, limit);
    const std::string text(phase.Text());

    const std::string indent = out ? "    <<< " : "    >>> ";
    std::string expected = count != 0 ? ""
                                      : std::string(time.StampText()) + indent +
                                            std::string(14 - std::min<std::size_t>(14, label.size()), ' ') +
                                            label + ": Size\t= <ZERO>\n";
    const UNUM32 listed = std::min(count, limit);
    for (UNUM32 offset = 0; offset < listed; offset += 16) {
        const UNUM32 run = std::min(16u, listed - offset);
        const std::string_view part(reinterpret_cast<const char*>(bytes) + offset, run);
        expected += std::string(time.StampText()) +
                    ExpectedRun(indent.c_str(), label, offset, part, offset + run == listed && limit < count);
    }
    if (!text.ends_with("\t\t\t\t...\n"))
        Require(text == expected, "the listing is whole", text);
    else
        Require(expected.starts_with(text.substr(0, text.size() - 8)) && text.size() > 14791 &&
                    text.size() < 15000,
                "the listing is cut at the end of the buffer", text);
    return 0;
}
