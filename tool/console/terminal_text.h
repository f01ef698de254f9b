// What may go to a terminal: a log, a configuration or a file name must not be able to control it.
#pragma once

#include <string>
#include <string_view>

namespace marvane::tool {

/// The colours in use: plain ASCII marks carry the meaning, colour only underlines it.
enum class Colour
{
    Plain,
    Red,
    Yellow,
    Green,
    Dim,
    Bold
};

/// The escape sequence that begins a colour, and the one that ends every colour.
std::string_view CodeOf(Colour colour);
inline constexpr std::string_view EndOfColour = "\x1b[0m";

/// The text with '?' for control characters and for what is no UTF-8. Line feeds, tabs and the escape
/// sequences of the colours above stay: they do no harm, whoever wrote them.
std::string TerminalText(std::string_view text);

} // namespace marvane::tool
