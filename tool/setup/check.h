// Why there is no log, or not the expected one: the configuration and all that it leads to.
#pragma once

#include <optional>
#include <string>

#include "tool/setup/configuration.h"
#include "tool/setup/finding.h"
#include "tool/setup/library_look.h"

namespace marvane::tool {

/// What the application will see in the end.
enum class CheckOutcome : std::uint8_t
{
    LogWithCalls,
    LogWithHeaders,
    NoLog,
    CallEndsApplication,
    NotConstructed,
};

struct CheckReport
{
    std::string Title;   ///< what was checked; empty if only one thing was
    std::string Marvane; ///< path of the copy of the logger library; empty without one
    CheckFindings All;
    CheckOutcome Result = CheckOutcome::NotConstructed;
    std::string LogFolder;
    bool HasOutcome = true; ///< false for a library alone
};

/// Checks the copy of the logger library at `marvane` with the configuration that it would read. With
/// `configuration` that one instead. Opens no log and makes no file.
CheckReport CheckChain(const std::string& marvane, const std::optional<std::string>& configuration);

/// Checks a configuration that is not on the disk yet, for a logger library of a machine type that will be at
/// `marvane`.
CheckReport CheckConfiguration(const Configuration& configuration, const std::string& marvane,
                               Machine machine);

/// Checks a target library alone.
CheckReport CheckLibrary(const std::string& path);

/// "Outcome: works, log in DIR."
std::string OutcomeText(const CheckReport& report);

/// 0 without errors and warnings, else 1.
int StatusOf(const CheckReport& report);

/// The report as one JSON object.
std::string ReportJson(const CheckReport& report);

} // namespace marvane::tool
