// Checks of the log after each step of a sequence: the lines that must be there, changes of file, files that
// were trimmed.
#pragma once

#include <deque>
#include <set>
#include <string>
#include <vector>

#include "tests/fuzz/followed_log.h"
#include "tests/fuzz/sequence_model.h"

namespace marvane::testing {

/// How often something was checked, so that a run that checked nothing is noticed.
struct CheckCounts
{
    int Marks = 0;     ///< entry and exit lines, events and reports found in the log
    int Changes = 0;   ///< calls after which the file changed
    int Trimmings = 0; ///< openings after which the files were compared
    int DoubtfulSteps = 0;
};

/// Failures are reported as failures of the running test. Not thread-safe.
class SequenceChecks
{
public:
    /// A line that the log must hold: thread id, space, text.
    struct Mark
    {
        std::string Text;
        bool MayBeMissing;
    };

    explicit SequenceChecks(std::filesystem::path logFolder) : log_(std::move(logFolder)) {}

    /// A step begins. Its checks are those of its end.
    void BeginStep();
    void EndStep(const LoggerModel& model);

    /// The present step starts or ends the logger.
    void NoteLifecycle() { lifecycle_ = true; }
    void NoteStart(const Start& start, bool isNested);

    /// The calling thread must have logged this mark, in its turn. One that may be missing is optional.
    void Expect(const std::string& text, bool mayBeMissing = false);

    /// What the call that has returned did besides, see FactOfCall.
    void Note(const std::string& fact);

    /// The log folder was tampered with: what was written may be lost, until a file is opened in a sound
    /// folder.
    void Doubt();
    bool InDoubt() const { return doubt_; }

    /// Puts a file into the log folder that no check counts as new.
    void Plant(const std::string& name) { log_.Plant(name); }
    const CheckCounts& Counts() const { return counts_; }

    /// All that was expected since the beginning, or since the last doubt.
    const std::vector<Mark>& History() const { return history_; }
    /// All that was noted since then.
    const std::vector<std::string>& Facts() const { return facts_; }

private:
    void CheckLines(const LoggerModel& model);
    void GatherMarks(const std::vector<LogLine>& lines);
    void CheckMarks();
    /// True if the marks found from `seen` on are those expected from `expected` on, but for optional ones.
    /// `furthest` becomes the first one that was never found.
    bool Fits(std::size_t expected, std::size_t seen, bool wasCut, std::size_t& furthest) const;
    void CheckChanges(const std::vector<LogLine>& lines, const LoggerModel& model);
    void CheckFiles(const LoggerModel& model);

    FollowedLog log_;
    bool doubt_ = false;
    std::deque<Mark> expected_;
    std::vector<Mark> history_;
    std::vector<std::string> facts_;
    std::deque<std::string> seen_;
    CheckCounts counts_;

    // Of the present step.
    std::set<std::string> filesBefore_;
    bool lifecycle_ = false;
    int starts_ = 0;
    std::size_t opened_ = 0;
};

} // namespace marvane::testing
