// A report: a log as a page that a browser shows by itself.
#pragma once

#include <cstdint>

#include "tool/analysis/mdf_names.h"
#include "tool/export/redactor.h"
#include "tool/input/time_range.h"
#include "tool/read/log_files.h"
#include "tool/report/page.h"

namespace marvane::tool {

struct ReportInputs
{
    const std::vector<read::LogFile>& Files;
    Console& Messages; ///< for what concerns a file
    TimeRange Part{};
    MdfNames Names{};
    Redactor* Redaction = nullptr;
    std::vector<std::string_view> RedactedKinds{};
    bool HasRaw = false; ///< the log itself is in the page too
};

struct Report
{
    PageContent Content;
    std::uint64_t Lines = 0;
    bool HasSession = false; ///< false if there was no line of a log in what was read
};

/// Reads the log, with progress. Memory: the page, and a few hundred bytes for each call and request.
Report MakeReport(const ReportInputs& inputs);

} // namespace marvane::tool
