// Short copies without a call and without a loop.
//
// A log line is made of a dozen strings of 1 to 30 characters whose lengths are known at run time only.
// memcpy is a call there, with its own choice among copies for all sizes. Two moves that may overlap copy
// every length between one word and two, so few tests cover 1 to 32 characters. Together with the digits of
// text/digits.h and formats that are parsed at compile time this took a two-line call from 6,060 to 4,411
// instructions (docs/performance.md).
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace marvane {

/// Copies `length` characters, one to two words, by two moves that may overlap each other.
template <class Word> void CopyByEnds(char* out, const char* text, std::size_t length)
{
    Word first;
    Word last;
    std::memcpy(&first, text, sizeof first);
    std::memcpy(&last, text + length - sizeof last, sizeof last);
    std::memcpy(out, &first, sizeof first);
    std::memcpy(out + length - sizeof last, &last, sizeof last);
}

/// Copies `length` characters; the places must not overlap. Tests the most frequent lengths first.
inline void CopyText(char* out, const char* text, std::size_t length)
{
    struct TwoWords
    {
        std::uint64_t Word[2];
    };
    if (length >= 8) {
        if (length <= 16)
            CopyByEnds<std::uint64_t>(out, text, length);
        else if (length <= 32)
            CopyByEnds<TwoWords>(out, text, length);
        else
            std::memcpy(out, text, length);
    } else if (length >= 4)
        CopyByEnds<std::uint32_t>(out, text, length);
    else if (length >= 2)
        CopyByEnds<std::uint16_t>(out, text, length);
    else if (length == 1)
        *out = *text;
}

/// Copies a string. Returns the end of the copy.
inline char* PutText(char* out, std::string_view text)
{
    CopyText(out, text.data(), text.size());
    return out + text.size();
}

} // namespace marvane
