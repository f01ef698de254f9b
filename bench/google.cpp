#include "bench/google.h"

#include <map>
#include <string>

#include <benchmark/benchmark.h>

#include "bench/rows.h"

namespace marvane::bench {

namespace {

constexpr std::size_t Batch = 64;

/// Prints as usual and stores the medians for the table. Rows of one thread use processor time, which other
/// programs on the machine disturb less than wall time.
class Medians : public benchmark::ConsoleReporter
{
public:
    Medians() : ConsoleReporter(OO_None) {}

    void ReportRuns(const std::vector<Run>& runs) override
    {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs)
            if (run.run_type == Run::RT_Aggregate ? run.aggregate_name == "median" : runs.size() == 1)
                medians_[run.run_name.function_name] =
                    run.threads > 1 ? run.GetAdjustedRealTime() : run.GetAdjustedCPUTime();
    }
    const double* Of(const std::string& row) const
    {
        const auto found = medians_.find(row);
        return found == medians_.end() ? nullptr : &found->second;
    }

private:
    std::map<std::string, double> medians_;
};

// Google Benchmark's hooks are plain functions of the state, so the row is identified by the argument.
const Row& RowOf(const benchmark::State& state)
{
    return Rows()[static_cast<std::size_t>(state.range(0))];
}

void Measure(benchmark::State& state)
{
    const Row& row = RowOf(state);
    while (state.KeepRunningBatch(Batch))
        row.Run(Batch);
}

} // namespace

int RunGoogleBenchmark(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    for (std::size_t i = 0; i < Rows().size(); ++i) {
        const Row& row = Rows()[i];
        benchmark::RegisterBenchmark(row.Name().c_str(), Measure)
            ->Arg(static_cast<std::int64_t>(i))
            ->Setup([](const benchmark::State& state) { RowOf(state).Begin(); })
            ->Teardown([](const benchmark::State& state) { RowOf(state).End(); })
            ->Threads(static_cast<int>(row.Threads))
            ->UseRealTime();
    }
    Medians reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    PrintTable([&](const std::string& row) { return reporter.Of(row); });
    benchmark::Shutdown();
    return 0;
}

} // namespace marvane::bench
