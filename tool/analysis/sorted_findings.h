// Findings in the order of their lines, counted by kind.
#pragma once

#include <cstdint>
#include <map>
#include <utility>
#include <vector>

#include "tool/analysis/findings.h"
#include "tool/input/log_source.h"

namespace marvane::tool {

// Findings wait to be shown in the order of lines, but no more than so many.
inline constexpr std::size_t MostFindingsWaiting = 50'000;

/// Findings in the order of their lines.
class SortedFindings : public Findings
{
public:
    SortedFindings(Console& console, const std::vector<read::LogFile>& files, bool isAll)
        : console_(console), files_(files), isAll_(isAll)
    {
    }

    virtual void Show(const Finding& finding) = 0;

    void OnSession(const read::Session& session) override
    {
        Findings::OnSession(session);
        begins_[session.Number] = session.BeginTime;
    }

    void OnProblem(const read::Problem& problem) override
    {
        ComplainAbout(problem, files_, console_);
        Findings::OnProblem(problem);
    }

    void OnFinding(const Finding& finding) override
    {
        counts_[static_cast<std::size_t>(finding.Kind)] += finding.Count;
        if (IsNormal(finding.Kind) && !isAll_)
            return;
        waiting_.emplace(std::pair(finding.Session, finding.At), finding);
        if (waiting_.size() > MostFindingsWaiting)
            ShowWaiting();
    }

    void Finish()
    {
        FinishFindings();
        ShowWaiting();
    }

    std::uint64_t Count(FindingKind kind) const { return counts_[static_cast<std::size_t>(kind)]; }
    /// Of all that are not normal.
    std::uint64_t ErrorCount() const
    {
        std::uint64_t sum = 0;
        for (std::size_t i = 0; i < std::size(counts_); ++i)
            sum += IsNormal(static_cast<FindingKind>(i)) ? 0 : counts_[i];
        return sum;
    }
    bool HasSeveralSessions() const { return begins_.size() > 1; }
    /// False if there was no line of a log.
    bool HasSession() const { return !begins_.empty(); }
    read::LogTime BeginOf(const Finding& finding) const
    {
        const auto found = begins_.find(finding.Session);
        return found == begins_.end() ? finding.Time : found->second;
    }

    /// Shows what was found so far.
    void ShowWaiting()
    {
        for (const auto& [place, finding] : waiting_)
            Show(finding);
        waiting_.clear();
    }

private:
    Console& console_;
    const std::vector<read::LogFile>& files_;
    bool isAll_;
    std::map<std::uint32_t, read::LogTime> begins_; ///< by session
    std::multimap<std::pair<std::uint32_t, read::Position>, Finding> waiting_;
    std::uint64_t counts_[12] = {};
};

} // namespace marvane::tool
