// Lines of a log, copied out of the reader's buffers, and those of each thread that wait for the end of the
// call that they belong to.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "tool/commands/text_search.h"
#include "tool/read/records.h"

namespace marvane::tool {

/// Some lines of one thread, in their order. Reused, it allocates nothing.
class LogLines
{
public:
    struct Entry
    {
        read::Position At;
        read::LogTime Time;
        std::uint32_t Begin = 0; ///< in the text
        std::uint32_t Size = 0;
        read::LineKind Kind = read::LineKind::Foreign;
        bool HasStamp = false;
    };

    void Add(const read::Line& line);
    void Add(const Entry& entry, std::string_view whole);
    void Clear();

    bool IsEmpty() const { return entries_.empty(); }
    const std::vector<Entry>& Entries() const { return entries_; }
    /// A line as the log has it, with its stamp, without line end.
    std::string_view Whole(const Entry& entry) const
    {
        return std::string_view(text_).substr(entry.Begin, entry.Size);
    }
    std::size_t Bytes() const { return text_.size(); }

    /// True if a line holds the text, its stamp apart.
    bool Holds(const TextSearch& text) const;

    /// Moves the lines from `begin` to `end` to another place; a mark of a full buffer that follows them at
    /// once belongs to them.
    void Move(read::Position begin, read::Position end, LogLines& to);

private:
    std::string text_;
    std::vector<Entry> entries_;
    bool hasGaps_ = false; ///< the text holds lines that were moved away
};

} // namespace marvane::tool
