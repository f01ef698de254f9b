// The benchmark program. It measures with Google Benchmark where that is available, otherwise (on Windows)
// with a timer of its own. Both print the same table.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <map>
#include <string>
#include <thread>
#include <vector>

#include "bench/rows.h"
#ifdef MARVANE_BENCH_GOOGLE
#include "bench/google.h"
#endif

using namespace marvane::bench;

namespace {

constexpr const char* Usage = R"(Usage: marvane_bench [OPTION...]

Compares a call through Marvane with the bare call, with a minimal logger that writes the same bytes
(the floor), and with spdlog.

  (no option)              all rows by Google Benchmark, if this program was built with it; its options
                           (--benchmark_filter=..., --benchmark_out=FILE, ...) pass through
  --time [TEXT]            the rows whose name contains TEXT, with the program's own timer
  --list                   the names of the rows
  --row NAME --times N     runs one row N times and nothing else, for callgrind. The function to count is
                           CountedRun
  --help                   this text
)";

const Row* Find(const std::string& name)
{
    for (const Row& row : Rows())
        if (row.Name() == name)
            return &row;
    return nullptr;
}

double SecondsOf(const Row& row, std::size_t times)
{
    // Processor time: other programs disturb it less than wall time.
    if (row.Threads == 1) {
        const std::clock_t start = std::clock();
        row.Run(times);
        return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
    }
    const auto start = std::chrono::steady_clock::now();
    std::vector<std::thread> others;
    for (unsigned i = 1; i < row.Threads; ++i)
        others.emplace_back([&] { row.Run(times / row.Threads); });
    row.Run(times / row.Threads);
    for (std::thread& other : others)
        other.join();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/// Nanoseconds per operation: the median of nine runs of about 30 ms.
double MedianOf(const Row& row)
{
    row.Begin();
    std::size_t times = 64;
    while (SecondsOf(row, times) < 0.01 && times < 100000000)
        times *= 2;
    std::vector<double> results;
    for (int i = 0; i < 9; ++i)
        results.push_back(SecondsOf(row, times * 3) * 1e9 /
                          static_cast<double>(times * 3 / row.Threads * row.Threads));
    row.End();
    std::nth_element(results.begin(), results.begin() + 4, results.end());
    return results[4];
}

int TimeRows(const std::string& part)
{
    std::map<std::string, double> medians;
    for (const Row& row : Rows())
        if (row.Name().find(part) != std::string::npos)
            medians[row.Name()] = MedianOf(row);
    PrintTable([&](const std::string& name) -> const double* {
        const auto found = medians.find(name);
        return found == medians.end() ? nullptr : &found->second;
    });
    return 0;
}

} // namespace

// Not inlined and with a plain name, for callgrind's --toggle-collect.
extern "C" [[gnu::noinline]] void CountedRun(const Row& row, std::size_t times)
{
    row.Run(times);
}

int main(int argc, char** argv)
{
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    const std::string first = arguments.empty() ? "" : arguments[0];
    if (first == "--help" || first == "-h")
        return std::fputs(Usage, stdout) < 0;
    if (first == "--list") {
        for (const Row& row : Rows())
            std::printf("%s\n", row.Name().c_str());
        return 0;
    }
    if (first == "--time")
        return TimeRows(arguments.size() > 1 ? arguments[1] : "");
    if (first == "--row" && arguments.size() == 4 && arguments[2] == "--times") {
        const Row* const row = Find(arguments[1]);
        if (!row) {
            std::fprintf(stderr, "bench: no row %s; see --list\n", arguments[1].c_str());
            return 2;
        }
        row->Begin();
        row->Run(100);
        CountedRun(*row, std::strtoul(arguments[3].c_str(), nullptr, 10));
        row->End();
        return 0;
    }
#ifdef MARVANE_BENCH_GOOGLE
    return RunGoogleBenchmark(argc, argv);
#else
    if (!arguments.empty())
        return std::fputs(Usage, stderr), 2;
    return TimeRows("");
#endif
}
