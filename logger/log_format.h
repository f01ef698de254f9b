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

template <class... Arguments> consteval void Check(std::string_view format)
{
    constexpr std::size_t count = sizeof...(Arguments);
    constexpr std::array<Kind, count + 1> kinds = {KindOf<Arguments>()..., Kind::Number};
    std::size_t next = 0;
    for (std::size_t i = 0; i < format.size(); ++i) {
        if (format[i] != '%')
            continue;
        ++i;
        while (i < format.size() && (format[i] == '-' || (format[i] >= '0' && format[i] <= '9')))
            ++i;
        while (i < format.size() && (format[i] == 'h' || format[i] == 'l'))
            ++i;
        const char directive = i < format.size() ? format[i] : '\0';
        if (std::string_view("scpduxX").find(directive) == std::string_view::npos)
            UnknownDirective();
        const Kind wanted = directive == 's' ? Kind::Text : directive == 'p' ? Kind::Pointer : Kind::Number;
        if (next == count)
            TooFewArguments();
        if (kinds[next] != wanted)
            ArgumentDoesNotFitDirective();
        ++next;
    }
    if (next != count)
        TooManyArguments();
}

} // namespace format_check

/// A format literal that fits its arguments; anything else does not compile.
template <class... Arguments> class LogFormat
{
public:
    template <std::size_t Size> consteval LogFormat(const char (&format)[Size]) : text_(format, Size - 1)
    {
        format_check::Check<Arguments...>(text_);
    }
    constexpr std::string_view Text() const { return text_; }

private:
    std::string_view text_;
};

/// Formats into [out, end), cutting what does not fit. Returns the end of the text; writes no terminator.
/// A null text prints as "(null)".
char* FormatText(char* out, char* end, std::string_view format, const FormatArgument* arguments);

} // namespace marvane
