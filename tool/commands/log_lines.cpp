#include "tool/commands/log_lines.h"

#include <algorithm>

#include "line/stamp.h"

namespace marvane::tool {

void LogLines::Add(const read::Line& line)
{
    Add({line.At, line.Time, 0, 0, line.Kind, line.HasStamp}, line.Whole);
}

void LogLines::Add(const Entry& entry, std::string_view whole)
{
    entries_.push_back(entry);
    entries_.back().Begin = static_cast<std::uint32_t>(text_.size());
    entries_.back().Size = static_cast<std::uint32_t>(whole.size());
    text_ += whole;
}

void LogLines::Clear()
{
    text_.clear();
    entries_.clear();
    hasGaps_ = false;
}

bool LogLines::Holds(const TextSearch& text) const
{
    // One search in all lines together finds out that most calls do not hold it.
    return text.IsIn(text_) && std::ranges::any_of(entries_, [&](const Entry& entry) {
               return text.IsIn(Whole(entry).substr(entry.HasStamp ? StampLength : 0));
           });
}

void LogLines::Move(read::Position begin, read::Position end, LogLines& to)
{
    const auto isBefore = [](const Entry& entry, const read::Position& place) {
        return std::pair(entry.At.File, entry.At.Line) < std::pair(place.File, place.Line);
    };
    const auto first = std::lower_bound(entries_.begin(), entries_.end(), begin, isBefore);
    read::Position behind = {end.File, end.Line + 1, 0};
    auto last = std::lower_bound(first, entries_.end(), behind, isBefore);
    while (last != entries_.end() && last->Kind == read::LineKind::Full && last->At.File == behind.File &&
           last->At.Line == behind.Line++)
        ++last;
    if (first == entries_.begin() && last == entries_.end() && to.IsEmpty() && !hasGaps_) {
        std::swap(*this, to); // The usual case: a call without others inside.
        return Clear();
    }
    for (auto entry = first; entry != last; ++entry)
        to.Add(*entry, Whole(*entry));
    hasGaps_ |= first != last;
    entries_.erase(first, last);
    if (entries_.empty())
        Clear(); // Else the rest of the text is freed with the outermost call.
}

} // namespace marvane::tool
