// A call or callback that has entered and not yet left: its record, and the text that the record points into.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "tool/read/records.h"

namespace marvane::read {

class Frame
{
public:
    /// What the record says of the frame so far. Its texts are set by Entry and Finished only.
    Event Record;
    bool IsEvent = false;
    bool IsOrphan = false; ///< its entry line is not in the log
    bool IsInResults = false;
    /// It may have been left without an exit line: it encloses nothing until it shows that it is open.
    bool IsDoubtful = false;

    /// Makes a used frame new; keeps its memory.
    void Reset();

    /// Takes the text of the entry line after "+ ", and reads name, arguments and handles.
    void SetEntry(std::string_view text);
    /// The entry line goes on in another line.
    void ContinueEntry(std::string_view text);
    bool HasWholeEntry() const;
    /// True if the entry line has that name.
    bool HasName(std::string_view name) const;
    /// The record with what an entry line says; valid until the next change of the frame.
    const Event& Entry();

    /// Adds a decoded line to the half that is being read. False if the frame is full: no call has that much.
    bool AddLine(std::uint64_t number, std::string_view text);
    /// The last line goes on in another line.
    bool ContinueLine(std::string_view text);
    /// The text of the last decoded line; empty if there is none.
    std::string_view LastLine() const;
    std::size_t CountLines() const { return lines_.size(); }

    /// The whole record; `storage` takes its lines.
    const Event& Finished(std::vector<CallLine>& storage);

    /// Bytes of text.
    std::size_t Size() const { return text_.size(); }

private:
    struct StoredLine
    {
        std::uint64_t Number;
        std::uint32_t Begin;
        std::uint32_t Length;
    };

    bool HasRoom(std::size_t length) const;
    void ReadEntry();

    std::string text_; ///< the entry line, then the decoded lines
    std::size_t entryLength_ = 0;
    std::string_view read_; ///< what the texts of the record were read from
    std::vector<StoredLine> lines_;
    std::size_t countIn_ = 0; ///< of lines_, those of the arguments
};

} // namespace marvane::read
