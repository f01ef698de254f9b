// Where in a file a time begins, without analysing what is before it.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <vector>

#include "tool/read/log_files.h"
#include "tool/read/skipped_lines.h"

namespace marvane::read {

/// A file of which only the headers and its end are needed.
struct NeededParts
{
    struct Header
    {
        FilePlace Begin;
        FilePlace End;
    };
    std::vector<Header> Headers; ///< that at the file's beginning, and the newest one if that is another
    FilePlace Rest;              ///< a line that is at or before the wanted time: from here on all is needed
};

/// What is needed of a plain file if only lines from `since` on are. With `wholeCalls` the calls that were
/// open at that time are read from their entry lines on, however long they have been open. None if all is
/// needed: if the file is not worth it, or if the date of its lines can't be told from the time of day alone.
/// It may be longer than a day, which the time of its last change shows.
std::optional<NeededParts> PartsSince(const LogFile& file, LogTime since, bool wholeCalls);

} // namespace marvane::read
