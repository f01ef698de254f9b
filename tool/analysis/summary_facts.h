// What a summary says, gathered in one pass.
#pragma once

#include <cstdint>
#include <deque>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "tool/analysis/durations.h"
#include "tool/analysis/findings.h"
#include "tool/analysis/time_shares.h"
#include "tool/input/log_source.h"
#include "tool/input/time_range.h"
#include "tool/read/param_values.h"

namespace marvane::tool {

/// A link and the requests on it.
struct LinkFacts
{
    read::Link What;
    std::optional<read::LogTime> Connected;
    std::optional<read::LogTime> Disconnected;
    std::uint64_t Requests = 0;
    std::uint64_t ByOutcome[read::OutcomeCount] = {};
};

struct ModuleFacts
{
    std::uint32_t Session = 0;
    std::uint32_t Handle = 0;
    std::string Name;
    std::string Serial;   ///< of PDUGetVersion
    std::string Software; ///< name and version of the library's API software
};

struct FunctionFacts
{
    std::string Name;
    Durations Ms;
    std::uint64_t Failed = 0; ///< empty queues apart
};

/// One of the calls and callbacks that took longest.
struct SlowFacts
{
    std::int64_t Ms = 0;
    std::string What;
    read::Position At;
};

class SummaryFacts : public Findings
{
public:
    static constexpr read::Wants Wants = Findings::Wants | read::Wants::Params;
    // Of lists that a log could make endless, no more than so many are gathered.
    static constexpr std::size_t MostLinks = 1'000;
    static constexpr std::size_t MostModules = 1'000;
    static constexpr std::size_t MostChanges = 1'000;
    static constexpr std::size_t MostSessions = 1'000;
    static constexpr std::size_t MostSlow = 3;

    SummaryFacts(Console& console, const std::vector<read::LogFile>& files) : console_(console), files_(files)
    {
    }

    /// Counts only what began in that part. To be called first.
    void CountIn(TimeRange range)
    {
        range_ = range;
        Shares.CountIn(range);
    }

    /// Copies without settings, complete after Finish. Of more than MostSessions, the last one is the newest.
    std::vector<read::Session> Sessions;
    std::uint64_t EndedSessions = 0; ///< by PDUDestruct
    std::uint32_t Processes = 0;
    std::vector<ModuleFacts> Modules;
    std::vector<LinkFacts> Links;
    std::map<std::string, FunctionFacts> Functions; ///< by name; callbacks too
    std::vector<SlowFacts> Slow;
    std::vector<read::ParamChange> Changes;
    std::set<std::uint32_t> Threads;
    std::uint64_t SessionCount = 0;
    std::uint64_t Calls = 0;
    std::uint64_t Events = 0;
    std::uint64_t ParamsSet = 0;
    std::uint64_t Requests = 0;
    std::uint64_t ByOutcome[read::OutcomeCount] = {};
    std::uint64_t ByKind[12] = {}; ///< of findings
    Durations LatencyUs;
    TimeShares Shares;

    std::uint64_t Count(FindingKind kind) const { return ByKind[static_cast<std::size_t>(kind)]; }

    /// To be called after LogReader::Finish, while the reader lives.
    void Finish();

    void OnSession(const read::Session& session) override;
    void OnEntry(const read::Call& call, bool isEvent) override;
    void OnCall(const read::Call& call) override;
    void OnEvent(const read::Event& event) override;
    void OnParam(const read::Param& param) override;
    void OnProblem(const read::Problem& problem) override;
    void OnFinding(const Finding& finding) override;
    void OnEnded(const read::Exchange& exchange) override;
    void OnUnstarted(const read::Exchange& request) override { OnEnded(request); }

private:
    void Measure(const read::Call& call, std::string_view name);
    void SeeModules(const read::Call& call);
    void SeeVersion(const read::Call& call);
    void SeeLink(const read::Call& call);
    LinkFacts* FactsOf(const read::Link& link);
    ModuleFacts* ModuleOf(std::uint32_t session, std::uint32_t handle);

    Console& console_;
    const std::vector<read::LogFile>& files_;
    void Retire(const read::Session& session);

    TimeRange range_;
    std::deque<const read::Session*> live_; ///< the newest, as long as the reader keeps them
    read::ParamValues params_;
};

} // namespace marvane::tool
