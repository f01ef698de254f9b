// Where the time of a session went: to the control units, the library, or the application.
#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <vector>

#include "tool/input/time_range.h"
#include "tool/read/exchange.h"
#include "tool/read/records.h"

namespace marvane::tool {

/// Each moment counts once, as fine as the log's clock: for the application while one of its callbacks runs,
/// for the library while a call is open, for the application again while an announced event waits to be
/// fetched, for the control units while a request waits for its end, else for the application.
class TimeShares
{
public:
    /// Counts only that part. To be called first.
    void CountIn(TimeRange part) { part_ = part; }

    /// To be told everything in the order of the log.
    void OnSession(const read::Session& session);
    void OnEntry(const read::Call& call, bool isEvent);
    void OnCall(const read::Call& call);
    void OnEvent(const read::Event& event);
    void OnEnded(const read::Exchange& exchange) { requests_.erase(RequestOf(exchange)); }

    std::int64_t ControlUnitMs() const { return ms_[ControlUnit]; }
    std::int64_t InCallsMs() const { return ms_[Library]; }
    std::int64_t ApplicationMs() const { return ms_[Application]; }
    /// False if the settings keep the ends of requests out of the log.
    bool AreKnown() const { return areKnown_; }

private:
    enum Share
    {
        ControlUnit,
        Library,
        Application
    };
    struct LinkKey
    {
        std::uint32_t Session;
        std::uint32_t Link;
        friend auto operator<=>(const LinkKey&, const LinkKey&) = default;
    };
    struct Request
    {
        LinkKey On;
        std::uint64_t Seq; ///< of the PDUStartComPrimitive
        friend auto operator<=>(const Request&, const Request&) = default;
    };

    static Request RequestOf(const read::Exchange& exchange);
    Share Current() const;
    void Advance(read::LogTime to);
    void Begin(const read::Call& start);
    void Forget(const LinkKey& link);
    bool HasRequest(const LinkKey& link) const;

    TimeRange part_;
    std::optional<read::LogTime> last_;
    std::vector<read::Position> calls_; ///< open ones
    std::vector<read::Position> callbacks_;
    std::set<LinkKey> announced_;
    std::set<Request> requests_;
    std::int64_t ms_[3] = {};
    bool areKnown_ = true;
};

} // namespace marvane::tool
