// What the lines of a call look like, as far as the reader has to know it to tell where a half, a report or a
// text with line breaks ends.
#pragma once

#include <string_view>

#include "line/marks.h"
#include "tool/read/records.h"

namespace marvane::read {

/// True if a decoded line (with its arrow) is one that the results of that function begin with. Without
/// LogCallOuts nothing else separates arguments, or a comms report, from results.
bool BeginsResults(Function function, std::string_view line);

/// True if an entry line ("NAME(...)") has all its arguments; else the text goes on in the next line.
bool IsWholeEntry(Function function, std::string_view entry);

/// True if the last text of a decoded line (without its arrow) may go on in the next line: a string is open.
bool IsOpenText(std::string_view text);

/// True for the texts of ComParams that are nested so deep that they have no arrow.
bool IsDeepText(std::string_view text);

/// True for what a header shows as decoded lines (with the arrow): the loading of the target library.
bool IsHeaderLine(std::string_view line);

/// True for the header line whose next lines, without stamp, say why the target library could not be loaded.
bool IsLoadFailure(std::string_view line);

/// The mark of a full buffer, without its line end.
inline constexpr std::string_view FullMark = marks::BufferFull.substr(0, marks::BufferFull.size() - 1);

/// Takes the mark of a full buffer from the end of a text that holds more. Inline: every line is asked.
inline bool TakeMark(std::string_view& text)
{
    if (text.size() <= FullMark.size() || text.back() != '.' || !text.ends_with(FullMark))
        return false;
    text.remove_suffix(FullMark.size());
    return true;
}

} // namespace marvane::read
