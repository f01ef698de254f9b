// Compiled for SSSE3, which the library itself does not require.
#include "bench/dump_ways.h"

#include <cstring>
#include <immintrin.h>

namespace marvane::bench {

namespace {

__m128i Shuffled(__m128i low, __m128i high, __m128i fromLow, __m128i fromHigh)
{
    return _mm_or_si128(_mm_shuffle_epi8(low, fromLow), _mm_shuffle_epi8(high, fromHigh));
}

__m128i Digits()
{
    return _mm_setr_epi8('0', '1', '2', '3', '4', '5', '6', '7', '8', '9', 'A', 'B', 'C', 'D', 'E', 'F');
}

/// The digit of the upper or of the lower half of each byte.
__m128i UpperDigits(__m128i bytes)
{
    return _mm_shuffle_epi8(Digits(), _mm_and_si128(_mm_srli_epi16(bytes, 4), _mm_set1_epi8(15)));
}

__m128i LowerDigits(__m128i bytes)
{
    return _mm_shuffle_epi8(Digits(), _mm_and_si128(bytes, _mm_set1_epi8(15)));
}

void PutOffset(char* place, std::size_t offset)
{
    const auto swapped = static_cast<long long>(__builtin_bswap32(static_cast<unsigned>(offset)));
    const __m128i bytes = _mm_cvtsi64_si128(swapped);
    _mm_storel_epi64(reinterpret_cast<__m128i*>(place),
                     _mm_unpacklo_epi8(UpperDigits(bytes), LowerDigits(bytes)));
}

/// 16 pairs with their blanks are 48 columns, written as three runs of 16. Of the 32 digits the first run
/// takes 0 to 10, the second 11 to 21, the third 22 to 31; -1 leaves a column for the blank.
void PutCells(char* place, __m128i data)
{
    constexpr char o = -1;
    const __m128i first = _mm_setr_epi8(0, 1, o, 2, 3, o, 4, 5, o, 6, 7, o, 8, 9, o, 10);
    const __m128i secondLow = _mm_setr_epi8(11, o, 12, 13, o, 14, 15, o, o, o, o, o, o, o, o, o);
    const __m128i secondHigh = _mm_setr_epi8(o, o, o, o, o, o, o, o, 0, 1, o, 2, 3, o, 4, 5);
    const __m128i third = _mm_setr_epi8(o, 6, 7, o, 8, 9, o, 10, 11, o, 12, 13, o, 14, 15, o);
    const __m128i none = _mm_set1_epi8(o);
    const __m128i firstBlank = _mm_setr_epi8(0, 0, 32, 0, 0, 32, 0, 0, 32, 0, 0, 32, 0, 0, 32, 0);
    const __m128i secondBlank = _mm_setr_epi8(0, 32, 0, 0, 32, 0, 0, 32, 0, 0, 32, 0, 0, 32, 0, 0);
    const __m128i thirdBlank = _mm_setr_epi8(32, 0, 0, 32, 0, 0, 32, 0, 0, 32, 0, 0, 32, 0, 0, '>');
    const __m128i upper = UpperDigits(data);
    const __m128i lower = LowerDigits(data);
    const __m128i low = _mm_unpacklo_epi8(upper, lower);
    const __m128i high = _mm_unpackhi_epi8(upper, lower);
    auto* const cells = reinterpret_cast<__m128i*>(place);
    _mm_storeu_si128(cells, _mm_or_si128(Shuffled(low, high, first, none), firstBlank));
    _mm_storeu_si128(cells + 1, _mm_or_si128(Shuffled(low, high, secondLow, secondHigh), secondBlank));
    _mm_storeu_si128(cells + 2, _mm_or_si128(Shuffled(low, high, none, third), thirdBlank));
}

void PutText(char* place, __m128i data)
{
    const __m128i printable =
        _mm_and_si128(_mm_cmpgt_epi8(data, _mm_set1_epi8(0x1F)), _mm_cmplt_epi8(data, _mm_set1_epi8(0x7F)));
    const __m128i text =
        _mm_or_si128(_mm_and_si128(printable, data), _mm_andnot_si128(printable, _mm_set1_epi8('.')));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(place), text);
}

} // namespace

std::size_t DumpBySimd(char* out, std::string_view stamp, const std::uint8_t* bytes, std::size_t lines)
{
    char line[DumpLineLength];
    PutDumpTemplate(line, stamp);
    for (std::size_t i = 0; i < lines; ++i, out += DumpLineLength) {
        std::memcpy(out, line, DumpLineLength);
        char* const columns = out + StampLength;
        const __m128i data = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes + i * 16));
        PutOffset(columns + 24, i * 16);
        PutCells(columns + 34, data);
        PutText(columns + 84, data);
    }
    return lines * DumpLineLength;
}

} // namespace marvane::bench
