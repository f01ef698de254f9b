// The formatter compared with the C library's snprintf, with conversions and arguments chosen by the bytes;
// and the fast path for literal formats compared with the formatter.
#include <algorithm>
#include <cinttypes>
#include <vector>

#include "logger/log/log_buffer.h"
#include "tests/fuzz/fuzz_target.h"
#include "tests/support/run_time_format.h"

using namespace marvane;
using namespace marvane::testing;

namespace {

/// A conversion for the formatter, and the output of snprintf for the same one.
struct Piece
{
    std::string Directive;
    FormatArgument Argument;
    std::string Expected;
};

template <class... Values> std::string Printed(const std::string& format, Values... values)
{
    char text[2000];
    // The length is needed, since a character may be NUL.
    return {text, static_cast<std::size_t>(std::snprintf(text, sizeof text, format.c_str(), values...))};
}

Piece MakePiece(RecordSource& source)
{
    const std::string_view kinds = "scduxX";
    const char conversion = kinds[source.Below(6)];
    const bool isNumber = conversion != 's' && conversion != 'c';
    std::string flags = source.Coin() ? "-" : "";
    if (isNumber && source.Coin())
        flags += '0';
    const std::string width = source.Coin() ? std::to_string(1 + source.Below(40)) : "";
    if (conversion == 's') {
        const CHAR8* const text = source.Text();
        const std::string known = text ? std::string(text).substr(0, 900) : "(null)";
        std::string_view argument = text ? std::string_view(text).substr(0, 900) : std::string_view();
        const std::string directive = "%" + flags + width + "s";
        const bool asPointer = !text || std::strlen(text) <= 900;
        return {directive, asPointer ? FormatArgument(text) : FormatArgument(argument),
                Printed(directive, known.c_str())};
    }
    const auto number = source.Take<UNUM32>();
    const std::string length = isNumber ? std::array{"", "h", "hh", "l"}[source.Below(4)] : "";
    const std::string directive = "%" + flags + width + length + conversion;
    // Here a long has 32 bits, as the values of the API have.
    const std::string plain = "%" + flags + width + (length == "l" ? "" : length) + conversion;
    return {directive, FormatArgument(number), Printed(plain, number)};
}

template <class Format, class... Arguments>
void CheckStatement(RecordSource& source, Format format, const Arguments&... arguments)
{
    static LogBuffer direct;
    static LogBuffer formatted;
    const std::string filler(source.Coin() ? source.Take<UNUM16>() % LogBuffer::Capacity : 0, 'x');
    for (LogBuffer* const buffer : {&direct, &formatted}) {
        buffer->Clear();
        buffer->Append(filler);
    }
    if (direct.HasRoom()) {
        const literal_format::List<Arguments...> list = {FormatArgument(arguments)...};
        direct.Append(format, arguments...);
        formatted.Append({Format::Text, Format::Conversions.data(), list.data(), list.size()});
    }
    Require(direct.Text() == formatted.Text(), "a statement is what the formatter makes of it", format.Text);
}

void CheckStatements(RecordSource& source)
{
    const CHAR8* const text = source.Text();
    const auto number = source.Take<UNUM32>();
    const auto asSigned = static_cast<SNUM32>(number);
    const auto* const pointer = reinterpret_cast<const void*>(std::uintptr_t{number} << source.Below(33));
    switch (source.Below(8)) {
    case 0:
        return CheckStatement(source, "(%s, %s, %u)"_fmt, HandleText(number), UridText(number), number);
    case 1:
        return CheckStatement(source, "%-30s (id=%3u): %10d\t(0x%02X)"_fmt, text, number, asSigned, number);
    case 2:
        return CheckStatement(source, "%14s: %8p, %p, %c"_fmt, text, pointer, pointer,
                              static_cast<char>(number));
    case 3:
        return CheckStatement(source, "%s%s"_fmt, text, text);
    case 4:
        return CheckStatement(source, "%d.%02u.%03u.%04u"_fmt, asSigned, number, number, number);
    case 5:
        return CheckStatement(source, "0x%X 0x%04X 0x%08X"_fmt, number, asSigned, number);
    case 6:
        return CheckStatement(source, "%hhu %hhd %hu %hd %02hhX"_fmt, number, asSigned, number, asSigned,
                              number);
    default:
        return CheckStatement(source,
                              "nothing to fill in, and a line that is longer than two registers are"_fmt);
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    RecordSource source(data, size);
    if (source.Coin()) {
        CheckStatements(source);
        return 0;
    }
    std::string format;
    std::string expected;
    std::vector<FormatArgument> arguments;
    for (UNUM32 count = source.Below(6); count != 0; --count) {
        const Piece piece = MakePiece(source);
        const std::string literal(source.Below(4), static_cast<char>('a' + source.Below(20)));
        format += literal + piece.Directive;
        expected += literal + piece.Expected;
        arguments.push_back(piece.Argument);
    }
    // Exactly the size of the cut text, so that a sanitizer detects a byte too many.
    const std::size_t room = source.Coin() ? source.Take<UNUM16>() % (expected.size() + 1) : expected.size();
    auto* const out = reinterpret_cast<char*>(source.Bytes(room));
    const char* const end = FormatAtRunTime(out, out + room, format, arguments.data());
    Require(std::string_view(out, static_cast<std::size_t>(end - out)) == expected.substr(0, room),
            "the formatter prints what snprintf prints", format);
    return 0;
}
