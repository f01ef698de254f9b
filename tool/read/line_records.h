// The lines of a log, as records: where they are, of what kind, and decoded lines taken apart.
//
// Every std::string_view and std::span in a record points into the reader's buffers. It is valid only during
// the sink's function that received the record; copy what outlives it.
#pragma once

#include <compare>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "line/arrows.h"
#include "line/dump_columns.h"
#include "tool/read/log_time.h"

namespace marvane::read {

using Bytes = std::span<const std::uint8_t>;

/// Where a line is. `File` counts the files of the reader from 0; `Line` counts from 1 within the file.
struct Position
{
    std::uint32_t File = 0;
    std::uint64_t Line = 0;
    std::uint64_t Offset = 0; ///< of the line's first byte, in the uncompressed file
    friend auto operator<=>(const Position&, const Position&) = default;
};

/// What kind of line it is, by its own text.
enum class LineKind : std::uint8_t
{
    Entry,        ///< "+ NAME..."
    CallOut,      ///< "    <NAME": the called side has returned
    Exit,         ///< "- NAME..."
    NotLoaded,    ///< "NAME - Called but library not loaded!"
    Decoded,      ///< an arrow and a text
    Comms,        ///< "LABEL -> TITLE" or "LABEL <- TITLE"
    Mark,         ///< "# NAME - ..."
    Initialise,   ///< "########## INITIALISE ##########"
    Version,      ///< "########## D-PDU API LOGGER VERSION: ... ##########"
    Header,       ///< "LogHeader{Loaded=N}"
    Setting,      ///< "Config setting: ..."
    Full,         ///< the mark of a full buffer, on a line of its own or after a stamp or an arrow
    Continuation, ///< no stamp: the rest of the line before it
    Other,        ///< a stamp, and a text that is none of the above
    Foreign,      ///< no stamp, and belongs to nothing
};

/// One line of a file.
struct Line
{
    Position At;
    LogTime Time;             ///< of the line's stamp; of the line before it if it has none
    std::uint32_t Thread = 0; ///< likewise
    LineKind Kind = LineKind::Foreign;
    bool HasStamp = false;
    bool HasLineEnd = true; ///< false only for the last line of a file
    std::string_view Text;  ///< after the stamp, without line end
    std::string_view Whole; ///< with the stamp, without line end
};

/// A decoded line, taken apart: arrow, label, value. Any text is accepted.
struct DecodedText
{
    Direction Way = Direction::ToTarget; ///< as the arrow shows it
    std::uint8_t Depth = 0;              ///< 0 to 3; 4 and more for lines without an arrow of their own
    std::string_view Text;               ///< after the arrow
    std::string_view Label;              ///< before the first '=' (of a dump: before '|' or ':'), trimmed
    std::string_view Value;              ///< after it, trimmed; empty if there is no '='
    std::optional<DumpRow> Dump;         ///< if the line is one of a dump listing
};

/// A decoded line of a call or of a comms report.
struct CallLine
{
    std::uint64_t Number = 0; ///< line number in the file of its half (Call::Begin.File, Call::End.File)
    std::string_view Text;    ///< after the stamp: arrow and text; line breaks inside the text included
    DecodedText Decode() const;
};

} // namespace marvane::read
