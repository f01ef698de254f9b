// Small copies and digits, without a call or a loop for each character.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace marvane {

/// Copies a text of one to two words, by two moves that may overlap.
template <class Word> void CopyByEnds(char* out, const char* text, std::size_t length)
{
    Word first;
    Word last;
    std::memcpy(&first, text, sizeof first);
    std::memcpy(&last, text + length - sizeof last, sizeof last);
    std::memcpy(out, &first, sizeof first);
    std::memcpy(out + length - sizeof last, &last, sizeof last);
}

/// Copies a text of any length. The commonest lengths are asked for first.
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

/// Copies a text. Returns the end of the copy.
inline char* PutText(char* out, std::string_view text)
{
    CopyText(out, text.data(), text.size());
    return out + text.size();
}

inline std::uint64_t BytesReversed(std::uint64_t value)
{
    value = (value & 0x00FF00FF00FF00FF) << 8 | (value >> 8 & 0x00FF00FF00FF00FF);
    value = (value & 0x0000FFFF0000FFFF) << 16 | (value >> 16 & 0x0000FFFF0000FFFF);
    return value << 32 | value >> 32;
}

/// The nibbles 0 to 15 in eight bytes as digits; `letters` is the distance of the letters from behind '9'.
inline std::uint64_t DigitsOfNibbles(std::uint64_t nibbles, unsigned letters)
{
    constexpr std::uint64_t ones = 0x0101010101010101;
    const std::uint64_t areLetters = (nibbles + ones * 6) >> 4 & ones;
    return nibbles + ones * '0' + areLetters * letters;
}

inline constexpr unsigned UpperCase = 'A' - '9' - 1;
inline constexpr unsigned LowerCase = 'a' - '9' - 1;

/// Writes the eight hexadecimal digits of a number.
inline void PutHex(char* out, std::uint32_t value, unsigned letters)
{
    std::uint64_t nibbles = value;
    nibbles = (nibbles << 16 | nibbles) & 0x0000FFFF0000FFFF;
    nibbles = (nibbles << 8 | nibbles) & 0x00FF00FF00FF00FF;
    nibbles = (nibbles << 4 | nibbles) & 0x0F0F0F0F0F0F0F0F;
    std::uint64_t digits = DigitsOfNibbles(nibbles, letters);
    if constexpr (std::endian::native == std::endian::little)
        digits = BytesReversed(digits);
    std::memcpy(out, &digits, sizeof digits);
}

/// Writes a number in decimal. Returns the end of its digits.
inline char* PutDecimal(char* out, std::uint32_t value)
{
    if (value < 10) {
        *out = static_cast<char>('0' + value);
        return out + 1;
    }
    char* end = out + 1;
    for (std::uint32_t rest = value; rest >= 10; rest /= 10)
        ++end;
    for (char* digit = end; digit != out; value /= 10)
        *--digit = static_cast<char>('0' + value % 10);
    return end;
}

/// Writes the two decimal digits of a number below 100.
inline void PutTwoDigits(char* out, unsigned value)
{
    out[0] = static_cast<char>('0' + value / 10);
    out[1] = static_cast<char>('0' + value % 10);
}

} // namespace marvane
