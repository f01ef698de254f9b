// Measures all rows with Google Benchmark.
#pragma once

namespace marvane::bench {

/// Measures, prints the table, and obeys Google Benchmark's options. Returns the exit status.
int RunGoogleBenchmark(int argc, char** argv);

} // namespace marvane::bench
