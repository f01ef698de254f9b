// The dump of a payload: Marvane's decoder, and plain dumps of the same columns.
#include <array>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

#include "bench/dump_ways.h"
#include "bench/rows.h"
#include "logger/decode/decode.h"

namespace marvane::bench {

namespace {

constexpr const char* Stamp = "{14:03:07.250 - 00001A2C} ";
constexpr std::size_t MostBytes = 1024;

const std::array<UNUM8, MostBytes>& Payload()
{
    static const auto payload = [] {
        std::array<UNUM8, MostBytes> bytes;
        for (std::size_t i = 0; i < bytes.size(); ++i)
            bytes[i] = static_cast<UNUM8>(i * 7 + 0x22);
        return bytes;
    }();
    return payload;
}

void DumpByMarvane(UNUM32 size, std::size_t times)
{
    static PhaseText text(PhaseTime(14, 3, 7, 250));
    const DecoderContext context{2, 2, text};
    for (std::size_t i = 0; i < times; ++i) {
        text.Clear();
        DumpBuffer(context, ToTarget, "pCoPData", Payload().data(), size, size);
    }
}

template <DumpLines Dump> void DumpBare(std::size_t size, std::size_t times)
{
    static std::array<char, MostBytes / 16 * DumpLineLength> text;
    for (std::size_t i = 0; i < times; ++i)
        Dump(text.data(), Stamp, Payload().data(), size / 16);
}

} // namespace

void AddDumpRows(std::vector<Row>& rows)
{
    for (const UNUM32 size : {64u, 1024u}) {
        const std::string family = "dump/" + std::to_string(size);
        rows.push_back({family, "marvane", [] { SetSetting(NumericKey::LogEnabled, 1); },
                        [=](std::size_t times) { DumpByMarvane(size, times); },
                        [] { SetSetting(NumericKey::LogEnabled, 0); }});
        rows.push_back(
            {family, "table", [] {}, [=](std::size_t times) { DumpBare<DumpByTable>(size, times); }, [] {}});
#ifdef MARVANE_BENCH_SIMD
        rows.push_back(
            {family, "simd", [] {}, [=](std::size_t times) { DumpBare<DumpBySimd>(size, times); }, [] {}});
#endif
    }
}

} // namespace marvane::bench
