// Pictures of what a command shows on a terminal, for the documents.
#pragma once

#include <string>

namespace marvane::testing {

/// An SVG of a prompt with `command` and below it `output`, in the colours of its escape sequences. Every run
/// of characters has its column and its width, so that the columns stand whatever font is there. It brings
/// its own background, for light and dark pages. The same text gives the same bytes. Throws
/// std::invalid_argument for an unknown escape sequence.
std::string TerminalPicture(const std::string& command, const std::string& output);

} // namespace marvane::testing
