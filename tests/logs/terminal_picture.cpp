#include "tests/logs/terminal_picture.h"

#include <algorithm>
#include <sstream>
#include <stdexcept>
#include <string_view>
#include <vector>

namespace marvane::testing {

namespace {

// Tenths of a pixel, so that no floating point is printed.
constexpr std::size_t CharacterWidth = 78, LineHeight = 180, Margin = 160;

struct Colour
{
    std::string_view Code;
    std::string_view Attributes;
};
constexpr Colour Colours[] = {
    {"\x1b[31m", " fill=\"#ff7b72\""},    {"\x1b[33m", " fill=\"#e3b341\""},
    {"\x1b[32m", " fill=\"#7ee787\""},    {"\x1b[2m", " fill=\"#9aa4af\""},
    {"\x1b[1m", " font-weight=\"bold\""}, {"\x1b[0m", ""},
};

/// Characters of one colour, at most one blank between two of them.
struct Run
{
    std::size_t Column;
    std::string_view Attributes;
    std::string Text;
};

const Colour& ColourAt(std::string_view text)
{
    for (const Colour& colour : Colours)
        if (text.starts_with(colour.Code))
            return colour;
    throw std::invalid_argument("an escape sequence that no picture shows: " +
                                std::string(text.substr(0, 8)));
}

std::vector<Run> RunsOf(std::string_view line)
{
    std::vector<Run> runs;
    std::string_view attributes;
    bool isOpen = false;
    for (std::size_t column = 0; !line.empty();) {
        if (line.front() == '\x1b') {
            const Colour& colour = ColourAt(line);
            attributes = colour.Attributes;
            isOpen = false;
            line.remove_prefix(colour.Code.size());
            continue;
        }
        const bool isGap =
            line.front() == ' ' && (!isOpen || line.size() == 1 || line[1] == ' ' || line[1] == '\x1b');
        if (!isGap && !isOpen)
            runs.push_back({column, attributes, {}});
        if (!isGap)
            runs.back().Text += line.front();
        isOpen = !isGap;
        ++column;
        line.remove_prefix(1);
    }
    return runs;
}

std::size_t WidthOf(const std::vector<Run>& runs)
{
    return runs.empty() ? 0 : runs.back().Column + runs.back().Text.size();
}

std::string Pixels(std::size_t tenths)
{
    return std::to_string(tenths / 10) + (tenths % 10 == 0 ? "" : "." + std::to_string(tenths % 10));
}

std::string Escaped(const std::string& text)
{
    std::string escaped;
    for (const char character : text)
        escaped += character == '&'   ? std::string("&amp;")
                   : character == '<' ? std::string("&lt;")
                   : character == '>' ? std::string("&gt;")
                                      : std::string(1, character);
    return escaped;
}

std::string Shown(const Run& run, std::size_t row)
{
    return "<text x=\"" + Pixels(Margin + run.Column * CharacterWidth) + "\" y=\"" +
           Pixels(Margin + 130 + row * LineHeight) + "\" textLength=\"" +
           Pixels(run.Text.size() * CharacterWidth) + "\"" + std::string(run.Attributes) + ">" +
           Escaped(run.Text) + "</text>\n";
}

} // namespace

std::string TerminalPicture(const std::string& command, const std::string& output)
{
    std::istringstream lines("\x1b[1m$ " + command + "\x1b[0m\n" + output);
    std::string body;
    std::size_t rows = 0, columns = 0;
    for (std::string line; std::getline(lines, line); ++rows) {
        const std::vector<Run> runs = RunsOf(line);
        columns = std::max(columns, WidthOf(runs));
        for (const Run& run : runs)
            body += Shown(run, rows);
    }
    const std::string width = Pixels(2 * Margin + columns * CharacterWidth),
                      height = Pixels(2 * Margin + rows * LineHeight);
    return "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" + width + "\" height=\"" + height +
           "\" viewBox=\"0 0 " + width + " " + height +
           "\" font-family=\"ui-monospace, Menlo, Consolas, 'DejaVu Sans Mono', monospace\" font-size=\"13\" "
           "fill=\"#e6edf3\">\n<title>" +
           Escaped(command) + "</title>\n<rect width=\"" + width + "\" height=\"" + height +
           "\" rx=\"8\" fill=\"#161b22\"/>\n" + body + "</svg>\n";
}

} // namespace marvane::testing
