#include "tool/commands/request_pairs.h"

#include <algorithm>
#include <deque>
#include <map>
#include <tuple>

#include "tool/commands/alignment.h"

namespace marvane::tool {

namespace {

using Requests = std::vector<RunRequest>;
using Indices = std::vector<std::size_t>; ///< of requests

/// The requests of both runs on links of one name.
struct LinkRequests
{
    Indices First;
    Indices Second;
};

class Pairing
{
public:
    Pairing(const Requests& first, const Requests& second)
        : first_(first), second_(second), secondOf_(first.size()), firstOf_(second.size())
    {
    }

    std::vector<RequestPair> Pairs()
    {
        std::map<std::string, LinkRequests> links;
        for (std::size_t i = 0; i < first_.size(); ++i)
            links[first_[i].Link].First.push_back(i);
        for (std::size_t j = 0; j < second_.size(); ++j)
            links[second_[j].Link].Second.push_back(j);
        for (const auto& [name, requests] : links) {
            Align(requests);
            PairMoved(requests);
            PairSimilar(requests);
        }
        return InOrder(links);
    }

private:
    void Pair(std::size_t i, std::size_t j)
    {
        secondOf_[i] = j;
        firstOf_[j] = i;
    }

    std::vector<AlignedElement> Elements(const Indices& indices, const Requests& requests)
    {
        std::vector<AlignedElement> elements;
        elements.reserve(indices.size());
        for (const std::size_t index : indices) {
            const RunRequest& request = requests[index];
            const auto key = keys_.try_emplace(request.Bytes, static_cast<std::uint32_t>(keys_.size()));
            elements.push_back({key.first->second, static_cast<std::uint32_t>(request.Result)});
        }
        return elements;
    }

    void Align(const LinkRequests& link)
    {
        const auto first = Elements(link.First, first_);
        const auto second = Elements(link.Second, second_);
        for (const auto& [i, j] : AlignSequences(first, second))
            Pair(link.First[i], link.Second[j]);
    }

    /// The n-th of the same bytes that is left with the n-th.
    void PairMoved(const LinkRequests& link)
    {
        std::map<std::string_view, std::deque<std::size_t>> free;
        for (const std::size_t j : link.Second)
            if (!firstOf_[j])
                free[second_[j].Bytes].push_back(j);
        for (const std::size_t i : link.First) {
            const auto found = secondOf_[i] ? free.end() : free.find(first_[i].Bytes);
            if (found == free.end() || found->second.empty())
                continue;
            Pair(i, found->second.front());
            found->second.pop_front();
        }
    }

    /// What is left between one pair and the next.
    void PairSimilar(const LinkRequests& link)
    {
        std::size_t next = 0; ///< in link.Second
        std::map<std::string_view, std::deque<std::size_t>> free;
        for (const std::size_t i : link.First) {
            if (secondOf_[i]) {
                const std::size_t place = PlaceOf(*secondOf_[i], link.Second);
                if (place < next)
                    continue; // it moved
                next = place + 1;
                free.clear();
                continue;
            }
            for (; next < link.Second.size() && !firstOf_[link.Second[next]]; ++next)
                free[second_[link.Second[next]].Similar].push_back(link.Second[next]);
            const auto found = free.find(first_[i].Similar);
            if (found == free.end() || found->second.empty())
                continue;
            Pair(i, found->second.front());
            found->second.pop_front();
        }
    }

    static std::size_t PlaceOf(std::size_t index, const Indices& indices)
    {
        return static_cast<std::size_t>(std::ranges::lower_bound(indices, index) - indices.begin());
    }

    /// Where the requests from `place` on end that the first run has alone.
    std::size_t EndOfAlone(const Indices& indices, std::size_t place) const
    {
        while (place < indices.size() && !secondOf_[indices[place]])
            ++place;
        return place == 0 ? indices.front() : indices[place - 1] + 1;
    }

    std::vector<RequestPair> InOrder(const std::map<std::string, LinkRequests>& links) const
    {
        // Place in the first run (0: before all), then place in the second for those that are there alone.
        std::vector<std::tuple<std::size_t, std::size_t, RequestPair>> rows;
        for (std::size_t i = 0; i < first_.size(); ++i)
            rows.emplace_back(i + 1, 0, RequestPair{i, secondOf_[i]});
        for (const auto& [name, link] : links) {
            std::size_t after = link.First.empty() ? first_.size() : EndOfAlone(link.First, 0);
            for (const std::size_t j : link.Second)
                if (firstOf_[j])
                    after = EndOfAlone(link.First, PlaceOf(*firstOf_[j], link.First) + 1);
                else
                    rows.emplace_back(after, j + 1, RequestPair{{}, j});
        }
        std::ranges::sort(rows, {},
                          [](const auto& row) { return std::pair(std::get<0>(row), std::get<1>(row)); });
        std::vector<RequestPair> pairs;
        pairs.reserve(rows.size());
        for (const auto& row : rows)
            pairs.push_back(std::get<2>(row));
        return pairs;
    }

    const Requests& first_;
    const Requests& second_;
    std::vector<std::optional<std::size_t>> secondOf_; ///< by place in the first run
    std::vector<std::optional<std::size_t>> firstOf_;  ///< by place in the second
    std::map<std::string, std::uint32_t, std::less<>> keys_;
};

} // namespace

std::vector<RequestPair> PairRequests(const Requests& first, const Requests& second)
{
    return Pairing(first, second).Pairs();
}

} // namespace marvane::tool
