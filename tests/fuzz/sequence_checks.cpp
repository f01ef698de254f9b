#include "tests/fuzz/sequence_checks.h"

#include <algorithm>
#include <cstdio>

#include <gtest/gtest.h>

#include "line/marks.h"
#include "platform/process.h"
#include "tool/read/line_kind.h"

namespace marvane::testing {

namespace {

/// Among the marks: the text of a phase was cut here.
constexpr const char* Cut = "~";

constexpr std::string_view FullMark = marks::BufferFull.substr(0, marks::BufferFull.size() - 1);

std::string ThreadText()
{
    char text[20];
    std::snprintf(text, sizeof text, "%08X ", static_cast<unsigned>(platform::CurrentThreadId()));
    return text;
}

/// What a line of the log says of a call, an event or a report; empty for all other lines.
std::string MarkOf(const LogLine& line)
{
    const std::string& text = line.Content;
    const std::string thread = line.Thread + " ";
    const auto isOfTheApi = [&](std::string_view mark) {
        return text.starts_with(std::string(mark) + "PDU");
    };
    switch (line.Kind) {
    case read::LineKind::Entry:
        return isOfTheApi(marks::Entry) ? thread + text.substr(0, text.find('(')) : "";
    case read::LineKind::Exit:
        return isOfTheApi(marks::Exit) ? thread + text : "";
    case read::LineKind::NotLoaded:
        return thread + text;
    case read::LineKind::Comms:
        return thread + std::string(read::ParseReportTitle(text)->Title);
    default:
        return "";
    }
}

} // namespace

void SequenceChecks::BeginStep()
{
    filesBefore_ = log_.Names();
    lifecycle_ = false;
    starts_ = 0;
    opened_ = 0;
}

void SequenceChecks::EndStep(const LoggerModel& model)
{
    CheckLines(model);
    CheckFiles(model);
}

void SequenceChecks::NoteStart(const Start& start, bool isNested)
{
    lifecycle_ = true;
    ++starts_;
    const bool opensFirst = start.OpensFile && start.FolderIsSound && !start.FileWasOpen;
    if (doubt_ && opensFirst && !isNested && !start.ErasesAll) {
        doubt_ = false;
        log_.SkipAll();
    }
    if (start.ErasesAll || !start.FolderIsSound || (start.OpensFile && start.FileWasOpen))
        Doubt();
    if (start.OpensFile && start.FolderIsSound)
        ++opened_;
}

void SequenceChecks::Expect(const std::string& text, bool mayBeMissing)
{
    if (doubt_)
        return;
    expected_.push_back({ThreadText() + text, mayBeMissing});
    history_.push_back(expected_.back());
}

void SequenceChecks::Note(const std::string& fact)
{
    if (!doubt_ && !fact.empty())
        facts_.push_back(fact);
}

void SequenceChecks::Doubt()
{
    doubt_ = true;
    history_.clear();
    facts_.clear();
    expected_.clear();
    seen_.clear();
}

void SequenceChecks::CheckLines(const LoggerModel& model)
{
    // A file may have been created again under its name. Its lines are checked at the end of the sequence.
    if (doubt_) {
        ++counts_.DoubtfulSteps;
        return log_.SkipAll();
    }
    const std::vector<LogLine> lines = log_.NewLines();
    const bool isOnDisk = model.IsOnDisk();
    if (std::exchange(log_.Lost, false)) {
        Doubt();
        doubt_ = !isOnDisk;
        opened_ = 0;
        return log_.SkipAll();
    }
    GatherMarks(lines);
    // Buffered lines are checked when they reach the file.
    if (isOnDisk || !model.FileIsOpen())
        CheckMarks();
    const auto changes =
        static_cast<std::size_t>(std::count_if(lines.begin(), lines.end(), [](const LogLine& line) {
            return line.Content.ends_with(marks::ContinuationFile);
        }));
    opened_ += changes;
    // The limits at the opening of a file are known only if there was at most one start, and before it.
    const bool limitsAreKnown = starts_ == 0 || (starts_ == 1 && changes == 0);
    if (!isOnDisk || !limitsAreKnown)
        opened_ = 0;
    if (isOnDisk && !lifecycle_)
        CheckChanges(lines, model);
}

void SequenceChecks::GatherMarks(const std::vector<LogLine>& lines)
{
    for (const LogLine& line : lines) {
        if (std::string mark = MarkOf(line); !mark.empty())
            seen_.push_back(std::move(mark));
        if (line.Content.ends_with(FullMark))
            seen_.push_back(Cut);
    }
}

void SequenceChecks::CheckMarks()
{
    std::size_t furthest = 0;
    if (Fits(0, 0, false, furthest))
        counts_.Marks += static_cast<int>(seen_.size());
    else {
        std::string seen;
        for (const std::string& mark : seen_)
            seen += mark + "\n";
        const bool atEnd = furthest == expected_.size();
        ADD_FAILURE() << "missing: " << (atEnd ? "nothing" : expected_[furthest].Text) << ", found:\n"
                      << seen;
    }
    expected_.clear();
    seen_.clear();
}

bool SequenceChecks::Fits(std::size_t expected, std::size_t seen, bool wasCut, std::size_t& furthest) const
{
    furthest = std::max(furthest, expected);
    for (; seen < seen_.size() && seen_[seen] == Cut; ++seen)
        wasCut = true;
    if (expected == expected_.size())
        return seen == seen_.size();
    const Mark& mark = expected_[expected];
    if (seen < seen_.size() && seen_[seen] == mark.Text && Fits(expected + 1, seen + 1, false, furthest))
        return true;
    // The line for which no room was left is the last one of its text.
    const bool mayBeMissing = mark.MayBeMissing || (wasCut && mark.Text.find(" - PDU") != std::string::npos);
    return mayBeMissing && Fits(expected + 1, seen, wasCut, furthest);
}

void SequenceChecks::CheckChanges(const std::vector<LogLine>& lines, const LoggerModel& model)
{
    const UNUM32 limit = model.SizeLimit();
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const std::string& text = lines[i].Content;
        const bool isLast = i + 1 == lines.size();
        const std::string next = isLast ? "" : lines[i + 1].Content;
        if (text.ends_with(" - Changing log file")) {
            ++counts_.Changes;
            const std::string name = text.substr(0, text.find(" - Changing"));
            EXPECT_EQ(next, name + " - Continuation file");
            ASSERT_LT(i + 2, lines.size());
            EXPECT_TRUE(lines[i + 2].Content.starts_with("########## D-PDU API LOGGER VERSION: "))
                << lines[i + 2].Content;
        } else if (!isLast) {
            EXPECT_EQ(lines[i].File, lines[i + 1].File) << "the file changed after: " << text;
        }
        if (!text.starts_with("- PDU") || text == "- PDUCallbackTrap")
            continue;
        const std::string name = text.substr(2, text.find('<') - 2);
        const bool changes = (model.BeginsFileAtDisconnect() && name == "PDUModuleDisconnect") ||
                             (limit != 0 && lines[i].End > limit);
        EXPECT_EQ(next == "# " + name + " - Changing log file", changes)
            << text << " ends at " << lines[i].End << " of " << limit << ", after it: " << next;
    }
}

void SequenceChecks::CheckFiles(const LoggerModel& model)
{
    if (doubt_ || opened_ != 1)
        return;
    ++counts_.Trimmings;
    std::set<std::string> kept = filesBefore_;
    while (kept.size() > model.Value("LogFileMaxNum") + 1)
        kept.erase(kept.begin());
    const std::set<std::string> after = log_.Names();
    std::vector<std::string> added;
    std::set_difference(after.begin(), after.end(), kept.begin(), kept.end(), std::back_inserter(added));
    EXPECT_TRUE(std::includes(after.begin(), after.end(), kept.begin(), kept.end()))
        << "too many files were erased";
    EXPECT_LE(added.size(), model.Value("LogFileMaxNum") == 0 && !kept.empty() ? 0u : 1u)
        << "surplus files were not erased";
}

} // namespace marvane::testing
