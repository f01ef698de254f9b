// A damaged log loses no more than what was hit: each call that has no damaged line is read as before.
#include <algorithm>
#include <fstream>
#include <iterator>
#include <map>
#include <random>
#include <set>

#include <gtest/gtest.h>

#include "tests/support/pattern.h"
#include "tool/read/reader_test_kit.h"

namespace marvane::read::testing {

namespace {

struct FoundCall
{
    std::string Thread;            ///< as stamps show it
    std::string Text;              ///< all that the reader says of it, but for its numbers and line numbers
    std::set<std::uint64_t> Lines; ///< of it
    std::set<std::uint64_t> Whole; ///< from its first line to its last, those of others too
};

/// Calls and events, and which lines are theirs.
class CallSink : public LogSink
{
public:
    std::vector<FoundCall> Found;

    void OnCall(const Call& call) override { Add(call); }
    void OnEvent(const Event& event) override { Add(event); }

private:
    void Add(const Call& call)
    {
        FoundCall found;
        std::ostringstream text;
        text << call.Name << '(' << call.Arguments << ") thread " << call.Thread << " status "
             << call.Status.value_or(0xFFFF) << ' ' << call.StatusName << " state "
             << static_cast<int>(call.State) << " time " << call.BeginTime.Ms << ' ' << call.EndTime.Ms
             << '\n';
        for (const auto& lines : {call.LinesIn, call.LinesOut})
            for (const CallLine& line : lines) {
                text << line.Text << '\n';
                found.Lines.insert(line.Number);
            }
        found.Text = text.str();
        char thread[16];
        std::snprintf(thread, sizeof thread, "- %08X}", call.Thread);
        found.Thread = thread;
        found.Lines.insert({call.Begin.Line, call.Begin.Line + 1, call.End.Line});
        for (std::uint64_t line = call.Begin.Line; line <= call.End.Line; ++line)
            found.Whole.insert(line);
        Found.push_back(std::move(found));
    }
};

std::vector<FoundCall> CallsOf(const std::string& log)
{
    CallSink sink;
    LogReader reader(sink);
    reader.BeginFile({.Name = "log"});
    reader.Feed(log);
    reader.Finish();
    return std::move(sink.Found);
}

std::string Joined(const std::vector<std::string>& lines)
{
    std::string log;
    for (const std::string& line : lines)
        log += line + '\n';
    return log;
}

std::vector<std::string> LinesOf(const std::string& path)
{
    const std::string stamp = "^\\{time - T([0-9])\\} ";
    std::ifstream file(path);
    std::vector<std::string> lines;
    for (std::string line; std::getline(file, line);)
        lines.push_back(marvane::testing::ReplaceMatches(line, stamp, "{10:00:00.000 - 0000000$1} "));
    return lines;
}

/// A line with some bytes changed, cut, doubled or gone.
void Hit(std::string& line, std::mt19937& random)
{
    const auto below = [&random](std::size_t end) { return end == 0 ? 0 : random() % end; };
    const std::size_t at = below(line.size());
    switch (random() % 4) {
    case 0:
        line.resize(at);
        break;
    case 1:
        line.erase(0, at);
        break;
    case 2:
        line.insert(at, std::string(1 + below(5), static_cast<char>(1 + below(255))));
        break;
    default:
        for (std::size_t i = at; i < std::min(line.size(), at + 8); ++i)
            line[i] = static_cast<char>('!' + below(90));
    }
}

/// The lines that damage has hit, counted from 0: from the first to the last of them.
struct HitLines
{
    std::size_t First;
    std::size_t Last;
    bool IsEnd = false; ///< all that follows is gone too
};

/// True if a call may be lost: one of its lines was hit, or one of its thread while it was open.
bool MayBeLost(const FoundCall& call, const HitLines& hit, const std::vector<std::string>& lines)
{
    for (std::size_t line = hit.First; line <= hit.Last; ++line) {
        const bool isOfThread = lines[line].find(call.Thread) != std::string::npos;
        if (call.Lines.contains(line + 1) || (call.Whole.contains(line + 1) && isOfThread))
            return true;
    }
    return false;
}

/// Some bytes gone, overwritten or added. Returns which lines that has hit.
HitLines HitBytes(std::string& log, std::mt19937& random)
{
    const std::size_t begin = random() % log.size();
    const std::size_t size = std::min<std::size_t>(1 + random() % 600, log.size() - begin);
    const auto lineAt = [&](std::size_t at) {
        return static_cast<std::size_t>(
            std::count(log.begin(), log.begin() + static_cast<std::ptrdiff_t>(at), '\n'));
    };
    const HitLines hit = {lineAt(begin), lineAt(std::min(begin + size, log.size() - 1))};
    std::string noise(size, ' ');
    for (char& byte : noise)
        byte = static_cast<char>(random() % 16 == 0 ? '\n' : random());
    const auto kind = random() % 4;
    if (kind == 0)
        log.resize(begin); // all that follows is gone
    else
        log.replace(begin, kind == 1 ? 0 : size, kind == 2 ? std::string() : noise);
    return kind == 0 ? HitLines{hit.First, hit.First, true} : hit;
}

class DamagedLogs : public ::testing::TestWithParam<const char*>
{
protected:
    /// Expects the calls that were not hit.
    static void ExpectTheOthers(const std::vector<FoundCall>& whole, const std::vector<std::string>& lines,
                                const HitLines& hit, const std::string& damaged)
    {
        std::multiset<std::string> found;
        for (const FoundCall& call : CallsOf(damaged))
            found.insert(call.Text);
        for (const FoundCall& call : whole) {
            const bool isGone = hit.IsEnd && *call.Whole.rbegin() > hit.First;
            if (isGone || MayBeLost(call, hit, lines))
                continue;
            const auto same = found.find(call.Text);
            ASSERT_NE(same, found.end())
                << "lost by damage to lines " << hit.First + 1 << " to " << hit.Last + 1 << ", this call:\n"
                << call.Text;
            found.erase(same);
        }
    }
};

} // namespace

TEST_P(DamagedLogs, LoseNoMoreThanTheLineThatWasHit)
{
    const std::vector<std::string> lines = LinesOf(std::string(MARVANE_SOURCE_DIR "/tests/") + GetParam());
    const std::vector<FoundCall> whole = CallsOf(Joined(lines));
    ASSERT_GT(whole.size(), 10u);
    std::mt19937 random(20261121);
    for (int round = 0; round < 300 && !HasFatalFailure(); ++round) {
        std::vector<std::string> damaged = lines;
        const std::size_t hit = random() % lines.size();
        Hit(damaged[hit], random);
        ExpectTheOthers(whole, lines, {hit, hit}, Joined(damaged));
    }
}

TEST_P(DamagedLogs, LoseNoMoreThanTheBytesThatWereHit)
{
    const std::vector<std::string> lines = LinesOf(std::string(MARVANE_SOURCE_DIR "/tests/") + GetParam());
    const std::vector<FoundCall> whole = CallsOf(Joined(lines));
    std::mt19937 random(20261122);
    for (int round = 0; round < 300 && !HasFatalFailure(); ++round) {
        std::string damaged = Joined(lines);
        const HitLines hit = HitBytes(damaged, random);
        ExpectTheOthers(whole, lines, hit, damaged);
    }
}

INSTANTIATE_TEST_SUITE_P(Logs, DamagedLogs,
                         ::testing::Values("golden/diagnostic_session.log", "golden/traffic_session.log",
                                           "logs/pending.LGR", "logs/two_processes.LGR",
                                           "logs/demo/D-PDU_API_Logger_22-11-2026_00-27-36.LGR"));

} // namespace marvane::read::testing
