// The formatter of log text: printf's conversions as far as the log uses them, with the same result on every
// system. "%8p" and "%lX" differ between C libraries, and a log must not.
//
// Conversions: %s %c %p, and %d %u %x %X with the lengths hh, h and l (l means 32 bits, like the values of
// the API); flags "-" and "0", and a width.
//
// A format is a type: "..."_fmt is parsed by the compiler, which also checks the kinds of the arguments. At
// run time nothing is left to parse, and the lengths of the parts between conversions are constants. That
// took PDUStartComPrimitive with 64 bytes from 11,255 to 7,897 instructions (benchmark row start/64). The
// formatter of this file, which takes a list of arguments, remains for text that may have to be cut;
// text/literal_format.h is the fast way.
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

/// One argument of a format, widened. The conversion says which member is valid, and for strings the length
/// does. Strings belong to the caller.
struct FormatArgument
{
    /// Special values of Length: a NUL-terminated string, or a number that is shown as a word or a handle.
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
    std::size_t Length = 0; ///< characters of Text, or one of the special values

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

/// One conversion of a format, and how many characters precede it.
struct FormatConversion
{
    enum Flag : std::uint8_t
    {
        LeftAligned = 1,
        ZeroPadded = 2,
    };

    std::uint8_t Literal = 0; ///< characters before it
    std::uint8_t Length = 0;  ///< its own characters, the percent sign included
    char Specifier = 0;       ///< the last one: 's', 'u' ...
    std::uint8_t Flags = 0;
    std::uint8_t Width = 0;
    std::uint8_t Halves = 0; ///< number of 'h'
};

/// The 32 bits of a number that a conversion shows, after narrowing by "h" and "hh".
constexpr std::uint32_t Narrowed(const FormatConversion& conversion, std::uint64_t number)
{
    const auto word = static_cast<std::uint32_t>(number);
    const bool isSigned = conversion.Specifier == 'd';
    if (conversion.Halves == 1)
        return isSigned ? static_cast<std::uint32_t>(static_cast<std::int16_t>(word)) : word & 0xFFFF;
    if (conversion.Halves == 2)
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

constexpr Kind KindOfSpecifier(char specifier)
{
    return specifier == 's' ? Kind::Text : specifier == 'p' ? Kind::Pointer : Kind::Number;
}

} // namespace format_check

/// Deliberately not constexpr: evaluating it at compile time turns an unknown conversion into an error.
void UnknownConversion();

/// The next conversion of a format. If there is none, its Specifier is 0 and its Literal is the length of the
/// rest, at most 255.
constexpr FormatConversion NextConversion(std::string_view rest)
{
    FormatConversion conversion;
    std::size_t at = 0;
    while (at < rest.size() && rest[at] != '%' && at < 255)
        ++at;
    conversion.Literal = static_cast<std::uint8_t>(at);
    if (at == rest.size() || rest[at] != '%')
        return conversion;
    const std::size_t start = at++;
    for (; at < rest.size() && (rest[at] == '-' || rest[at] == '0'); ++at)
        conversion.Flags |= rest[at] == '-' ? FormatConversion::LeftAligned : FormatConversion::ZeroPadded;
    for (; at < rest.size() && rest[at] >= '0' && rest[at] <= '9'; ++at)
        conversion.Width = static_cast<std::uint8_t>(conversion.Width * 10 + (rest[at] - '0'));
    for (; at < rest.size() && (rest[at] == 'h' || rest[at] == 'l'); ++at)
        conversion.Halves = static_cast<std::uint8_t>(conversion.Halves + (rest[at] == 'h'));
    conversion.Specifier = at < rest.size() ? rest[at] : '?';
    conversion.Length = static_cast<std::uint8_t>(at + 1 - start);
    return conversion;
}

/// Number of conversions of a format. For use at compile time, where an unknown one is an error.
constexpr std::size_t CountConversions(std::string_view format)
{
    for (std::size_t count = 0;; ++count) {
        const FormatConversion conversion = NextConversion(format);
        if (conversion.Specifier == 0)
            return count;
        if (std::string_view("scpduxX").find(conversion.Specifier) == std::string_view::npos)
            UnknownConversion();
        format.remove_prefix(static_cast<std::size_t>(conversion.Literal + conversion.Length));
    }
}

/// The characters of a string literal, usable as a template argument.
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

/// A format as a type, parsed at compile time.
template <FormatLiteral Literal> struct LogFormat
{
    static constexpr std::string_view Text{Literal.Text, sizeof Literal.Text - 1};

    /// Its conversions in order.
    static constexpr auto Conversions = [] {
        constexpr std::size_t count = CountConversions(Text);
        std::array<FormatConversion, count> conversions;
        std::string_view rest = Text;
        for (FormatConversion& place : conversions) {
            const FormatConversion conversion = NextConversion(rest);
            rest.remove_prefix(static_cast<std::size_t>(conversion.Literal + conversion.Length));
            place = conversion;
        }
        return conversions;
    }();

    /// The characters before a conversion; with the number of conversions as index, those after the last one.
    static constexpr std::string_view LiteralAt(std::size_t index)
    {
        std::size_t start = 0;
        for (std::size_t i = 0; i < index; ++i)
            start += static_cast<std::size_t>(Conversions[i].Literal + Conversions[i].Length);
        return Text.substr(start,
                           index < Conversions.size() ? Conversions[index].Literal : Text.size() - start);
    }
};

/// "..."_fmt is the format of that text.
template <FormatLiteral Literal> constexpr LogFormat<Literal> operator""_fmt()
{
    return {};
}

namespace format_check {

template <class... Arguments, std::size_t Count>
consteval bool Fits(const std::array<FormatConversion, Count>& conversions)
{
    if (Count != sizeof...(Arguments))
        return false;
    constexpr std::array<Kind, sizeof...(Arguments) + 1> kinds = {KindOf<Arguments>()..., Kind::Number};
    for (std::size_t i = 0; i < Count; ++i)
        if (KindOfSpecifier(conversions[i].Specifier) != kinds[i])
            return false;
    return true;
}

} // namespace format_check

/// True if a format has one conversion of the right kind for each argument.
template <class Format, class... Arguments>
concept FormatOf = format_check::Fits<Arguments...>(Format::Conversions);

/// A parsed format with its arguments, whatever their number.
struct FormattedText
{
    std::string_view Format;
    const FormatConversion* Conversions;
    const FormatArgument* Arguments;
    std::size_t Count; ///< of both
};

/// A string up to its NUL, or its first `room` characters if there is none among them. Null shows as
/// "(null)".
std::string_view VisibleText(const char* text, std::size_t room);

/// Writes a number or a character by its conversion, at most 255 characters. Returns the end.
char* FormatNumber(char* out, const FormatConversion& conversion, std::uint64_t number);

/// Formats into [out, end), cutting what does not fit. Returns the end of the text; writes no NUL. A null
/// string prints as "(null)".
char* FormatText(char* out, char* end, const FormattedText& text);

} // namespace marvane
