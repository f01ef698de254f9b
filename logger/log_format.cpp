#include "logger/log_format.h"

#include <algorithm>
#include <cstring>

#include "platform/platform.h"

namespace marvane {

namespace {

struct Directive
{
    bool LeftAligned = false;
    bool ZeroPadded = false;
    std::size_t Width = 0;
    int Halves = 0; ///< how many "h"
    char Conversion = 0;
};

struct Output
{
    char* Position;
    char* End;

    void Put(const char* text, std::size_t length)
    {
        length = std::min(length, static_cast<std::size_t>(End - Position));
        std::memcpy(Position, text, length);
        Position += length;
    }
    void Fill(char filler, std::size_t count)
    {
        count = std::min(count, static_cast<std::size_t>(End - Position));
        std::memset(Position, filler, count);
        Position += count;
    }
};

const char* Parse(const char* position, Directive& directive)
{
    for (;; ++position) {
        if (*position == '-')
            directive.LeftAligned = true;
        else if (*position == '0')
            directive.ZeroPadded = true;
        else
            break;
    }
    for (; *position >= '0' && *position <= '9'; ++position)
        directive.Width = directive.Width * 10 + static_cast<std::size_t>(*position - '0');
    for (; *position == 'h' || *position == 'l'; ++position)
        directive.Halves += *position == 'h';
    directive.Conversion = *position++;
    return position;
}

void PutPadded(Output& out, const Directive& directive, const char* text, std::size_t length)
{
    const std::size_t padding = directive.Width > length ? directive.Width - length : 0;
    if (!directive.LeftAligned)
        out.Fill(' ', padding);
    out.Put(text, length);
    if (directive.LeftAligned)
        out.Fill(' ', padding);
}

void PutText(Output& out, const Directive& directive, const FormatArgument& argument)
{
    if (argument.Text == nullptr && argument.Length != 0)
        return PutPadded(out, directive, "(null)", 6);
    std::size_t length = argument.Length;
    if (length == FormatArgument::UnknownLength) {
        // What lies behind the room and the width is not even looked at: a text may have no end in sight.
        const std::size_t reach = std::max(static_cast<std::size_t>(out.End - out.Position), directive.Width);
        const void* terminator = std::memchr(argument.Text, 0, reach);
        length = terminator ? static_cast<std::size_t>(static_cast<const char*>(terminator) - argument.Text)
                            : reach;
    }
    PutPadded(out, directive, argument.Text, length);
}

std::uint32_t Narrowed(const Directive& directive, std::uint64_t number)
{
    const auto word = static_cast<std::uint32_t>(number);
    const bool isSigned = directive.Conversion == 'd';
    if (directive.Halves == 1)
        return isSigned ? static_cast<std::uint32_t>(static_cast<std::int16_t>(word)) : word & 0xFFFF;
    if (directive.Halves == 2)
        return isSigned ? static_cast<std::uint32_t>(static_cast<std::int8_t>(word)) : word & 0xFF;
    return word;
}

void PutNumber(Output& out, const Directive& directive, const FormatArgument& argument)
{
    std::uint32_t value = Narrowed(directive, argument.Number);
    const bool negative = directive.Conversion == 'd' && (value & 0x80000000) != 0;
    if (negative)
        value = ~value + 1;
    char digits[16];
    char* const end = digits + sizeof digits;
    char* first = end;
    if (directive.Conversion == 'x' || directive.Conversion == 'X') {
        const char* alphabet = directive.Conversion == 'x' ? "0123456789abcdef" : "0123456789ABCDEF";
        do
            *--first = alphabet[value & 15];
        while ((value >>= 4) != 0);
    } else {
        do
            *--first = static_cast<char>('0' + value % 10);
        while ((value /= 10) != 0);
    }
    auto length = static_cast<std::size_t>(end - first);
    if (directive.ZeroPadded && !directive.LeftAligned) {
        if (negative)
            out.Put("-", 1);
        const std::size_t used = length + (negative ? 1 : 0);
        out.Fill('0', directive.Width > used ? directive.Width - used : 0);
        out.Put(first, length);
        return;
    }
    if (negative) {
        *--first = '-';
        ++length;
    }
    PutPadded(out, directive, first, length);
}

void PutPointer(Output& out, const Directive& directive, const FormatArgument& argument)
{
    char text[platform::PointerTextSize];
    PutPadded(out, directive, text, platform::PointerText(argument.Pointer, text));
}

void PutArgument(Output& out, const Directive& directive, const FormatArgument& argument)
{
    switch (directive.Conversion) {
    case 's':
        return PutText(out, directive, argument);
    case 'p':
        return PutPointer(out, directive, argument);
    case 'c': {
        const auto character = static_cast<char>(argument.Number);
        return PutPadded(out, directive, &character, 1);
    }
    default:
        return PutNumber(out, directive, argument);
    }
}

} // namespace

char* FormatText(char* out, char* end, std::string_view format, const FormatArgument* arguments)
{
    Output output{out, end};
    const char* position = format.data();
    const char* const formatEnd = position + format.size();
    while (position != formatEnd) {
        const void* found = std::memchr(position, '%', static_cast<std::size_t>(formatEnd - position));
        const char* const percent = found ? static_cast<const char*>(found) : formatEnd;
        output.Put(position, static_cast<std::size_t>(percent - position));
        if (percent == formatEnd)
            break;
        Directive directive;
        position = Parse(percent + 1, directive);
        PutArgument(output, directive, *arguments++);
    }
    return output.Position;
}

} // namespace marvane
