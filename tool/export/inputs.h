// What an export reads, and what the command line says about it: all that a format has to know.
#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "tool/analysis/mdf_names.h"
#include "tool/export/redactor.h"
#include "tool/input/time_range.h"
#include "tool/read/log_files.h"
#include "tool/read/log_reader.h"

namespace marvane::tool {

struct Inputs
{
    std::vector<read::LogFile>& Files; ///< in their order; grows while a log is followed
    Console& Messages;                 ///< for what concerns a file: ComplainAbout in the sink's OnProblem
    TimeRange Range{};                 ///< records outside are left out, but they may explain those inside
    MdfNames Names{};                  ///< for numbers that the log shows without a name
    std::string Host{};
    std::optional<int> Zone{}; ///< minutes from UTC to the time of the log; none: as on this machine
    std::vector<std::pair<std::string, std::string>> Tags{};
    Redactor* Redaction = nullptr; ///< what is read was redacted; records of changed lines are to say so
    std::string Table{};           ///< --table; empty: the format's usual one
    bool HasLines = false;         ///< --lines: the decoded lines of the calls too
    bool IsFollowing = false;

    /// Reads the files into `sink` once, with progress, and finishes the reader; follows them with --follow.
    /// `afterBatch` is called while following whenever a part was read: what is complete is then to be
    /// written and flushed. Sessions stay where they are until the next Read.
    void Read(
        read::LogSink& sink, read::Wants wants, const std::function<void()>& afterBatch = [] {}) const
    {
        Reading(sink, wants, afterBatch);
    }

    /// How Read does it.
    std::function<void(read::LogSink&, read::Wants, const std::function<void()>&)> Reading{};
};

} // namespace marvane::tool
