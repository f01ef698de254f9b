// Reading numbers of a fixed width back from text.
//
// Log lines have their numbers in fixed columns. These readers look at exactly `Count` characters, test for
// bad ones once at the end instead of after each, and never allocate: reading a log at several hundred MB/s
// depends on them.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace marvane {

namespace read_digits_detail {

/// Set in the value of a character that is no digit.
inline constexpr std::uint8_t NoDigit = 0x80;

constexpr std::array<std::uint8_t, 256> HexValues()
{
    std::array<std::uint8_t, 256> values = {};
    values.fill(NoDigit);
    for (std::size_t i = 0; i < 10; ++i)
        values['0' + i] = static_cast<std::uint8_t>(i);
    for (std::size_t i = 0; i < 6; ++i)
        values['A' + i] = static_cast<std::uint8_t>(10 + i);
    return values;
}

inline constexpr auto HexValue = HexValues();

} // namespace read_digits_detail

/// Reads `Count` upper-case hexadecimal digits. False, with `value` undefined, if one of the characters is
/// something else.
template <std::size_t Count, class Number> bool ReadHex(const char* text, Number& value)
{
    static_assert(Count <= 2 * sizeof(Number));
    std::uint32_t number = 0;
    unsigned seen = 0;
    for (std::size_t i = 0; i < Count; ++i) {
        const std::uint8_t digit = read_digits_detail::HexValue[static_cast<unsigned char>(text[i])];
        seen |= digit;
        number = number << 4 | (digit & 0xF);
    }
    value = static_cast<Number>(number);
    return (seen & read_digits_detail::NoDigit) == 0;
}

/// Reads `Count` decimal digits. False, with `value` undefined, if one of the characters is something else.
template <std::size_t Count> bool ReadDecimal(const char* text, std::uint16_t& value)
{
    static_assert(Count <= 4);
    unsigned number = 0;
    bool good = true;
    for (std::size_t i = 0; i < Count; ++i) {
        const unsigned digit = static_cast<unsigned char>(text[i]) - unsigned{'0'};
        good &= digit <= 9;
        number = number * 10 + digit;
    }
    value = static_cast<std::uint16_t>(number);
    return good;
}

} // namespace marvane
