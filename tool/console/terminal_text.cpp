#include "tool/console/terminal_text.h"

#include <algorithm>

#include "tool/console/row_text.h"

namespace marvane::tool {

namespace {

constexpr std::string_view Codes[] = {"", "\x1b[31m", "\x1b[33m", "\x1b[32m", "\x1b[2m", "\x1b[1m"};

/// The bytes of a colour's escape sequence at the beginning of a text; 0 if there is none.
std::size_t ColourLength(std::string_view text)
{
    if (text.starts_with(EndOfColour))
        return EndOfColour.size();
    const auto begins = [&](std::string_view code) { return !code.empty() && text.starts_with(code); };
    const auto code = std::ranges::find_if(Codes, begins);
    return code == std::end(Codes) ? 0 : code->size();
}

/// The bytes at the beginning of a text, which is not empty, that may go to a terminal together; 0 if not
/// even one may.
std::size_t HarmlessLength(std::string_view text)
{
    if (text.front() == '\n' || text.front() == '\t')
        return 1;
    return IsControl(text) ? ColourLength(text) : Utf8Length(text);
}

} // namespace

std::string_view CodeOf(Colour colour)
{
    return Codes[static_cast<std::size_t>(colour)];
}

std::string TerminalText(std::string_view text)
{
    std::string harmless;
    while (!text.empty()) {
        const std::size_t length = HarmlessLength(text);
        harmless.append(length == 0 ? "?" : text.substr(0, length));
        // A control character of two bytes is one character.
        text.remove_prefix(length == 0 ? std::max<std::size_t>(Utf8Length(text), 1) : length);
    }
    return harmless;
}

} // namespace marvane::tool
