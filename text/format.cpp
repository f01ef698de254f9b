#include "text/format.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <iterator>
#include <span>

#include "platform/pointer_text.h"
#include "text/text_copy.h"

namespace marvane {

namespace {

/// Where text is put, and where its place ends. Handed on by value.
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

Output PutPadded(Output out, const FormatPiece& piece, const char* text, std::size_t length)
{
    if (piece.Width <= length)
        return out.Put(text, length);
    const std::size_t padding = piece.Width - length;
    if ((piece.Flags & FormatPiece::LeftAligned) != 0)
        return out.Put(text, length).Fill(' ', padding);
    return out.Fill(' ', padding).Put(text, length);
}

template <class Value> Output PutValueText(Output out, const FormatPiece& piece, Value value)
{
    char text[Value::Most];
    return PutPadded(out, piece, text, static_cast<std::size_t>(value.PutTo(text) - text));
}

Output PutTextArgument(Output out, const FormatPiece& piece, const FormatArgument& argument)
{
    if (argument.Length == FormatArgument::OfHandle)
        return PutValueText(out, piece, HandleText(static_cast<UNUM32>(argument.Number)));
    if (argument.Length == FormatArgument::OfUrid)
        return PutValueText(out, piece, UridText(static_cast<UNUM32>(argument.Number)));
    if (argument.Length != FormatArgument::UnknownLength)
        return PutPadded(out, piece, argument.Text, argument.Length);
    const std::string_view text = VisibleText(argument.Text, std::max<std::size_t>(out.Room(), piece.Width));
    return PutPadded(out, piece, text.data(), text.size());
}

/// In front of the digits there is room for the sign.
Output PutNumber(Output out, const FormatPiece& piece, const char* digits, std::size_t length, bool negative)
{
    const std::size_t signs = negative ? 1 : 0;
    if ((piece.Flags & (FormatPiece::ZeroPadded | FormatPiece::LeftAligned)) != FormatPiece::ZeroPadded)
        return PutPadded(out, piece, digits - signs, length + signs);
    const std::size_t used = length + signs;
    return out.Put("-", signs).Fill('0', piece.Width > used ? piece.Width - used : 0).Put(digits, length);
}

Output PutHexadecimal(Output out, const FormatPiece& piece, const FormatArgument& argument)
{
    constexpr std::size_t most = 8;
    const std::uint32_t value = Narrowed(piece, argument.Number);
    // Larger than need be: a compiler that can't tell how many digits are copied would take it for too small.
    char digits[64];
    char* const end = std::end(digits);
    PutHex(end - most, value, piece.Conversion == 'x' ? LowerCase : UpperCase);
    const auto length = static_cast<std::size_t>(std::bit_width(value | 1) + 3) / 4;
    if (piece.Width <= most && piece.Flags == FormatPiece::ZeroPadded) {
        const std::size_t shown = std::max<std::size_t>(length, piece.Width);
        return out.Put(end - shown, shown);
    }
    return PutNumber(out, piece, end - length, length, false);
}

Output PutDecimal(Output out, const FormatPiece& piece, const FormatArgument& argument)
{
    std::uint32_t value = Narrowed(piece, argument.Number);
    const bool negative = piece.Conversion == 'd' && (value & 0x80000000) != 0;
    if (negative)
        value = ~value + 1;
    char digits[12];
    char* const end = std::end(digits);
    char* first = end;
    for (; value >= 10; value /= 10)
        *--first = static_cast<char>('0' + value % 10);
    *--first = static_cast<char>('0' + value);
    first[-1] = '-';
    return PutNumber(out, piece, first, static_cast<std::size_t>(end - first), negative);
}

Output PutPointer(Output out, const FormatPiece& piece, const FormatArgument& argument)
{
    char text[platform::PointerTextSize];
    return PutPadded(out, piece, text, platform::PointerText(argument.Pointer, text));
}

Output PutCharacter(Output out, const FormatPiece& piece, char character)
{
    return PutPadded(out, piece, &character, 1);
}

Output PutArgument(Output out, const FormatPiece& piece, const FormatArgument& argument)
{
    switch (piece.Conversion) {
    case 's':
        return PutTextArgument(out, piece, argument);
    case 'x':
    case 'X':
        return PutHexadecimal(out, piece, argument);
    case 'p':
        return PutPointer(out, piece, argument);
    case 'c':
        return PutCharacter(out, piece, static_cast<char>(argument.Number));
    default:
        return PutDecimal(out, piece, argument);
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

char* PutNumber(char* out, const FormatPiece& piece, std::uint64_t number)
{
    constexpr std::size_t most = 256; // a width has no more
    return PutArgument({out, out + most}, piece, static_cast<std::uint32_t>(number)).Position;
}

char* FormatText(char* out, char* end, const FormattedText& text)
{
    Output output{out, end};
    const char* position = text.Format.data();
    const FormatArgument* argument = text.Arguments;
    for (const FormatPiece& piece : std::span(text.Pieces, text.Count)) {
        output = output.Put(position, piece.Literal);
        position += piece.Literal + piece.Length;
        output = PutArgument(output, piece, *argument++);
    }
    return output.Put(position, static_cast<std::size_t>(text.Format.end() - position)).Position;
}

} // namespace marvane
