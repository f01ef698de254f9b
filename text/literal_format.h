// The fast path for literal formats: each conversion is expanded at compile time.
//
// The most that a statement can need is computed first (LimitOfAll), then every conversion is written
// straight to its place (PutAll), without a list of arguments and without looking at the format. A conversion
// may overwrite bytes after its own text, within the limit: that lets it use whole words. A two-line call
// went from 1,280 to 1,069 instructions by this and by finding the owner of the lock without a call.
// FormatText in text/format.cpp is the general path, used near the end of a buffer, where text may be cut;
// the fuzz target "formatter" and the test beside this file compare the two.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "platform/pointer_text.h"
#include "text/digits.h"
#include "text/format.h"
#include "text/text_copy.h"

namespace marvane::literal_format {

/// Most characters of a number without a width: ten digits and a sign.
inline constexpr std::size_t MostOfNumber = 11;

/// An argument as it will be written. Scans at most `room` bytes of a string for its NUL; a longer one counts
/// as `room` bytes.
inline std::string_view Shown(const char* text, std::size_t room)
{
    return VisibleText(text, room);
}
inline std::string_view Shown(std::string_view text, std::size_t)
{
    return text;
}
inline std::string_view Shown(const std::string& text, std::size_t)
{
    return text;
}
template <class Value>
requires(!std::is_convertible_v<Value, std::string_view>) Value Shown(Value value, std::size_t)
{
    return value;
}

/// The most characters that a conversion writes, including what it overwrites after its text.
template <FormatConversion Conversion, class Argument> std::size_t Limit(const Argument& argument)
{
    constexpr std::size_t width = Conversion.Width;
    if constexpr (std::is_same_v<Argument, std::string_view>)
        return std::max(width, argument.size());
    else if constexpr (ValueText<Argument>)
        return std::max(width, Argument::Most);
    else if constexpr (Conversion.Specifier == 'p')
        return std::max(width, platform::PointerTextSize);
    else
        return std::max(width, MostOfNumber);
}

/// Pads a text of `length` characters, already written at `text`, to its width. Returns the end.
template <FormatConversion Conversion> char* Pad(char* text, std::size_t length)
{
    constexpr std::size_t width = Conversion.Width;
    if (width <= length)
        return text + length;
    const std::size_t padding = width - length;
    const bool left = (Conversion.Flags & FormatConversion::LeftAligned) != 0;
    if (!left)
        std::memmove(text + padding, text, length);
    std::memset(left ? text + length : text, ' ', padding);
    return text + width;
}

/// Writes a number. The frequent conversions are expanded here; widths of decimals are not among them.
template <FormatConversion Conversion, class Number> char* PutNumber(char* out, Number number)
{
    constexpr bool isHexadecimal = Conversion.Specifier == 'x' || Conversion.Specifier == 'X';
    constexpr bool isPlain = Conversion.Width == 0 && Conversion.Flags == 0;
    constexpr bool hasDigits = Conversion.Flags == FormatConversion::ZeroPadded && Conversion.Width <= 8;
    if constexpr (isHexadecimal && (isPlain || hasDigits)) {
        const std::uint32_t value = Narrowed(Conversion, number);
        const auto needed = static_cast<unsigned>(std::bit_width(value | 1) + 3) / 4;
        const unsigned digits = std::max<unsigned>(needed, Conversion.Width);
        PutHex(out, value << (8 - digits) * 4, Conversion.Specifier == 'x' ? LowerCase : UpperCase);
        return out + digits;
    } else if constexpr (Conversion.Specifier == 'u' && isPlain)
        return PutDecimal(out, Narrowed(Conversion, number));
    else
        return FormatNumber(out, Conversion, number);
}

/// Writes one conversion. Returns its end.
template <FormatConversion Conversion, class Argument> char* Put(char* out, const Argument& argument)
{
    if constexpr (std::is_same_v<Argument, std::string_view>)
        return Pad<Conversion>(out, static_cast<std::size_t>(PutText(out, argument) - out));
    else if constexpr (ValueText<Argument>)
        return Pad<Conversion>(out, static_cast<std::size_t>(argument.PutTo(out) - out));
    else if constexpr (Conversion.Specifier == 'p')
        return Pad<Conversion>(out, platform::PointerText(FormatArgument(argument).Pointer, out));
    else
        return PutNumber<Conversion>(out, FormatArgument(argument).Number);
}

/// The most characters that a whole statement writes.
template <class Format, std::size_t... Index, class... Shown>
std::size_t LimitOfAll(std::index_sequence<Index...>, const Shown&... shown)
{
    return (Format::Text.size() + ... + Limit<Format::Conversions[Index]>(shown));
}

/// Writes a whole statement: literal, conversion, literal ... Returns its end.
template <class Format, std::size_t... Index, class... Shown>
char* PutAll(char* out, std::index_sequence<Index...>, const Shown&... shown)
{
    ((out = Put<Format::Conversions[Index]>(PutText(out, Format::LiteralAt(Index)), shown)), ...);
    return PutText(out, Format::LiteralAt(sizeof...(Index)));
}

/// Arguments for the general path.
template <class... Arguments> using List = std::array<FormatArgument, sizeof...(Arguments)>;

} // namespace marvane::literal_format

namespace marvane {

/// Formats into [out, end), cutting what does not fit. Returns the end of the text. Writes no NUL, but may
/// overwrite bytes after the text.
template <FormatLiteral Literal, class... Arguments>
requires FormatOf<LogFormat<Literal>, Arguments...>
char* FormatText(char* out, char* end, LogFormat<Literal> format, const Arguments&... arguments)
{
    using Format = LogFormat<Literal>;
    constexpr std::index_sequence_for<Arguments...> indices;
    const auto room = static_cast<std::size_t>(end - out);
    const auto put = [&](const auto&... shown) {
        const bool fits = literal_format::LimitOfAll<Format>(indices, shown...) <= room;
        return fits ? literal_format::PutAll<Format>(out, indices, shown...) : nullptr;
    };
    if (char* const reached = put(literal_format::Shown(arguments, room)...))
        return reached;
    const literal_format::List<Arguments...> list = {FormatArgument(arguments)...};
    return FormatText(out, end,
                      FormattedText{format.Text, format.Conversions.data(), list.data(), list.size()});
}

} // namespace marvane
