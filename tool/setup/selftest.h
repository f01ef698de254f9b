// The proof of the package on a real machine: the sample session on the simulated interface, through the
// logger library.
#pragma once

#include <optional>
#include <string>

#include "tool/setup/binary_file.h"
#include "tool/setup/finding.h"

namespace marvane::tool {

/// What the selftest of one width found.
struct SelftestResult
{
    Machine For = Machine::X64;
    bool IsDelivered = false; ///< false: nothing was tested
    CheckFindings All;
    std::string Version; ///< of the logger library, empty if it has none
    std::size_t Calls = 0;
    std::size_t Functions = 0;
    std::size_t LogLines = 0;
    std::optional<double> BareCall;   ///< nanoseconds of a call without the logger library
    std::optional<double> LoggedCall; ///< and through it, with the default level
    std::string Log;                  ///< normalised
};

/// Runs the selftest with the programs of a machine type. `from` is the folder of the package, empty for the
/// places where it is delivered. Files are made in a temporary folder alone, which is removed again.
SelftestResult RunSelftest(const std::string& from, Machine machine);

/// What the helper process does: times calls through a library.
inline constexpr const char* MeasureHelperName = "measure-calls";

/// The results and the normalised log that a session must give: the lines that the sample application prints,
/// and those of the log.
std::string_view ExpectedResults();
std::string_view ExpectedLog();

} // namespace marvane::tool
