// What is measured: each row is one way to do one thing, as often as it is told to.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace marvane::bench {

struct Row
{
    std::string Family; ///< what is done, such as "lock/calls2"
    std::string Way;    ///< who does it: "marvane", "bare", "floor", "spdlog", or a way to dump
    std::function<void()> Begin;
    std::function<void(std::size_t times)> Run; ///< on any thread
    std::function<void()> End;
    unsigned Threads = 1;

    std::string Name() const { return Family + ":" + Way; }
};

/// All rows. Those of one family stand together.
const std::vector<Row>& Rows();

/// The parts of it: calls, events and reports; dumps.
void AddCallRows(std::vector<Row>& rows);
void AddDumpRows(std::vector<Row>& rows);

/// Time of one operation in nanoseconds, or nothing for a row that was not measured.
using Times = std::function<const double*(const std::string& row)>;

/// Prints the rows side by side with their ratios, and the figures that are made of several rows.
void PrintTable(const Times& times);

} // namespace marvane::bench
