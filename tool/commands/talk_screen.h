// The conversation on the screen: headings, rows, folds, remarks.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <tuple>
#include <vector>

#include "tool/analysis/conversation.h"
#include "tool/analysis/ecu_state.h"
#include "tool/analysis/settings_hints.h"
#include "tool/commands/talk_filter.h"
#include "tool/commands/talk_folds.h"
#include "tool/commands/talk_layout.h"
#include "tool/console/console.h"
#include "tool/export/redactor.h"
#include "tool/input/log_source.h"
#include "tool/input/spooled_texts.h"

namespace marvane::tool {

/// How many requests ended how.
struct TalkCounts
{
    std::uint64_t Requests = 0;
    std::uint64_t ByOutcome[read::OutcomeCount] = {};
    std::uint64_t Late = 0;
    std::uint64_t Cut = 0; ///< requests or answers of which the log shows a part
    bool HasLogTimes = false;
    bool HasLibraryTimes = false;
};

/// Writes the conversation as rows, under a heading for each change of link; or one link after the other.
class TalkScreen : public Conversation
{
public:
    TalkScreen(Console& console, const std::vector<read::LogFile>& files, TalkFilter filter);

    /// What was replaced is marked. The redactor outlives this.
    void MarkRedacted(const Redactor& redactor) { redactor_ = &redactor; }

    /// Writes nothing before FinishFold, and then the links one after the other, in the order of their first
    /// request. Rows wait in a temporary file.
    void ShowByLink() { isByLink_ = true; }

    void OnSession(const read::Session& session) override;
    void OnProblem(const read::Problem& problem) override;
    void OnUtterance(const Utterance& utterance) override;
    /// Writes the run that is still being folded. To be called when nothing more comes for now.
    void FinishFold();

    /// Of all that was shown.
    const TalkCounts& Counts() const { return counts_; }
    std::uint64_t RowCount() const { return rows_; }
    /// False if there was no line of a log.
    bool HasSession() const { return !begins_.empty(); }
    /// Of all sessions that were read.
    const SettingsHints& Hints() const { return hints_; }

private:
    /// More runs than this are not held open side by side: then all of them end.
    static constexpr std::size_t MostFolds = 4096;

    /// Rows that follow each other: those of the whole screen, or of one link.
    struct Page
    {
        std::size_t Number = 0;
        TalkFold Fold;
        std::shared_ptr<const read::Link> On; ///< of the first row; null as long as there is none
        std::uint32_t Session = 0;
        read::LogTime Time; ///< of the first row
    };
    using PageKey = std::tuple<std::uint32_t, std::uint32_t, std::uint32_t>; ///< session, module, link

    void Turn(const read::Link& link);
    void WritePages();
    void WriteHeadings(const std::shared_ptr<const read::Link>& link, std::uint32_t session,
                       read::LogTime time);
    read::LogTime BeginOf(std::uint32_t session, read::LogTime otherwise) const;
    void Show(const read::Exchange& exchange);
    void Show(const read::ParamChange& change);
    void Show(const read::LateAnswer& late);
    void Count(const read::Exchange& exchange);
    void WriteFold(Page& page);
    void BeginFold(const read::Exchange& exchange);
    void WriteHeadings(const read::Link& link, std::uint32_t session, read::LogTime time);
    void Write(const std::string& lines);

    Console& console_;
    const Redactor* redactor_ = nullptr;
    const std::vector<read::LogFile>& files_;
    TalkFilter filter_;
    TalkLayout layout_;
    bool isByLink_ = false;
    Page whole_;
    std::map<PageKey, Page> pages_; ///< by link
    Page* page_ = &whole_;          ///< the one whose rows are written
    SpooledTexts texts_;            ///< of the pages of links, by their numbers
    std::size_t openFolds_ = 0;     ///< of the pages of links
    EcuStates states_;
    std::map<std::uint32_t, read::LogTime> begins_; ///< by session
    SettingsHints hints_;
    std::uint32_t session_ = 0;
    std::optional<read::Link> link_;
    bool hasHeading_ = false;
    TalkCounts counts_;
    std::uint64_t rows_ = 0;
};

} // namespace marvane::tool
