// Where in a file a time begins, without reading what is before it.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>

#include "tool/read/log_files.h"

namespace marvane::read {

/// What may be left out of a file.
struct SkippedPart
{
    std::uint64_t Begin = 0; ///< the end of the header
    std::uint64_t End = 0;   ///< the beginning of a line that is at or before the wanted time
    std::uint64_t Lines = 0; ///< between the two
};

/// The part of a plain file that is before `since` and after its header. None if the file is not worth it, or
/// if the date of its lines can't be told from the time of day alone: it may be longer than a day, which the
/// time of its last change shows.
std::optional<SkippedPart> PartBefore(const LogFile& file, LogTime since);

} // namespace marvane::read
