// Texts written where their format is known: directive by directive, without a list of arguments, and without
// a look at the format when the text is written.
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
#include "text/format.h"
#include "text/text_copy.h"

// The pieces that a statement is made of.
namespace marvane::put_directive {

/// Most characters of a number without a width: ten digits and a sign.
inline constexpr std::size_t MostOfNumber = 11;

/// An argument as it is written. A text up to its terminator is looked at no further than `room` reaches: one
/// that is longer has that length.
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

/// How many characters a directive writes at most, what it overwrites behind its text included.
template <FormatPiece Piece, class Argument> std::size_t Limit(const Argument& argument)
{
    constexpr std::size_t width = Piece.Width;
    if constexpr (std::is_same_v<Argument, std::string_view>)
        return std::max(width, argument.size());
    else if constexpr (ValueText<Argument>)
        return std::max(width, Argument::Most);
    else if constexpr (Piece.Conversion == 'p')
        return std::max(width, platform::PointerTextSize);
    else
        return std::max(width, MostOfNumber);
}

/// Moves a text that stands at its place already to where its width has it. Returns the end.
template <FormatPiece Piece> char* Pad(char* text, std::size_t length)
{
    constexpr std::size_t width = Piece.Width;
    if (width <= length)
        return text + length;
    const std::size_t padding = width - length;
    const bool left = (Piece.Flags & FormatPiece::LeftAligned) != 0;
    if (!left)
        std::memmove(text + padding, text, length);
    std::memset(left ? text + length : text, ' ', padding);
    return text + width;
}

template <FormatPiece Piece, class Number> char* PutNumber(char* out, Number number)
{
    constexpr bool isHexadecimal = Piece.Conversion == 'x' || Piece.Conversion == 'X';
    constexpr bool isPlain = Piece.Width == 0 && Piece.Flags == 0;
    constexpr bool hasDigits = Piece.Flags == FormatPiece::ZeroPadded && Piece.Width <= 8;
    if constexpr (isHexadecimal && (isPlain || hasDigits)) {
        const std::uint32_t value = Narrowed(Piece, number);
        const auto needed = static_cast<unsigned>(std::bit_width(value | 1) + 3) / 4;
        const unsigned digits = std::max<unsigned>(needed, Piece.Width);
        PutHex(out, value << (8 - digits) * 4, Piece.Conversion == 'x' ? LowerCase : UpperCase);
        return out + digits;
    } else if constexpr (Piece.Conversion == 'u' && isPlain)
        return PutDecimal(out, Narrowed(Piece, number));
    else
        return PutNumber(out, Piece, number);
}

/// Writes one directive's text. Returns its end.
template <FormatPiece Piece, class Argument> char* Put(char* out, const Argument& argument)
{
    if constexpr (std::is_same_v<Argument, std::string_view>)
        return Pad<Piece>(out, static_cast<std::size_t>(PutText(out, argument) - out));
    else if constexpr (ValueText<Argument>)
        return Pad<Piece>(out, static_cast<std::size_t>(argument.PutTo(out) - out));
    else if constexpr (Piece.Conversion == 'p')
        return Pad<Piece>(out, platform::PointerText(FormatArgument(argument).Pointer, out));
    else
        return PutNumber<Piece>(out, FormatArgument(argument).Number);
}

template <class Format, std::size_t... Index, class... Shown>
std::size_t LimitOfAll(std::index_sequence<Index...>, const Shown&... shown)
{
    return (Format::Text.size() + ... + Limit<Format::Pieces[Index]>(shown));
}

template <class Format, std::size_t... Index, class... Shown>
char* PutAll(char* out, std::index_sequence<Index...>, const Shown&... shown)
{
    ((out = Put<Format::Pieces[Index]>(PutText(out, Format::LiteralAt(Index)), shown)), ...);
    return PutText(out, Format::LiteralAt(sizeof...(Index)));
}

template <class... Arguments> using List = std::array<FormatArgument, sizeof...(Arguments)>;

} // namespace marvane::put_directive

namespace marvane {

/// Formats into [out, end), cutting what does not fit. Returns the end of the text; writes no terminator, but
/// may leave something behind the text.
template <FormatLiteral Literal, class... Arguments>
requires FormatOf<LogFormat<Literal>, Arguments...>
char* FormatText(char* out, char* end, LogFormat<Literal> format, const Arguments&... arguments)
{
    using Format = LogFormat<Literal>;
    constexpr std::index_sequence_for<Arguments...> indices;
    const auto room = static_cast<std::size_t>(end - out);
    const auto put = [&](const auto&... shown) {
        const bool fits = put_directive::LimitOfAll<Format>(indices, shown...) <= room;
        return fits ? put_directive::PutAll<Format>(out, indices, shown...) : nullptr;
    };
    if (char* const reached = put(put_directive::Shown(arguments, room)...))
        return reached;
    const put_directive::List<Arguments...> list = {FormatArgument(arguments)...};
    return FormatText(out, end, FormattedText{format.Text, format.Pieces.data(), list.data(), list.size()});
}

} // namespace marvane
