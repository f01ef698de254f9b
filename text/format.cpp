#include "text/format.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <iterator>
#include <span>

#include "platform/pointer_text.h"
#include "text/digits.h"
#include "text/text_copy.h"

namespace marvane {

namespace {

/// Where text is written, and where its place ends. Passed by value, so that it stays in registers.
struct Output
{
    char* Position;
    char* End;

    std::size_t Room() const { return static_cast<std::size_t>(End - Position); }
    [[nodiscard]] Output Put(const char* text, std::size_t length) const
    {
        if (length > Room())
            length = Room();
        CopyText(Position, text, length);
        return {Position + length, End};
    }
    [[nodiscard]] Output Fill(char filler, std::size_t count) const
    {
        count = std::min(count, Room());
        if (count != 0)
            std::memset(Position, filler, count);
        return {Position + count, End};
    }
};

Output PutPadded(Output out, const FormatConversion& conversion, const char* text, std::size_t length)
{
    if (conversion.Width <= length)
        return out.Put(text, length);
    const std::size_t padding = conversion.Width - length;
    if ((conversion.Flags & FormatConversion::LeftAligned) != 0)
        return out.Put(text, length).Fill(' ', padding);
    return out.Fill(' ', padding).Put(text, length);
}

template <class Value> Output FormatValueText(Output out, const FormatConversion& conversion, Value value)
{
    char text[Value::Most];
    return PutPadded(out, conversion, text, static_cast<std::size_t>(value.PutTo(text) - text));
}

Output FormatString(Output out, const FormatConversion& conversion, const FormatArgument& argument)
{
    if (argument.Length == FormatArgument::OfHandle)
        return FormatValueText(out, conversion, HandleText(static_cast<UNUM32>(argument.Number)));
    if (argument.Length == FormatArgument::OfUrid)
        return FormatValueText(out, conversion, UridText(static_cast<UNUM32>(argument.Number)));
    if (argument.Length != FormatArgument::UnknownLength)
        return PutPadded(out, conversion, argument.Text, argument.Length);
    const std::string_view text =
        VisibleText(argument.Text, std::max<std::size_t>(out.Room(), conversion.Width));
    return PutPadded(out, conversion, text.data(), text.size());
}

/// Adds sign and padding to digits. The character before the digits must be a minus sign if `negative`.
Output PutDigits(Output out, const FormatConversion& conversion, const char* digits, std::size_t length,
                 bool negative)
{
    const std::size_t signs = negative ? 1 : 0;
    constexpr unsigned alignment = FormatConversion::ZeroPadded | FormatConversion::LeftAligned;
    if ((conversion.Flags & alignment) != FormatConversion::ZeroPadded)
        return PutPadded(out, conversion, digits - signs, length + signs);
    const std::size_t used = length + signs;
    return out.Fill('-', signs)
        .Fill('0', conversion.Width > used ? conversion.Width - used : 0)
        .Put(digits, length);
}

Output FormatHexadecimal(Output out, const FormatConversion& conversion, const FormatArgument& argument)
{
    constexpr std::size_t most = 8;
    const std::uint32_t value = Narrowed(conversion, argument.Number);
    // Larger than necessary: GCC can't bound the number of digits that are copied and would warn.
    char digits[64];
    char* const end = std::end(digits);
    PutHex(end - most, value, conversion.Specifier == 'x' ? LowerCase : UpperCase);
    const auto length = static_cast<std::size_t>(std::bit_width(value | 1) + 3) / 4;
    if (conversion.Width <= most && conversion.Flags == FormatConversion::ZeroPadded) {
        const std::size_t shown = std::max<std::size_t>(length, conversion.Width);
        return out.Put(end - shown, shown);
    }
    return PutDigits(out, conversion, end - length, length, false);
}

Output FormatDecimal(Output out, const FormatConversion& conversion, const FormatArgument& argument)
{
    std::uint32_t value = Narrowed(conversion, argument.Number);
    const bool negative = conversion.Specifier == 'd' && (value & 0x80000000) != 0;
    if (negative)
        value = ~value + 1;
    char text[12] = "-";
    char* const digits = text + 1;
    return PutDigits(out, conversion, digits, static_cast<std::size_t>(PutDecimal(digits, value) - digits),
                     negative);
}

Output FormatPointer(Output out, const FormatConversion& conversion, const FormatArgument& argument)
{
    char text[platform::PointerTextSize];
    return PutPadded(out, conversion, text, platform::PointerText(argument.Pointer, text));
}

Output FormatCharacter(Output out, const FormatConversion& conversion, char character)
{
    return PutPadded(out, conversion, &character, 1);
}

Output FormatOne(Output out, const FormatConversion& conversion, const FormatArgument& argument)
{
    switch (conversion.Specifier) {
    case 's':
        return FormatString(out, conversion, argument);
    case 'x':
    case 'X':
        return FormatHexadecimal(out, conversion, argument);
    case 'p':
        return FormatPointer(out, conversion, argument);
    case 'c':
        return FormatCharacter(out, conversion, static_cast<char>(argument.Number));
    default:
        return FormatDecimal(out, conversion, argument);
    }
}

} // namespace

std::string_view VisibleText(const char* text, std::size_t room)
{
    if (!text)
        return "(null)";
    const void* const end = std::memchr(text, 0, room);
    return {text, end ? static_cast<std::size_t>(static_cast<const char*>(end) - text) : room};
}

char* FormatNumber(char* out, const FormatConversion& conversion, std::uint64_t number)
{
    constexpr std::size_t most = 256; // a width is one byte
    return FormatOne({out, out + most}, conversion, static_cast<std::uint32_t>(number)).Position;
}

char* FormatText(char* out, char* end, const FormattedText& text)
{
    Output output{out, end};
    const char* position = text.Format.data();
    const FormatArgument* argument = text.Arguments;
    for (const FormatConversion& conversion : std::span(text.Conversions, text.Count)) {
        output = output.Put(position, conversion.Literal);
        position += conversion.Literal + conversion.Length;
        output = FormatOne(output, conversion, *argument++);
    }
    return output.Put(position, static_cast<std::size_t>(text.Format.end() - position)).Position;
}

} // namespace marvane
