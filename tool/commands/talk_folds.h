// Long runs of requests that differ in nothing of interest, as one row.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tool/commands/talk_layout.h"
#include "tool/read/exchange.h"

namespace marvane::tool {

/// A request, or a run of transfers or of tester presents on one link.
class TalkFold
{
public:
    bool IsEmpty() const { return first_.empty(); }
    /// Begins with a request; the fold must be empty.
    void Begin(const read::Exchange& exchange);
    /// Adds the request to the run; false if it is no part of it.
    bool Takes(const read::Exchange& exchange);
    void Clear();

    /// The rows: one for a long run, those of each request for a short one.
    std::string Lines(const TalkLayout& layout, read::LogTime begin) const;

    std::uint32_t Session() const { return first_.front().Session; }
    read::LogTime Time() const { return first_.front().Time; }

private:
    enum class Kind : std::uint8_t
    {
        None,
        Transfer,
        TesterPresent
    };
    static Kind KindOf(const read::Exchange& exchange);
    std::string RunLines(const TalkLayout& layout, read::LogTime begin) const;

    Kind kind_ = Kind::None;
    std::vector<read::Exchange> first_; ///< no more than are shown one by one
    std::uint64_t count_ = 0;
    std::uint64_t bytes_ = 0; ///< of payload, without service and counter
    bool isAnswered_ = false;
    read::LogTime end_;
};

} // namespace marvane::tool
