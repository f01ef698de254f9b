// All rows as benchmarks of Google Benchmark.
#pragma once

namespace marvane::bench {

/// Measures, prints the table, and writes what its options ask for. Returns the exit status.
int RunGoogleBenchmark(int argc, char** argv);

} // namespace marvane::bench
