// The marks of the frame: how each kind of line of a call, a file and a session begins or ends.
//
// Decoded lines are not here: their formats are written out in the decoders, where they can be searched for.
#pragma once

#include <string_view>

namespace marvane {

namespace marks {

// How a line begins, after its stamp.
inline constexpr std::string_view Entry = "+ ";         ///< then the name and the arguments of a call
inline constexpr std::string_view Exit = "- ";          ///< then the name and "<STATUS (number)>"
inline constexpr std::string_view CallOutEnd = "    <"; ///< then the name: the target library has returned
inline constexpr std::string_view FileChange = "# ";    ///< then the name and one of the three ends below
inline constexpr std::string_view Initialise = "########## INITIALISE ##########";   ///< the whole line
inline constexpr std::string_view Version = "########## D-PDU API LOGGER VERSION: "; ///< then the version
inline constexpr std::string_view VersionEnd = " ##########";
inline constexpr std::string_view Header = "LogHeader"; ///< then "{Loaded=N}"
inline constexpr std::string_view Setting = "Config setting: ";

// How a line ends.
inline constexpr std::string_view ChangingFile = " - Changing log file";     ///< last line of a file
inline constexpr std::string_view ContinuationFile = " - Continuation file"; ///< first line of the next one
inline constexpr std::string_view ClosingFile = " - Close this log file";    ///< last line of a session
inline constexpr std::string_view NotLoaded = " - Called but library not loaded!"; ///< the name stands first

/// Ends the text of a phase that outgrew its buffer. With its line break; may follow any part of a line.
inline constexpr std::string_view BufferFull = "\t\t\t\t...\n";

} // namespace marks

/// What kind of line a mark makes of it.
enum class LineMark
{
    None, ///< a decoded line, a comms report, a continuation, or not of a log at all
    Entry,
    Exit,
    CallOutEnd,
    ChangingFile,
    ContinuationFile,
    ClosingFile,
    NotLoaded,
    Initialise,
    Version,
    Header,
    Setting,
    BufferFull ///< the mark of a full buffer alone
};

/// A line's mark, and the text without it.
struct MarkedLine
{
    LineMark Mark = LineMark::None;
    /// Entry, Exit: name and all that follows it. CallOutEnd, NotLoaded and the three of files: the name.
    /// Version: the version. Header: "{Loaded=N}". Setting: what is set. None: the whole text. Else empty.
    std::string_view Rest;

    bool operator==(const MarkedLine&) const = default;
};

/// Reads the mark of a line from its text after the stamp, without line break. The result refers to `text`.
MarkedLine ParseMark(std::string_view text);

} // namespace marvane
