// The terminal and the standard streams of a program for the command line. Every text is UTF-8.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace marvane::platform {

/// A standard stream that a program writes to.
enum class Stream
{
    Output,
    Error
};

/// Whether a stream is shown on a terminal.
bool IsTerminal(Stream stream);

/// Whether standard input is a terminal, so that reading it would wait for a person.
bool InputIsTerminal();

/// Columns of the terminal that shows a stream; 0 if there is none.
unsigned TerminalColumns(Stream stream);

/// Prepares the standard streams: bytes are passed on as they are, the console takes UTF-8, and a write
/// to a closed pipe is an error, not the end of the process. Call it once, at the start.
void PrepareStreams();

/// Whether the terminal of a stream understands ANSI colours.
bool TakesColour(Stream stream);

/// The arguments of this process, the program's name first, in UTF-8.
std::vector<std::string> CommandLineWords(int count, char** values);

/// Writes all bytes, in as many parts as the system wants. False if the reader is gone or the write failed;
/// `closed` is then set if it was the reader.
bool WriteStream(Stream stream, std::string_view bytes, bool& closed);

/// Starts the user's pager (PAGER, else less) and redirects standard output to it. False where there is no
/// pager; always on Windows.
bool StartPager();

/// Closes standard output and waits until the user has left the pager.
void FinishPager();

/// True if the terminal's colours are switched off by a variable: NO_COLOR, or TERM=dumb.
bool ColourIsUnwanted();

} // namespace marvane::platform
