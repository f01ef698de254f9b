// A summary of an API log: the calls in it, and the lines that are wrong.
#pragma once

#include <cstddef>
#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace marvane::testing {

struct LogSummary
{
    std::map<std::string, std::size_t> Entries; ///< "+" lines by function
    std::map<std::string, std::size_t> Exits;   ///< "-" lines by function
    std::size_t Closings = 0;                   ///< "# name - Changing log file" lines
    std::size_t Continuations = 0;              ///< "# name - Continuation file" lines
    std::size_t Reports = 0;                    ///< first lines of comms reports
    /// What the reader of logs finds wrong: damaged lines, halves of calls whose other half is missing, texts
    /// that were cut. Calls that are under way at the end are not wrong.
    std::vector<std::string> Wrong;
};

/// The API log files of a folder as one text, in the order in which they were created.
std::string LogInOrder(const std::filesystem::path& folder);

/// Reads a log of calls that were logged with LogFnCalls 2. A last line without a line end is left out.
LogSummary Summarise(std::string_view log);

/// The lines of `summary.Wrong`, at most ten, in one text.
std::string WrongLines(const LogSummary& summary);

} // namespace marvane::testing
