#include "tool/console/console.h"

#include <algorithm>

#include "platform/terminal.h"
#include "tool/console/arguments.h"

namespace marvane::tool {

namespace {

using platform::Stream;

constexpr std::size_t BufferSize = 64 * 1024;
constexpr std::size_t UsualColumns = 100;

/// A text without the escape sequences of colours.
std::string WithoutColour(std::string_view text)
{
    std::string plain;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\x1b')
            i = std::min(text.find('m', i), text.size() - 1);
        else
            plain += text[i];
    }
    return plain;
}

bool WantsColour(ColourChoice choice)
{
    if (choice == ColourChoice::Auto)
        return !platform::ColourIsUnwanted() && platform::TakesColour(Stream::Output);
    if (choice == ColourChoice::Always)
        platform::TakesColour(Stream::Output); // Switches them on where the console has a switch.
    return choice == ColourChoice::Always;
}

} // namespace

Console::Console(ColourChoice choice, bool mayPage)
    : columns_(std::max(UsualColumns, std::size_t{platform::TerminalColumns(Stream::Output)})),
      terminal_(platform::IsTerminal(Stream::Output)), mayPage_(mayPage), colour_(WantsColour(choice))
{
}

Console::~Console()
{
    // Something is left only where an exception ends the command: its message tells of the failure.
    bool closed = false;
    if (!closed_)
        platform::WriteStream(Stream::Output, buffer_, closed);
    platform::FinishPager();
}

void Console::WatchFor(std::string text)
{
    watched_ = std::move(text);
}

/// The part of a text that is to be written: up to the end of the first line that holds what is looked for.
std::string_view Console::Watch(std::string_view text)
{
    std::size_t taken = 0;
    while (!matched_ && taken < text.size()) {
        const std::size_t end = std::min(text.find('\n', taken), text.size() - 1) + 1;
        line_ += text.substr(taken, end - taken);
        taken = end;
        if (line_.back() != '\n')
            break;
        matched_ = WithoutColour(line_).find(watched_) != std::string::npos;
        line_.clear();
    }
    return text.substr(0, taken);
}

void Console::Write(std::string_view text)
{
    const std::string_view wanted = watched_.empty() ? text : Watch(text);
    if (terminal_)
        buffer_ += TerminalText(wanted);
    else
        buffer_ += wanted;
    if (buffer_.size() >= BufferSize)
        Flush();
}

void Console::Flush()
{
    bool closed = false;
    const bool written = platform::WriteStream(Stream::Output, buffer_, closed);
    buffer_.clear();
    closed_ = !written;
    if (closed)
        throw OutputClosed();
    if (!written)
        throw Trouble("standard output can't be written");
}

std::string Console::Coloured(Colour colour, std::string_view text) const
{
    if (!colour_ || colour == Colour::Plain || text.empty())
        return std::string(text);
    return std::string(CodeOf(colour)).append(text).append(EndOfColour);
}

void Console::Note(std::string_view line)
{
    bool closed = false;
    const std::string note = "marvane: " + std::string(line) + "\n";
    platform::WriteStream(Stream::Error, platform::IsTerminal(Stream::Error) ? TerminalText(note) : note,
                          closed);
}

void Console::Complain(std::string_view line)
{
    complained_ = true;
    Note(line);
}

void Console::UsePager()
{
    if (terminal_ && mayPage_)
        platform::StartPager();
}

ColourChoice ColourChoiceOf(std::string_view value)
{
    if (value == "always")
        return ColourChoice::Always;
    return value == "never" ? ColourChoice::Never : ColourChoice::Auto;
}

} // namespace marvane::tool
