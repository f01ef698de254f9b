// How fast logs are read: makes a long log out of a short one, and reads it as the commands do.
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <string>

#include "line/stamp.h"
#include "tool/read/log_files.h"

using namespace marvane;
using namespace marvane::read;

namespace {

constexpr std::uint64_t Day = 24ULL * 60 * 60 * 1000;

std::uint64_t TimeOf(const Stamp& stamp)
{
    return ((stamp.Hour * 60ULL + stamp.Minute) * 60 + stamp.Second) * 1000 + stamp.Milliseconds;
}

Stamp Later(const Stamp& stamp, std::uint64_t milliseconds)
{
    const std::uint64_t time = (TimeOf(stamp) + milliseconds) % Day;
    return {static_cast<std::uint16_t>(time / 3600000), static_cast<std::uint16_t>(time / 60000 % 60),
            static_cast<std::uint16_t>(time / 1000 % 60), static_cast<std::uint16_t>(time % 1000),
            stamp.Thread};
}

/// Moves the stamps of a log. Returns the time from its first line to its last.
std::uint64_t Move(std::string& log, std::uint64_t milliseconds)
{
    std::uint64_t first = Day;
    std::uint64_t last = 0;
    for (std::size_t at = 0; at < log.size(); at = log.find('\n', at) + 1) {
        const std::optional<Stamp> stamp = ParseStamp(std::string_view(log).substr(at));
        if (stamp) {
            PutStamp(log.data() + at, Later(*stamp, milliseconds));
            first = std::min(first, TimeOf(*stamp));
            last = std::max(last, TimeOf(*stamp));
        }
        if (log.find('\n', at) == std::string::npos)
            break;
    }
    return last - first;
}

int Make(const char* from, const char* to, std::uint64_t megabytes)
{
    std::ifstream source(from, std::ios::binary);
    std::string log((std::istreambuf_iterator<char>(source)), {});
    if (log.empty())
        return EXIT_FAILURE;
    const std::uint64_t length = Move(log, 0) + 1000;
    std::ofstream target(to, std::ios::binary);
    for (std::uint64_t written = 0; written < megabytes * 1000000; written += log.size()) {
        target << log;
        Move(log, length);
    }
    return target.good() ? EXIT_SUCCESS : EXIT_FAILURE;
}

/// Uses a little of each record, so that nothing of it is left out.
struct Analysis : LogSink
{
    std::uint64_t Sum = 0;

    void OnCall(const Call& call) override
    {
        Sum += call.HasFailed() + static_cast<std::uint64_t>(call.Duration());
        for (const CallLine& line : call.LinesOut)
            Sum += line.Text.size();
    }
    void OnEvent(const Event& event) override { Sum += event.Type; }
    void OnItem(const Item& item) override { Sum += item.Timestamp + item.Data.Shown.size(); }
    void OnComms(const Comms& report) override { Sum += report.Data.Shown.size(); }
    void OnParam(const Param& param) override { Sum += param.Id; }
};

/// Whole calls with a text in them.
struct Filter : LogSink
{
    std::uint64_t Sum = 0;

    void OnCall(const Call& call) override
    {
        bool found = call.Arguments.find("CP_P2Max") != std::string_view::npos;
        for (const auto& lines : {call.LinesIn, call.LinesOut})
            for (const CallLine& line : lines)
                found = found || line.Text.find("CP_P2Max") != std::string_view::npos;
        Sum += found;
    }
};

int Read(LogSink& sink, Wants wants, const char* path, const std::uint64_t& sum)
{
    const auto begin = std::chrono::steady_clock::now();
    LogReader reader(sink, wants);
    for (const LogFile& file : FindLogFiles({path}).Files)
        ReadLogFile(file, reader);
    reader.Finish();
    const std::chrono::duration<double> time = std::chrono::steady_clock::now() - begin;
    const ReadCounts& counts = reader.Counts();
    std::printf("%.0f MB/s   %llu lines, %llu calls, %llu events, %llu damaged lines (%llu)\n",
                static_cast<double>(counts.Bytes) / time.count() / 1e6,
                static_cast<unsigned long long>(counts.Lines), static_cast<unsigned long long>(counts.Calls),
                static_cast<unsigned long long>(counts.Events),
                static_cast<unsigned long long>(counts.DamagedLines), static_cast<unsigned long long>(sum));
    return counts.Lines == 0 ? EXIT_FAILURE : EXIT_SUCCESS;
}

} // namespace

int main(int count, char** values)
{
    if (count == 5 && std::strcmp(values[1], "make") == 0)
        return Make(values[2], values[3], std::strtoull(values[4], nullptr, 10));
    Analysis analysis;
    if (count == 3 && std::strcmp(values[1], "analyse") == 0)
        return Read(analysis, Wants::All, values[2], analysis.Sum);
    Filter filter;
    if (count == 3 && std::strcmp(values[1], "filter") == 0)
        return Read(filter, Wants::Calls, values[2], filter.Sum);
    std::fputs("usage: marvane_read_bench make FROM TO MEGABYTES | analyse FILE | filter FILE\n", stderr);
    return 2;
}
