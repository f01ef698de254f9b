// Digits of numbers, written without a call and, where the count is fixed, without a loop.
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>

namespace marvane {

/// The bytes of a word in the other order. Compilers make one instruction of it.
inline std::uint64_t BytesReversed(std::uint64_t value)
{
    value = (value & 0x00FF00FF00FF00FF) << 8 | (value >> 8 & 0x00FF00FF00FF00FF);
    value = (value & 0x0000FFFF0000FFFF) << 16 | (value >> 16 & 0x0000FFFF0000FFFF);
    return value << 32 | value >> 32;
}

/// Distance of the letters from the character after '9'.
inline constexpr unsigned UpperCase = 'A' - '9' - 1;
inline constexpr unsigned LowerCase = 'a' - '9' - 1;

/// Eight nibbles, each in a byte of its own, as hexadecimal digits. `letters` is UpperCase or LowerCase.
inline std::uint64_t DigitsOfNibbles(std::uint64_t nibbles, unsigned letters)
{
    constexpr std::uint64_t ones = 0x0101010101010101;
    const std::uint64_t areLetters = (nibbles + ones * 6) >> 4 & ones;
    return nibbles + ones * '0' + areLetters * letters;
}

/// Writes the eight hexadecimal digits of a number, all at once: the nibbles are spread over the bytes of a
/// word.
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

/// Writes a number in decimal, 1 to 10 digits. Returns their end.
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
