// The formatter of log text: printf's directives as far as the log uses them, checked against their
// arguments at compile time, the same text on every system.
//
// Directives: %s %c %p, and %d %u %x %X with the lengths hh, h and l (l counts 32 bits, as the values of
// the API have); flags "-" and "0", and a width.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>

#include "text/value_text.h"

namespace marvane {

/// One argument of a format, widened; which member counts is fixed by the directive, and for a text by its
/// length.
struct FormatArgument
{
    /// In place of a length: a text up to its terminator, or a number that has a text.
    enum : std::size_t
    {
        OfUrid = static_cast<std::size_t>(-3),
        OfHandle,
        UnknownLength
    };

    union {
        std::uint64_t Number;
        const char* Text;
        const void* Pointer;
    };
    std::size_t Length = 0; ///< of Text, if known

    template <class T>
    requires std::is_integral_v<T>
    constexpr FormatArgument(T number) : Number(static_cast<std::uint64_t>(static_cast<std::int64_t>(number)))
    {
        static_assert(sizeof(T) <= 4, "values of the log have at most 32 bits");
    }
    constexpr FormatArgument(const char* text) : Text(text), Length(UnknownLength) {}
    constexpr FormatArgument(std::string_view text) : Text(text.data()), Length(text.size()) {}
    FormatArgument(const std::string& text) : Text(text.data()), Length(text.size()) {}
    constexpr FormatArgument(HandleText handle) : Number(handle.Value), Length(OfHandle) {}
    constexpr FormatArgument(UridText identifier) : Number(identifier.Value), Length(OfUrid) {}
    template <class T>
    requires std::is_pointer_v<T> &&
        (!std::is_same_v<std::remove_cv_t<std::remove_pointer_t<T>>, char>)constexpr FormatArgument(T pointer)
        : Pointer(Address(pointer))
    {
    }

private:
    template <class T> static const void* Address(T* pointer)
    {
        if constexpr (std::is_function_v<T>)
            return reinterpret_cast<const void*>(pointer);
        else
            return const_cast<const void*>(static_cast<const volatile void*>(pointer));
    }
};

/// One directive of a format, and how many characters stand in front of it.
struct FormatPiece
{
    enum Flag : std::uint8_t
    {
        LeftAligned = 1,
        ZeroPadded = 2,
    };

    std::uint8_t Literal = 0; ///< characters in front
    std::uint8_t Length = 0;  ///< of the directive itself, with its percent sign
    char Conversion = 0;
    std::uint8_t Flags = 0;
    std::uint8_t Width = 0;
    std::uint8_t Halves = 0; ///< how many "h"
};

/// The 32 bits of a number that a directive shows.
constexpr std::uint32_t Narrowed(const FormatPiece& piece, std::uint64_t number)
{
    const auto word = static_cast<std::uint32_t>(number);
    const bool isSigned = piece.Conversion == 'd';
    if (piece.Halves == 1)
        return isSigned ? static_cast<std::uint32_t>(static_cast<std::int16_t>(word)) : word & 0xFFFF;
    if (piece.Halves == 2)
        return isSigned ? static_cast<std::uint32_t>(static_cast<std::int8_t>(word)) : word & 0xFF;
    return word;
}

namespace format_check {

enum class Kind
{
    Number,
    Text,
    Pointer
};

template <class T> consteval Kind KindOf()
{
    using Plain = std::remove_cvref_t<T>;
    if constexpr (std::is_integral_v<Plain>)
        return Kind::Number;
    else if constexpr (std::is_convertible_v<Plain, std::string_view> || ValueText<Plain>)
        return Kind::Text;
    else
        return Kind::Pointer;
}

constexpr Kind KindWantedBy(char conversion)
{
    return conversion == 's' ? Kind::Text : conversion == 'p' ? Kind::Pointer : Kind::Number;
}

} // namespace format_check

// Not constexpr on purpose: reaching it while a format is taken apart stops the compilation.
void UnknownDirective();

/// The piece of the next directive of a format; without a directive its Conversion is 0 and its Literal is
/// the whole of the rest, cut at what fits.
constexpr FormatPiece NextPiece(std::string_view rest)
{
    FormatPiece piece;
    std::size_t at = 0;
    while (at < rest.size() && rest[at] != '%' && at < 255)
        ++at;
    piece.Literal = static_cast<std::uint8_t>(at);
    if (at == rest.size() || rest[at] != '%')
        return piece;
    const std::size_t start = at++;
    for (; at < rest.size() && (rest[at] == '-' || rest[at] == '0'); ++at)
        piece.Flags |= rest[at] == '-' ? FormatPiece::LeftAligned : FormatPiece::ZeroPadded;
    for (; at < rest.size() && rest[at] >= '0' && rest[at] <= '9'; ++at)
        piece.Width = static_cast<std::uint8_t>(piece.Width * 10 + (rest[at] - '0'));
    for (; at < rest.size() && (rest[at] == 'h' || rest[at] == 'l'); ++at)
        piece.Halves = static_cast<std::uint8_t>(piece.Halves + (rest[at] == 'h'));
    piece.Conversion = at < rest.size() ? rest[at] : '?';
    piece.Length = static_cast<std::uint8_t>(at + 1 - start);
    return piece;
}

/// How many directives a format has. Only for formats that are taken apart by the compiler.
constexpr std::size_t CountDirectives(std::string_view format)
{
    for (std::size_t count = 0;; ++count) {
        const FormatPiece piece = NextPiece(format);
        if (piece.Conversion == 0)
            return count;
        if (std::string_view("scpduxX").find(piece.Conversion) == std::string_view::npos)
            UnknownDirective();
        format.remove_prefix(static_cast<std::size_t>(piece.Literal + piece.Length));
    }
}

/// The characters of a string literal, as part of a type.
template <std::size_t Size> struct FormatLiteral
{
    consteval FormatLiteral(const char (&text)[Size]) { std::copy_n(text, Size, Text); }
    char Text[Size];
};

/// A literal with a line break after its last character.
template <std::size_t Size>
consteval FormatLiteral<Size + 1> WithLineBreak(const FormatLiteral<Size>& literal)
{
    char text[Size + 1] = {};
    std::copy_n(literal.Text, Size - 1, text);
    text[Size - 1] = '\n';
    return text;
}

/// A format literal, taken apart by the compiler: nothing of it is left to search when a line is written.
template <FormatLiteral Literal> struct LogFormat
{
    static constexpr std::string_view Text{Literal.Text, sizeof Literal.Text - 1};

    /// Its directives in order.
    static constexpr auto Pieces = [] {
        constexpr std::size_t count = CountDirectives(Text);
        std::array<FormatPiece, count> pieces;
        std::string_view rest = Text;
        for (FormatPiece& place : pieces) {
            const FormatPiece piece = NextPiece(rest);
            rest.remove_prefix(static_cast<std::size_t>(piece.Literal + piece.Length));
            place = piece;
        }
        return pieces;
    }();

    /// The characters in front of a directive; for the number of directives: those behind the last.
    static constexpr std::string_view LiteralAt(std::size_t index)
    {
        std::size_t start = 0;
        for (std::size_t i = 0; i < index; ++i)
            start += static_cast<std::size_t>(Pieces[i].Literal + Pieces[i].Length);
        return Text.substr(start, index < Pieces.size() ? Pieces[index].Literal : Text.size() - start);
    }
};

/// "..."_fmt is a format of the log.
template <FormatLiteral Literal> constexpr LogFormat<Literal> operator""_fmt()
{
    return {};
}

namespace format_check {

template <class... Arguments, std::size_t Count>
consteval bool Fits(const std::array<FormatPiece, Count>& pieces)
{
    if (Count != sizeof...(Arguments))
        return false;
    constexpr std::array<Kind, sizeof...(Arguments) + 1> kinds = {KindOf<Arguments>()..., Kind::Number};
    for (std::size_t i = 0; i < Count; ++i)
        if (KindWantedBy(pieces[i].Conversion) != kinds[i])
            return false;
    return true;
}

} // namespace format_check

/// True if a format has a directive of the right kind for each argument, and no others.
template <class Format, class... Arguments>
concept FormatOf = format_check::Fits<Arguments...>(Format::Pieces);

/// A format that is taken apart already, with its arguments.
struct FormattedText
{
    std::string_view Format;
    const FormatPiece* Pieces;
    const FormatArgument* Arguments;
    std::size_t Count; ///< of both
};

/// A string up to its NUL, or its first `room` characters if there is none among them. Null shows as
/// "(null)".
std::string_view VisibleText(const char* text, std::size_t room);

/// Writes the text of a number or character. Returns its end.
char* PutNumber(char* out, const FormatPiece& piece, std::uint64_t number);

/// Formats into [out, end), cutting what does not fit. Returns the end of the text; writes no terminator.
/// A null text prints as "(null)".
char* FormatText(char* out, char* end, const FormattedText& text);

} // namespace marvane
