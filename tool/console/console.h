// What a command writes to: data on standard output, everything else on standard error.
#pragma once

#include <string>
#include <string_view>

#include "tool/console/terminal_text.h"

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

class Console
{
public:
    explicit Console(ColourChoice choice = ColourChoice::Auto, bool mayPage = true);
    ~Console();
    Console(const Console&) = delete;
    Console& operator=(const Console&) = delete;

    /// Adds to standard output, which is buffered: following commands call Flush when they begin to wait. On
    /// a terminal, and in the pager, the text cannot control it (TerminalText); elsewhere its bytes stay as
    /// they are.
    void Write(std::string_view text);
    void Flush();

    /// From here on looks for a text in the lines of standard output, colours apart. After the first line
    /// that holds it nothing more is written.
    void WatchFor(std::string text);
    bool HasMatched() const { return matched_; }

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

    /// From here on a pager shows standard output, if that is a terminal and the user
    /// wants one. Not for commands that follow.
    void UsePager();

private:
    std::string_view Watch(std::string_view text);

    std::string buffer_;
    std::string watched_; ///< empty: nothing is looked for
    std::string line_;    ///< the line that is being written, while something is looked for
    std::size_t columns_ = 0;
    bool terminal_ = false;
    bool mayPage_ = true;
    bool colour_ = false;
    bool complained_ = false;
    bool closed_ = false;
    bool matched_ = false;
};

/// The value of --color.
ColourChoice ColourChoiceOf(std::string_view value);

} // namespace marvane::tool
