#include "bench/rows.h"

#include <cstdio>

namespace marvane::bench {

namespace {

void PrintTime(const double* time)
{
    time ? std::printf(" %11.1f", *time) : std::printf(" %11s", "-");
}

void PrintRatio(const double* time, const double* over)
{
    time&& over ? std::printf(" %9.2f", *time / *over) : std::printf(" %9s", "-");
}

void PrintCalls(const Times& times)
{
    std::printf("\nns a call (median)            marvane        bare       floor      spdlog  less bare  "
                "of floor of spdlog\n");
    std::string last;
    for (const Row& row : Rows()) {
        if (row.Family == last || row.Family.starts_with("dump/"))
            continue;
        last = row.Family;
        const double* const marvane = times(row.Family + ":marvane");
        const double* const bare = times(row.Family + ":bare");
        const double* const floor = times(row.Family + ":floor");
        const double* const spdlog = times(row.Family + ":spdlog");
        if (!marvane)
            continue;
        std::printf("%-25s", row.Family.c_str());
        for (const double* const time : {marvane, bare, floor, spdlog})
            PrintTime(time);
        bare ? std::printf(" %10.1f", *marvane - *bare) : std::printf(" %10s", "-");
        PrintRatio(marvane, floor);
        PrintRatio(marvane, spdlog);
        std::printf("\n");
    }
}

/// Nanoseconds per byte, from the slope between two sizes; 0 if they were not measured.
double Slope(const Times& times, const std::string& way)
{
    const double* const little = times("dump/64:" + way);
    const double* const much = times("dump/1024:" + way);
    return little && much ? (*much - *little) / (1024 - 64) : 0;
}

void PrintDumps(const Times& times)
{
    const double marvane = Slope(times, "marvane");
    if (marvane <= 0)
        return;
    std::printf(
        "\ndump, slope from 64 to 1,024 bytes   MB/s of payload   ns a line   marvane's speed over it\n");
    for (const char* way : {"marvane", "table", "simd"})
        if (const double slope = Slope(times, way); slope > 0)
            std::printf("%-36s %15.0f %11.1f %25.2f\n", way, 1000 / slope, slope * 16, slope / marvane);
}

void PrintMixed(const Times& times)
{
    const double* const started = times("start/64:marvane");
    const double* const floor = times("start/64:floor");
    const double dump = Slope(times, "table") * 64;
    if (started && floor && dump > 0)
        std::printf("\nstart/64 over its floor plus 64 bytes by the table: %.2f\n",
                    *started / (*floor + dump));
    const double* const one = times("lock/calls2:floor");
    const double* const own = times("lock/calls2:marvane");
    const double* const two = times("lock/calls2/threads2:marvane");
    if (one && own && two)
        std::printf(
            "two threads, each call: %.2f of the floor of one thread, %.2f of one thread's own cost\n",
            *two / *one, *two / *own);
    const double* const rotated = times("lock/rotation:marvane");
    const double* const flushed = times("lock/flush:floor");
    if (rotated && flushed)
        std::printf("both limits of rotation set: %.2f of the flushed floor\n", *rotated / *flushed);
}

} // namespace

const std::vector<Row>& Rows()
{
    static const std::vector<Row> rows = [] {
        std::vector<Row> all;
        AddCallRows(all);
        AddDumpRows(all);
        return all;
    }();
    return rows;
}

void PrintTable(const Times& times)
{
    PrintCalls(times);
    PrintDumps(times);
    PrintMixed(times);
}

} // namespace marvane::bench
