#include "tool/commands/alignment.h"

#include <algorithm>
#include <map>
#include <optional>

namespace marvane::tool {

namespace {

using Pairs = std::vector<std::pair<std::size_t, std::size_t>>;

// Cells of the exact table: 4 MB, some 10 ms.
constexpr std::size_t MostCells = 4'000'000;

// A pair is worth more than all preferences of kind in a table together.
constexpr std::uint32_t PairWorth = 1 << 13;

bool IsSame(const AlignedElement& one, const AlignedElement& other)
{
    return one.Key == other.Key && one.Kind == other.Kind;
}

/// A part of both sequences.
struct Part
{
    std::size_t FirstBegin;
    std::size_t FirstEnd;
    std::size_t SecondBegin;
    std::size_t SecondEnd;

    std::size_t FirstSize() const { return FirstEnd - FirstBegin; }
    std::size_t SecondSize() const { return SecondEnd - SecondBegin; }
    bool IsEmpty() const { return FirstSize() == 0 || SecondSize() == 0; }
    bool FitsTable() const { return FirstSize() <= MostCells / SecondSize(); }
};

class Aligner
{
public:
    Aligner(std::span<const AlignedElement> first, std::span<const AlignedElement> second)
        : first_(first), second_(second)
    {
    }

    Pairs Align()
    {
        // A list, no recursion: parts may be many.
        std::vector<Part> open = {{0, first_.size(), 0, second_.size()}};
        while (!open.empty()) {
            Part part = open.back();
            open.pop_back();
            TakeEqualEnds(part);
            if (part.IsEmpty())
                continue;
            if (part.FitsTable())
                AlignByTable(part);
            else
                SplitAtAnchors(part, open);
        }
        std::ranges::sort(pairs_);
        return std::move(pairs_);
    }

private:
    void TakeEqualEnds(Part& part)
    {
        for (; !part.IsEmpty() && IsSame(first_[part.FirstBegin], second_[part.SecondBegin]);
             ++part.FirstBegin, ++part.SecondBegin)
            pairs_.emplace_back(part.FirstBegin, part.SecondBegin);
        for (; !part.IsEmpty() && IsSame(first_[part.FirstEnd - 1], second_[part.SecondEnd - 1]);
             --part.FirstEnd, --part.SecondEnd)
            pairs_.emplace_back(part.FirstEnd - 1, part.SecondEnd - 1);
    }

    /// What a pair adds; 0 if it can't be one.
    std::uint32_t Worth(std::size_t i, std::size_t j) const
    {
        if (first_[i].Key != second_[j].Key)
            return 0;
        return PairWorth + (first_[i].Kind == second_[j].Kind);
    }

    enum Step : std::uint8_t
    {
        SkipFirst,
        SkipSecond,
        Pair
    };

    /// Row by row from the end: the best sum of what is from (i, j) on, and the step that leads to it.
    void AlignByTable(const Part& part)
    {
        const std::size_t columns = part.SecondSize();
        std::vector<std::uint64_t> below(columns + 1), row(columns + 1);
        std::vector<Step> steps(part.FirstSize() * columns);
        for (std::size_t i = part.FirstSize(); i-- > 0;) {
            row[columns] = 0;
            for (std::size_t j = columns; j-- > 0;) {
                Step step = below[j] >= row[j + 1] ? SkipFirst : SkipSecond;
                row[j] = std::max(below[j], row[j + 1]);
                const std::uint32_t worth = Worth(part.FirstBegin + i, part.SecondBegin + j);
                if (worth > 0 && below[j + 1] + worth >= row[j]) {
                    row[j] = below[j + 1] + worth;
                    step = Pair;
                }
                steps[i * columns + j] = step;
            }
            std::swap(row, below);
        }
        std::size_t i = 0, j = 0;
        while (i < part.FirstSize() && j < columns) {
            const Step step = steps[i * columns + j];
            if (step == Pair)
                pairs_.emplace_back(part.FirstBegin + i, part.SecondBegin + j);
            i += step != SkipSecond;
            j += step != SkipFirst;
        }
    }

    /// Elements whose key is in each part once, as far as their order is the same in both.
    Pairs Anchors(const Part& part) const
    {
        struct Place
        {
            std::size_t First = 0, Second = 0;
            std::size_t InFirst = 0, InSecond = 0; ///< how often
        };
        std::map<std::uint32_t, Place> places;
        for (std::size_t i = part.FirstBegin; i < part.FirstEnd; ++i) {
            Place& place = places[first_[i].Key];
            place.First = i;
            ++place.InFirst;
        }
        for (std::size_t j = part.SecondBegin; j < part.SecondEnd; ++j) {
            Place& place = places[second_[j].Key];
            place.Second = j;
            ++place.InSecond;
        }
        Pairs unique;
        for (const auto& [key, place] : places)
            if (place.InFirst == 1 && place.InSecond == 1)
                unique.emplace_back(place.First, place.Second);
        std::ranges::sort(unique);
        return LongestAscending(unique);
    }

    /// The longest subsequence whose second places ascend (patience sorting).
    static Pairs LongestAscending(const Pairs& pairs)
    {
        std::vector<std::size_t> tops; ///< of each pile, an index of pairs
        std::vector<std::optional<std::size_t>> before(pairs.size());
        for (std::size_t i = 0; i < pairs.size(); ++i) {
            const auto pile = std::ranges::lower_bound(tops, pairs[i].second, {},
                                                       [&](std::size_t top) { return pairs[top].second; });
            if (pile != tops.begin())
                before[i] = *(pile - 1);
            if (pile == tops.end())
                tops.push_back(i);
            else
                *pile = i;
        }
        Pairs longest;
        for (auto at = tops.empty() ? std::nullopt : std::optional(tops.back()); at; at = before[*at])
            longest.push_back(pairs[*at]);
        std::ranges::reverse(longest);
        return longest;
    }

    void SplitAtAnchors(const Part& part, std::vector<Part>& open)
    {
        const Pairs anchors = Anchors(part);
        if (anchors.empty())
            return;
        std::size_t first = part.FirstBegin, second = part.SecondBegin;
        for (const auto& [i, j] : anchors) {
            pairs_.emplace_back(i, j);
            open.push_back({first, i, second, j});
            first = i + 1;
            second = j + 1;
        }
        open.push_back({first, part.FirstEnd, second, part.SecondEnd});
    }

    std::span<const AlignedElement> first_;
    std::span<const AlignedElement> second_;
    Pairs pairs_;
};

} // namespace

std::vector<std::pair<std::size_t, std::size_t>> AlignSequences(std::span<const AlignedElement> first,
                                                                std::span<const AlignedElement> second)
{
    return Aligner(first, second).Align();
}

} // namespace marvane::tool
