// What the logger did in a random sequence of calls is what the reader of logs finds: each call with its
// status, thread and nesting, each event, each report, each item handed out and destroyed, each request.
#include <algorithm>
#include <map>
#include <sstream>
#include <tuple>

#include <gtest/gtest.h>

#include "tests/fuzz/call_facts.h"
#include "tests/fuzz/call_sequence.h"
#include "tool/read/log_files.h"

namespace marvane::testing {
namespace {

using namespace marvane::read;

/// The beginnings and ends of all that was read, as the checks of a sequence write them.
class MarkSink : public FactSink
{
public:
    struct Found
    {
        Position At;
        std::string Text;
        std::size_t Depth = 0; ///< of a call or event
        bool IsCut = false;    ///< the end of a call whose exit line is lost
    };

    std::vector<Found> Marks;
    std::string Problems;

    void OnCall(const Call& call) override
    {
        FactSink::OnCall(call);
        if (call.Which != Function::LoggerUninitialise)
            Add(call);
    }
    void OnEvent(const Event& event) override { Add(event); }
    void OnComms(const Comms& report) override
    {
        Marks.push_back({report.At, ThreadOf(report.Thread) + std::string(report.Title)});
    }
    void OnProblem(const Problem& problem) override
    {
        // A call in which the session was ended has no exit line.
        if (problem.What == ProblemKind::Cut || problem.What == ProblemKind::NotLoaded ||
            problem.What == ProblemKind::InFlight)
            return;
        std::ostringstream text;
        text << "line " << problem.At.Line << ": problem " << static_cast<int>(problem.What) << ' '
             << problem.Text;
        Problems += text.str() + '\n';
    }

private:
    static std::string ThreadOf(std::uint32_t thread)
    {
        char text[16];
        std::snprintf(text, sizeof text, "%08X ", thread);
        return text;
    }

    void Add(const Call& call)
    {
        const std::string name(call.Name);
        const std::string thread = ThreadOf(call.Thread);
        if (call.State == CallState::NotLoaded) {
            Marks.push_back({call.Begin, thread + name + " - Called but library not loaded!"});
            return;
        }
        Marks.push_back({call.Begin, thread + "+ " + name, call.Depth});
        if (call.State == CallState::InFlight)
            return;
        char status[20] = "";
        if (call.Status)
            std::snprintf(status, sizeof status, " (0x%04X)>", static_cast<unsigned>(*call.Status));
        const std::string end = call.Status ? "<" + std::string(call.StatusName) + status : "";
        Marks.push_back({call.End, thread + "- " + name + end, call.Depth, call.State == CallState::Cut});
    }
};

/// Which calls and callbacks of a thread the expected marks have begun and not ended.
class Nesting
{
public:
    /// Takes the next mark over, without its thread. Returns the depth at which it is.
    std::size_t Take(const std::string& mark, bool hasEvents)
    {
        const bool isEvent = mark.find("PDUCallbackTrap") != std::string::npos;
        if (mark.starts_with("+ ")) {
            isPlain_ |= open_.empty();
            isPlain_ &= !hasEvents || open_.empty() || open_.back() != isEvent;
            open_.push_back(isEvent);
            return open_.size() - 1;
        }
        if (!mark.starts_with("- "))
            return open_.size();
        if (open_.empty()) { // it was open when the session was ended
            isPlain_ = false;
            return 0;
        }
        open_.pop_back();
        const std::size_t depth = open_.size();
        if (mark.starts_with("- PDUDestruct<"))
            open_.clear();
        return depth;
    }
    /// False if calls were made inside calls without a callback, although those are logged, or if the session
    /// was ended inside a call: what encloses what can then not be told from a log.
    bool IsPlain() const { return isPlain_; }

private:
    std::vector<bool> open_; ///< true for a callback
    bool isPlain_ = true;
};

/// Compares in the order of the log, and the nesting with that of the expected marks.
void ExpectSame(const std::vector<SequenceChecks::Mark>& expected, const std::vector<MarkSink::Found>& found,
                bool hasEvents, std::size_t& depthsCompared)
{
    std::map<std::string, Nesting> nestings;
    std::size_t next = 0;
    for (const SequenceChecks::Mark& mark : expected) {
        const std::string thread = mark.Text.substr(0, 9);
        const std::string text = mark.Text.substr(9);
        Nesting& nesting = nestings[thread];
        const std::size_t depth = nesting.Take(text, hasEvents);
        const bool isCut = next < found.size() && found[next].IsCut &&
                           mark.Text.starts_with(found[next].Text.substr(0, found[next].Text.find('<')));
        if (next == found.size() || (found[next].Text != mark.Text && !isCut)) {
            ASSERT_TRUE(mark.MayBeMissing) << mark.Text << " is not found, but "
                                           << (next == found.size() ? "the end" : found[next].Text);
            continue;
        }
        const bool isHalf = text.starts_with("+ ") || text.starts_with("- ");
        if (isHalf && nesting.IsPlain()) {
            ASSERT_EQ(found[next].Depth, depth) << mark.Text << " line " << found[next].At.Line;
            depthsCompared += depth > 0 ? 1 : 0;
        }
        ++next;
    }
    EXPECT_EQ(next, found.size()) << found[next].Text;
}

struct Settings
{
    const char* Name;
    bool HasEvents;
    bool HasBytes; ///< decoded lines of requests and items
    SequenceSettings Values;
};

class ReadBack : public ::testing::TestWithParam<std::tuple<unsigned, Settings>>
{
};

TEST_P(ReadBack, FindsWhatTheLoggerDid)
{
    const auto& [seed, settings] = GetParam();
    Session session;
    CallSequence sequence(session, seed);
    sequence.RunEachCall(20, settings.Values);
    MarkSink sink;
    LogReader reader(sink);
    for (const LogFile& file : FindLogFiles({session.LogFolder().string()}).Files)
        EXPECT_TRUE(ReadLogFile(file, reader)) << file.Begin.Name;
    reader.Finish();
    EXPECT_EQ(sink.Problems, "");
    std::ranges::stable_sort(sink.Marks, {}, &MarkSink::Found::At);
    ASSERT_GT(sequence.History().size(), 100u);
    std::size_t depths = 0;
    ExpectSame(sequence.History(), sink.Marks, settings.HasEvents, depths);
    EXPECT_GT(depths, 0u);
    if (settings.HasBytes) {
        EXPECT_GT(sequence.Facts().size(), 30u);
        ExpectSameFacts(sequence.Facts(), sink.Facts);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Seeds, ReadBack,
    ::testing::Combine(
        ::testing::Range(1u, 5u),
        ::testing::Values(
            Settings{"All", true, true, {}}, Settings{"NoCallOuts", true, true, {{"LogCallOuts", "0"}}},
            Settings{"NoEvents", false, true, {{"LogCbCalls", "0"}}},
            Settings{
                "CallsOnly", false, false, {{"LogFnCalls", "1"}, {"LogCallOuts", "0"}, {"LogCbCalls", "0"}}},
            Settings{"SeveralFiles", true, true, {{"LogFileMaxSize", "8000"}, {"LogFileMaxNum", "1000"}}})),
    [](const auto& test) { return std::get<1>(test.param).Name + std::to_string(std::get<0>(test.param)); });

} // namespace
} // namespace marvane::testing
