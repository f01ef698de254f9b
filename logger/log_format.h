// The formatter of log text: printf's directives as far as the log uses them, checked against their
// arguments at compile time, the same text on every system.
//
// Directives: %s %c %p, and %d %u %x %X with the lengths hh, h and l (l counts 32 bits, as the values of
// the API have); flags "-" and "0", and a width.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>

namespace marvane {

/// One argument of a format, widened; which member counts is fixed by the directive.
struct FormatArgument
{
    static constexpr std::size_t UnknownLength = static_cast<std::size_t>(-1);

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
    else if constexpr (std::is_convertible_v<Plain, std::string_view>)
        return Kind::Text;
    else
        return Kind::Pointer;
}

// Not constexpr on purpose: reaching one of them while a format is checked stops the compilation.
void UnknownDirective();
void TooFewArguments();
void TooManyArguments();
void ArgumentDoesNotFitDirective();
void LiteralTooLong();

constexpr Kind WantedBy(char conversion)
{
    return conversion == 's' ? Kind::Text : conversion == 'p' ? Kind::Pointer : Kind::Number;
}

} // namespace format_check

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

/// A format literal that fits its arguments; anything else does not compile. It is taken apart by the
/// compiler, so that nothing of it is left to search when a line is written.
template <class... Arguments> class LogFormat
{
public:
    template <std::size_t Size> consteval LogFormat(const char (&format)[Size]) : text_(format, Size - 1)
    {
        constexpr std::array<format_check::Kind, sizeof...(Arguments) + 1> kinds = {
            format_check::KindOf<Arguments>()..., format_check::Kind::Number};
        std::string_view rest = text_;
        for (std::size_t i = 0;; ++i) {
            const FormatPiece piece = NextPiece(rest);
            if (piece.Conversion == 0) {
                if (i != sizeof...(Arguments))
                    format_check::TooManyArguments();
                if (piece.Literal != rest.size())
                    format_check::LiteralTooLong();
                return;
            }
            if (std::string_view("scpduxX").find(piece.Conversion) == std::string_view::npos)
                format_check::UnknownDirective();
            if (i == sizeof...(Arguments))
                format_check::TooFewArguments();
            if (kinds[i] != format_check::WantedBy(piece.Conversion))
                format_check::ArgumentDoesNotFitDirective();
            pieces_[i] = piece;
            const bool plain = piece.Conversion == 's' || piece.Conversion == 'u';
            isPlain_ = isPlain_ && plain && piece.Width == 0 && piece.Flags == 0 && piece.Halves == 0;
            rest.remove_prefix(static_cast<std::size_t>(piece.Literal + piece.Length));
        }
    }
    constexpr std::string_view Text() const { return text_; }
    const FormatPiece* Pieces() const { return pieces_.data(); }
    /// True if it has only texts and unsigned numbers as they are.
    constexpr bool IsPlain() const { return isPlain_; }

private:
    // No gaps between the members: clang 14 to 16 misplace what stands behind one when they emit the constant.
    std::string_view text_;
    std::array<FormatPiece, sizeof...(Arguments)> pieces_ = {};
    bool isPlain_ = true;
};

/// A format that is taken apart already, with its arguments.
struct FormattedText
{
    std::string_view Format;
    const FormatPiece* Pieces;
    const FormatArgument* Arguments;
    std::size_t Count; ///< of both
};

/// Formats into [out, end), cutting what does not fit. Returns the end of the text; writes no terminator.
/// A null text prints as "(null)".
char* FormatText(char* out, char* end, const FormattedText& text);

template <class... Arguments>
char* FormatText(char* out, char* end, const std::type_identity_t<LogFormat<Arguments...>>& format,
                 const Arguments&... arguments)
{
    const FormatArgument list[] = {FormatArgument(arguments)...};
    return FormatText(out, end, FormattedText{format.Text(), format.Pieces(), list, sizeof...(Arguments)});
}

/// The same for a format that is known only now.
char* FormatText(char* out, char* end, std::string_view format, const FormatArgument* arguments);

} // namespace marvane
