#include "tool/commands/console.h"

#include <algorithm>

#include "platform/console.h"
#include "tool/commands/arguments.h"

namespace marvane::tool {

namespace {

using platform::Stream;

constexpr std::size_t BufferSize = 64 * 1024;

std::string_view CodeOf(Colour colour)
{
    constexpr std::string_view codes[] = {"", "\x1b[31m", "\x1b[33m", "\x1b[32m", "\x1b[2m", "\x1b[1m"};
    return codes[static_cast<std::size_t>(colour)];
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

Console::Console(ColourChoice choice)
    : columns_(std::max(std::size_t{100}, std::size_t{platform::TerminalColumns(Stream::Output)})),
      terminal_(platform::IsTerminal(Stream::Output)), colour_(WantsColour(choice))
{
}

Console::~Console()
{
    bool closed = false;
    if (!closed_)
        platform::WriteStream(Stream::Output, buffer_, closed);
    platform::FinishPager();
}

void Console::Write(std::string_view text)
{
    buffer_ += text;
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
    return std::string(CodeOf(colour)).append(text).append("\x1b[0m");
}

void Console::Note(std::string_view line)
{
    bool closed = false;
    platform::WriteStream(Stream::Error, "marvane: " + std::string(line) + "\n", closed);
}

void Console::Complain(std::string_view line)
{
    complained_ = true;
    Note(line);
}

void Console::UsePager()
{
    if (terminal_)
        platform::StartPager();
}

ColourChoice ColourChoiceOf(std::string_view value)
{
    if (value == "always")
        return ColourChoice::Always;
    return value == "never" ? ColourChoice::Never : ColourChoice::Auto;
}

} // namespace marvane::tool
