// The conversation on the screen: headings, rows, folds, remarks.
#pragma once

#include <map>
#include <optional>
#include <vector>

#include "tool/commands/console.h"
#include "tool/commands/conversation.h"
#include "tool/commands/ecu_state.h"
#include "tool/commands/log_source.h"
#include "tool/commands/settings_hints.h"
#include "tool/commands/talk_filter.h"
#include "tool/commands/talk_folds.h"
#include "tool/commands/talk_layout.h"
#include "tool/export/redactor.h"

namespace marvane::tool {

/// How many requests ended how.
struct TalkCounts
{
    std::uint64_t Requests = 0;
    std::uint64_t ByOutcome[6] = {};
    std::uint64_t Late = 0;
    std::uint64_t Cut = 0; ///< requests or answers of which the log shows a part
    bool HasLogTimes = false;
    bool HasLibraryTimes = false;
};

/// Writes the conversation as rows, under a heading for each change of link.
class TalkScreen : public Conversation
{
public:
    TalkScreen(Console& console, const std::vector<read::LogFile>& files, TalkFilter filter);

    /// What was replaced is marked. The redactor outlives this.
    void MarkRedacted(const Redactor& redactor) { redactor_ = &redactor; }

    /// Begins to read anew, and shows the link of this handle alone.
    void Restart(const read::Link& link);

    void OnSession(const read::Session& session) override;
    void OnProblem(const read::Problem& problem) override;
    void OnUtterance(const Utterance& utterance) override;
    /// Writes the run that is still being folded. To be called when nothing more comes for now.
    void FinishFold() { WriteFold(); }

    /// Of all that was shown.
    const TalkCounts& Counts() const { return counts_; }
    std::uint64_t RowCount() const { return rows_; }
    /// False if there was no line of a log.
    bool HasSession() const { return !begins_.empty(); }
    /// Of all sessions that were read.
    const SettingsHints& Hints() const { return hints_; }

private:
    bool IsShown(const read::Link& link) const;
    read::LogTime BeginOf(std::uint32_t session, read::LogTime otherwise) const;
    void Show(const read::Exchange& exchange);
    void Show(const read::ParamChange& change);
    void Show(const read::LateAnswer& late);
    void Count(const read::Exchange& exchange);
    void WriteFold();
    void WriteHeadings(const read::Link& link, std::uint32_t session, read::LogTime time);
    void Write(const std::string& lines);

    Console& console_;
    const Redactor* redactor_ = nullptr;
    const std::vector<read::LogFile>& files_;
    TalkFilter filter_;
    TalkLayout layout_;
    TalkFold fold_;
    EcuStates states_;
    std::optional<read::Link> only_;
    bool isAgain_ = false;
    std::map<std::uint32_t, read::LogTime> begins_; ///< by session
    SettingsHints hints_;
    std::uint32_t session_ = 0;
    std::optional<read::Link> link_;
    bool hasHeading_ = false;
    TalkCounts counts_;
    std::uint64_t rows_ = 0;
};

} // namespace marvane::tool
