// The lines of the log in a page, and where each of them is.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tool/input/time_range.h"
#include "tool/read/records.h"
#include "tool/report/packed_text.h"

namespace marvane::tool {

/// Takes all lines of all files in their order. Of each file, those from the first one in the part that is
/// wanted to the last one before its end are put into the block: one after the other, whatever their clocks
/// say.
class LineBlock
{
public:
    /// The lines of a file that are in the block.
    struct Stretch
    {
        std::uint64_t First = 1; ///< line number of the first one
        std::uint64_t Count = 0;
        std::uint64_t Index = 0; ///< place of the first one in the block
    };

    explicit LineBlock(TimeRange part) : part_(part) {}

    void Add(const read::Line& line);
    /// The place of a line in the block, from 0; none if it is not in it.
    std::optional<std::uint64_t> IndexOf(const read::Position& at) const;
    /// As above; the last one of its file for a line after it.
    std::uint64_t LastIndexOf(const read::Position& first, const read::Position& last) const;
    /// That of a file, by its number in the reader.
    Stretch StretchOf(std::uint32_t file) const;
    std::uint64_t Count() const { return count_; }
    /// The time of the first line.
    read::LogTime Begin() const { return begin_; }

    /// To be called once, after the last line.
    std::string Finish() { return packed_.Finish(); }

private:
    struct File
    {
        Stretch Of;
        bool IsOver = false;
    };
    void Write(const read::Line& line);

    TimeRange part_;
    PackedText packed_;
    std::vector<File> files_;
    std::string stamp_; ///< of the last line that has one
    std::string text_;
    std::uint64_t count_ = 0;
    read::LogTime begin_;
};

} // namespace marvane::tool
