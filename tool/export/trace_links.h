// The rows of a trace that show links: requests with their answers, as asynchronous events.
#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "tool/export/redactor.h"
#include "tool/export/trace_events.h"
#include "tool/read/exchange.h"

namespace marvane::tool::trace {

/// A row a link; more where requests of a link overlap. In it a slice of the link's name holds those of its
/// requests, since viewers name a row by its first slice.
class LinkRows
{
public:
    /// Links after so many share one row.
    static constexpr std::size_t MostLinks = 10'000;

    /// Both outlive it; `redactor` may be null.
    LinkRows(EventWriter& out, const Redactor* redactor) : out_(out), redactor_(redactor) {}

    void Begin(const read::Exchange& request, std::int64_t us);
    void Answer(const read::Exchange& request, const read::Answer& answer, std::int64_t us);
    void End(const read::Exchange& exchange, std::int64_t us);
    /// The log has ended: what has no end by then gets none.
    void Finish();

private:
    struct Lane
    {
        std::uint64_t Id;
        std::int64_t End;   ///< of the last request that is over
        bool IsFree = true; ///< no request is open
    };
    struct LinkRow
    {
        Row On;
        std::string Name;
        std::vector<Lane> Lanes;
    };
    struct Open
    {
        LinkRow* On;
        std::size_t Lane;
        std::string Name;
        std::int64_t Last; ///< time of its last event
    };

    LinkRow& RowOf(const read::Link& link);
    std::string RedactedText(const std::vector<std::uint8_t>& bytes) const;
    std::size_t LaneOf(LinkRow& row, std::int64_t us);
    void Write(char phase, const Open& open, std::int64_t us, std::string_view name,
               std::vector<std::pair<std::string_view, std::string>> arguments);

    EventWriter& out_;
    const Redactor* redactor_;
    std::map<std::string, LinkRow> rows_;
    std::map<std::uint64_t, Open> open_; ///< by Exchange::Seq
    std::uint64_t lanes_ = 0;
};

} // namespace marvane::tool::trace
