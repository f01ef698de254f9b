// What is measured. A row is one implementation of one operation, repeatable any number of times.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace marvane::bench {

struct Row
{
    std::string Family; ///< the operation, such as "lock/calls2"
    std::string Way;    ///< the implementation: "marvane", "bare", "floor", "spdlog", or one of the dumps
    std::function<void()> Begin;
    std::function<void(std::size_t times)>
        Run; ///< runs on any thread, and on several at once if Threads is above 1
    std::function<void()> End;
    unsigned Threads = 1;

    std::string Name() const { return Family + ":" + Way; }
};

/// All rows, those of a family next to each other.
const std::vector<Row>& Rows();

/// Add the rows of calls, events and comms reports, and those of dumps.
void AddCallRows(std::vector<Row>& rows);
void AddDumpRows(std::vector<Row>& rows);

/// Looks up the time of one operation in nanoseconds by the row's name; null if the row was not measured.
using Times = std::function<const double*(const std::string& row)>;

/// Prints the rows of each family side by side with their ratios, and the figures computed from several rows.
void PrintTable(const Times& times);

} // namespace marvane::bench
