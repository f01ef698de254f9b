// Two runs of an application as conversations, compared. Handles, addresses, times of day and the
// interleaving of links do not count.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "tool/analysis/summary_facts.h"

namespace marvane::tool {

/// What a request was and what became of it, as far as runs are compared by it.
struct RunRequest
{
    std::string Link;    ///< name of its protocol or resource
    std::string Bytes;   ///< all that the log shows, and its size
    std::string Similar; ///< its head: what a request with other data has in common
    std::string Text;    ///< as a row shows it
    std::string Words;
    read::Outcome Result = read::Outcome::Open;
    std::uint32_t StartError = 0; ///< of its PDUStartComPrimitive
    std::string Answers;          ///< all answers that are kept, pending ones apart
    std::string AnswerText;       ///< as a row shows the outcome
    std::optional<read::Latency> After;
    read::Position At;
};

/// A run: its facts and its requests in their order.
class Run : public SummaryFacts
{
public:
    Run(Console& console, const std::vector<read::LogFile>& files) : SummaryFacts(console, files) {}

    std::vector<RunRequest> RequestList;
    /// How often each function was called; fetches from an empty queue apart, for how often an application
    /// asks is a matter of time.
    std::map<std::string, std::uint64_t> CallCounts;

    void OnCall(const read::Call& call) override;
    void OnEnded(const read::Exchange& exchange) override;
    /// Call it in place of SummaryFacts::Finish.
    void FinishRun();
};

enum class DifferenceKind : std::uint8_t
{
    OtherOutcome,
    OtherRequest, ///< the same service with other data
    OtherBytes,   ///< the same outcome with other answers
    Slower,
    OnlyFirst,
    OnlySecond,
};

/// "other_outcome", ...
std::string_view DifferenceName(DifferenceKind kind);

/// Requests that differ; the places are indices of Run::RequestList.
struct RequestDifference
{
    DifferenceKind Kind = DifferenceKind::OtherBytes;
    std::optional<std::size_t> First;
    std::optional<std::size_t> Second;
    std::uint64_t Count = 1; ///< how many alike it stands for
};

struct RunDifference
{
    std::vector<RequestDifference>
        Requests; ///< in the order of the first run, those of the second alone where they came
    std::uint64_t SameRequests = 0;
    std::vector<std::string> Facts;     ///< other library, modules, links: a line each
    std::vector<std::string> CallNames; ///< whose count differs

    bool IsEmpty() const { return Requests.empty() && Facts.empty() && CallNames.empty(); }
};

/// A request of the second run is slower from twice the time and five milliseconds on.
RunDifference Compare(const Run& first, const Run& second);

/// How often a run called a function.
std::uint64_t CallCount(const Run& run, const std::string& name);

/// "16 times"; of two latencies.
std::string TimesSlower(const read::Latency& first, const read::Latency& second);

} // namespace marvane::tool
