// What a command writes to: data on standard output, everything else on standard error.
#pragma once

#include <string>
#include <string_view>

namespace marvane::tool {

/// Thrown by Console::Write when the reader of the output is gone; main ends the program quietly.
struct OutputClosed
{
};

enum class ColourChoice
{
    Auto,
    Always,
    Never
};

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

class Console
{
public:
    explicit Console(ColourChoice choice = ColourChoice::Auto);
    ~Console();
    Console(const Console&) = delete;
    Console& operator=(const Console&) = delete;

    /// Adds to standard output, which is buffered: following commands call Flush when they begin to wait.
    void Write(std::string_view text);
    void Flush();

    /// A text in a colour, if colours are on; else the text alone.
    std::string Coloured(Colour colour, std::string_view text) const;
    bool HasColour() const { return colour_; }

    /// Columns to fill at most: 100, or the terminal's if it is wider.
    std::size_t Columns() const { return columns_; }

    /// Whether standard output is a terminal.
    bool IsTerminal() const { return terminal_; }

    /// One line on standard error, with the program's name before it.
    void Note(std::string_view line);

    /// A Note about something that went wrong (it names the file); the exit status becomes 2, the command
    /// goes on.
    void Complain(std::string_view line);
    bool HasComplained() const { return complained_; }

    /// From here on a pager shows standard output, if that is a terminal. Not for commands that follow.
    void UsePager();

private:
    std::string buffer_;
    std::size_t columns_;
    bool terminal_ = false;
    bool colour_ = false;
    bool complained_ = false;
    bool closed_ = false;
};

/// The value of --color.
ColourChoice ColourChoiceOf(std::string_view value);

} // namespace marvane::tool
