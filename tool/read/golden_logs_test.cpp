// The golden logs of the logger library, read back: each "+" line is one call or one event, and no line is
// left over. Their stamps are normalised and get a time here.
#include <algorithm>
#include <fstream>

#include <gtest/gtest.h>

#include "tests/support/pattern.h"
#include "tool/read/reader_test_kit.h"

namespace marvane::read::testing {

namespace {

struct GoldenCase
{
    const char* Name;
    std::uint64_t NotLoaded; ///< calls that have no "+" line
};

std::string WithStamps(const std::string& name)
{
    const std::string stamp = "^\\{time - T([0-9])\\} ";
    std::ifstream file(std::string(MARVANE_SOURCE_DIR "/tests/golden/") + name + ".log");
    std::string log;
    for (std::string line; std::getline(file, line);)
        log += marvane::testing::ReplaceMatches(line, stamp, "{10:00:00.000 - 0000000$1} ") + '\n';
    return log;
}

std::uint64_t CountOf(const std::string& text, std::string_view part)
{
    std::uint64_t count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
        ++count;
    return count;
}

/// In which lines a call or an event begins, and what the lines are.
class Beginnings : public LogSink
{
public:
    std::vector<std::uint64_t> EntryLines; ///< lines with a "+"
    std::vector<std::uint64_t> Begun;      ///< first lines of calls and events that have one with a "+"

    void OnLine(const Line& line) override
    {
        if (line.Whole.find("} + ") != std::string_view::npos)
            EntryLines.push_back(line.At.Line);
    }
    void OnCall(const Call& call) override { Add(call); }
    void OnEvent(const Event& event) override { Add(event); }

private:
    void Add(const Call& call)
    {
        if (call.State != CallState::NotLoaded)
            Begun.push_back(call.Begin.Line);
    }
};

class GoldenLogs : public ::testing::TestWithParam<GoldenCase>
{
};

} // namespace

TEST_P(GoldenLogs, AreReadToTheLastLine)
{
    const std::string log = WithStamps(GetParam().Name);
    ASSERT_FALSE(log.empty());
    TextSink sink;
    LogReader reader(sink);
    reader.BeginFile({.Name = GetParam().Name});
    reader.Feed(log);
    reader.Finish();
    const ReadCounts& counts = reader.Counts();
    EXPECT_EQ(counts.Calls + counts.Events, CountOf(log, "} + ") + GetParam().NotLoaded);
    EXPECT_EQ(counts.Items, CountOf(log, "   <--  *ppEventItem ("));
    EXPECT_EQ(counts.Comms, CountOf(log, "} NULL ") + CountOf(log, "} [DoIP"));
    EXPECT_EQ(counts.DamagedLines, 0u);
    EXPECT_EQ(CountOf(sink.Text(), " not loaded: "), GetParam().NotLoaded);
    EXPECT_EQ(CountOf(sink.Text(), "exit without entry"), 0u);
    EXPECT_EQ(CountOf(sink.Text(), "in flight"), 0u);
    EXPECT_EQ(CountOf(sink.Text(), " cut: "), 0u);
}

TEST_P(GoldenLogs, HaveOneCallOrEventForEachEntryLine)
{
    const std::string log = WithStamps(GetParam().Name);
    Beginnings sink;
    LogReader reader(sink);
    reader.BeginFile({.Name = GetParam().Name});
    reader.Feed(log);
    reader.Finish();
    ASSERT_FALSE(sink.EntryLines.empty());
    std::ranges::sort(sink.Begun);
    EXPECT_EQ(sink.Begun, sink.EntryLines);
}

INSTANTIATE_TEST_SUITE_P(All, GoldenLogs,
                         ::testing::Values(GoldenCase{"diagnostic_session", 0},
                                           GoldenCase{"error_session", 29}, GoldenCase{"traffic_session", 0}),
                         [](const auto& test) { return std::string(test.param.Name); });

} // namespace marvane::read::testing
