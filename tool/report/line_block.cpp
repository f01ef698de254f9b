#include "tool/report/line_block.h"

#include "line/stamp.h"

namespace marvane::tool {

namespace {

// What a line begins with, if not with a stamp of its own.
constexpr char SameStamp = '\x01'; ///< in place of a stamp equal to the last one
constexpr char NoStamp = '\x02';

} // namespace

void LineBlock::Add(const read::Line& line)
{
    if (line.At.File >= files_.size())
        files_.resize(line.At.File + 1);
    File& file = files_[line.At.File];
    file.IsOver |= part_.Until && line.Time > *part_.Until;
    const bool isBefore = file.Of.Count == 0 && part_.Since && line.Time < *part_.Since;
    if (isBefore || file.IsOver)
        return;
    if (file.Of.Count == 0)
        file.Of = {line.At.Line, 0, count_};
    if (count_ == 0)
        begin_ = line.Time;
    ++file.Of.Count;
    ++count_;
    Write(line);
}

/// Most lines have the stamp of the line before them.
void LineBlock::Write(const read::Line& line)
{
    text_.clear();
    const std::string_view stamp = line.Whole.substr(0, line.HasStamp ? StampLength : 0);
    if (!line.HasStamp)
        text_ += NoStamp;
    else if (stamp == stamp_)
        text_ += SameStamp;
    else
        text_ += stamp_ = stamp;
    text_ += line.Whole.substr(stamp.size());
    text_ += '\n';
    packed_.Write(text_);
}

LineBlock::Stretch LineBlock::StretchOf(std::uint32_t file) const
{
    return file < files_.size() ? files_[file].Of : Stretch{1, 0, count_};
}

std::optional<std::uint64_t> LineBlock::IndexOf(const read::Position& at) const
{
    const Stretch stretch = StretchOf(at.File);
    if (at.Line < stretch.First || at.Line - stretch.First >= stretch.Count)
        return std::nullopt;
    return stretch.Index + (at.Line - stretch.First);
}

std::uint64_t LineBlock::LastIndexOf(const read::Position& first, const read::Position& last) const
{
    if (const std::optional<std::uint64_t> index = IndexOf(last))
        return *index;
    const Stretch stretch = StretchOf(first.File);
    return stretch.Index + stretch.Count - 1;
}

} // namespace marvane::tool
