#include "logger/log_format.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <iterator>

#include "logger/text_copy.h"
#include "platform/platform.h"

namespace marvane {

namespace {

struct Output
{
    char* Position;
    char* End;

    std::size_t Room() const { return static_cast<std::size_t>(End - Position); }
    void Put(const char* text, std::size_t length)
    {
        length = std::min(length, Room());
        CopyText(Position, text, length);
        Position += length;
    }
    void Fill(char filler, std::size_t count)
    {
        count = std::min(count, Room());
        std::memset(Position, filler, count);
        Position += count;
    }
};

void PutPadded(Output& out, const FormatPiece& piece, const char* text, std::size_t length)
{
    if (piece.Width <= length)
        return out.Put(text, length);
    const std::size_t padding = piece.Width - length;
    const bool left = (piece.Flags & FormatPiece::LeftAligned) != 0;
    if (!left)
        out.Fill(' ', padding);
    out.Put(text, length);
    if (left)
        out.Fill(' ', padding);
}

/// Length of a text up to its end or as far as it can be seen: it may have no end.
std::size_t VisibleLength(const Output& out, const FormatPiece& piece, const char* text)
{
    const std::size_t reach = std::max<std::size_t>(out.Room(), piece.Width);
    const void* const end = std::memchr(text, 0, reach);
    return end ? static_cast<std::size_t>(static_cast<const char*>(end) - text) : reach;
}

void PutText(Output& out, const FormatPiece& piece, const FormatArgument& argument)
{
    if (argument.Text == nullptr && argument.Length != 0)
        return PutPadded(out, piece, "(null)", 6);
    const bool known = argument.Length != FormatArgument::UnknownLength;
    PutPadded(out, piece, argument.Text, known ? argument.Length : VisibleLength(out, piece, argument.Text));
}

std::uint32_t Narrowed(const FormatPiece& piece, std::uint64_t number)
{
    const auto word = static_cast<std::uint32_t>(number);
    const bool isSigned = piece.Conversion == 'd';
    if (piece.Halves == 1)
        return isSigned ? static_cast<std::uint32_t>(static_cast<std::int16_t>(word)) : word & 0xFFFF;
    if (piece.Halves == 2)
        return isSigned ? static_cast<std::uint32_t>(static_cast<std::int8_t>(word)) : word & 0xFF;
    return word;
}

void PutNumber(Output& out, const FormatPiece& piece, const char* digits, std::size_t length, bool negative)
{
    if ((piece.Flags & (FormatPiece::ZeroPadded | FormatPiece::LeftAligned)) == FormatPiece::ZeroPadded) {
        if (negative)
            out.Put("-", 1);
        const std::size_t used = length + (negative ? 1 : 0);
        if (piece.Width > used)
            out.Fill('0', piece.Width - used);
        return out.Put(digits, length);
    }
    // In front of the digits there is room for the sign.
    PutPadded(out, piece, negative ? digits - 1 : digits, negative ? length + 1 : length);
}

void PutHexadecimal(Output& out, const FormatPiece& piece, const FormatArgument& argument)
{
    const std::uint32_t value = Narrowed(piece, argument.Number);
    char digits[8];
    PutHex(digits, value, piece.Conversion == 'x' ? LowerCase : UpperCase);
    const auto length = static_cast<std::size_t>(std::bit_width(value | 1) + 3) / 4;
    if (piece.Width <= sizeof digits && piece.Flags == FormatPiece::ZeroPadded) {
        const std::size_t shown = std::max<std::size_t>(length, piece.Width);
        return out.Put(std::end(digits) - shown, shown);
    }
    PutNumber(out, piece, std::end(digits) - length, length, false);
}

void PutDecimal(Output& out, const FormatPiece& piece, const FormatArgument& argument)
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
    PutNumber(out, piece, first, static_cast<std::size_t>(end - first), negative);
}

void PutPointer(Output& out, const FormatPiece& piece, const FormatArgument& argument)
{
    char text[platform::PointerTextSize];
    PutPadded(out, piece, text, platform::PointerText(argument.Pointer, text));
}

void PutArgument(Output& out, const FormatPiece& piece, const FormatArgument& argument)
{
    switch (piece.Conversion) {
    case 's':
        return PutText(out, piece, argument);
    case 'x':
    case 'X':
        return PutHexadecimal(out, piece, argument);
    case 'p':
        return PutPointer(out, piece, argument);
    case 'c': {
        const auto character = static_cast<char>(argument.Number);
        return PutPadded(out, piece, &character, 1);
    }
    default:
        return PutDecimal(out, piece, argument);
    }
}

} // namespace

char* FormatText(char* out, char* end, const FormattedText& text)
{
    Output output{out, end};
    const char* position = text.Format.data();
    for (std::size_t i = 0; i < text.Count; ++i) {
        const FormatPiece& piece = text.Pieces[i];
        output.Put(position, piece.Literal);
        position += piece.Literal + piece.Length;
        const FormatArgument& argument = text.Arguments[i];
        // What most directives are.
        if (piece.Conversion == 's' && piece.Width == 0 && argument.Text &&
            argument.Length != FormatArgument::UnknownLength)
            output.Put(argument.Text, argument.Length);
        else
            PutArgument(output, piece, argument);
    }
    output.Put(position, static_cast<std::size_t>(text.Format.end() - position));
    return output.Position;
}

char* FormatText(char* out, char* end, std::string_view format, const FormatArgument* arguments)
{
    Output output{out, end};
    while (!format.empty()) {
        const FormatPiece piece = NextPiece(format);
        output.Put(format.data(), piece.Literal);
        format.remove_prefix(static_cast<std::size_t>(piece.Literal + piece.Length));
        if (piece.Conversion != 0)
            PutArgument(output, piece, *arguments++);
    }
    return output.Position;
}

} // namespace marvane
