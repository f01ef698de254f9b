// The formatter against the C library's snprintf: directives and arguments that come from the bytes.
#include <algorithm>
#include <cinttypes>
#include <vector>

#include "logger/log_format.h"
#include "tests/fuzz/fuzz_target.h"

using namespace marvane;
using namespace marvane::testing;

namespace {

/// A directive for the formatter, and what snprintf makes of the same.
struct Piece
{
    std::string Directive;
    FormatArgument Argument;
    std::string Expected;
};

template <class... Values> std::string Printed(const std::string& format, Values... values)
{
    char text[2000];
    // The length counts, since a character may be NUL.
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

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    RecordSource source(data, size);
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
    // Exactly the room of a cut text, so that a byte too many is seen.
    const std::size_t room = source.Coin() ? source.Take<UNUM16>() % (expected.size() + 1) : expected.size();
    auto* const out = reinterpret_cast<char*>(source.Bytes(room));
    const char* const end = FormatText(out, out + room, format, arguments.data());
    Require(std::string_view(out, static_cast<std::size_t>(end - out)) == expected.substr(0, room),
            "the formatter prints what snprintf prints", format);
    return 0;
}
