// The logs that a command reads: those of its operands, else the newest session that is found.
#pragma once

#include <vector>

#include "tool/console/arguments.h"
#include "tool/console/console.h"
#include "tool/read/log_files.h"
#include "tool/read/log_reader.h"

namespace marvane::tool {

/// The files that the operands name, in the order of time; without operands the newest session of the log
/// folder that applies here (--entry chooses). What can't be read is complained about. Throws Trouble if
/// there is none; with -f waits for one, and returns none only after the time-out.
std::vector<read::LogFile> FindLogs(const Arguments& arguments, Console& console);

/// As above, for given paths instead of the operands (`diff A B`).
std::vector<read::LogFile> FindLogs(const std::vector<std::string>& paths, Console& console);

/// Feeds all files to the reader, with progress, and finishes it. Trouble with a file that the reader reports
/// to its sink as FileTrouble or FileChanged is for the sink to complain about: ComplainAbout.
void ReadLogs(const std::vector<read::LogFile>& files, read::LogReader& reader,
              const read::ReadOptions& options = {});

/// Complains about a problem that concerns a whole file; leaves all others to the command.
void ComplainAbout(const read::Problem& problem, const std::vector<read::LogFile>& files, Console& console);

/// The names of the files whose numbers are before the line numbers ("2:605"); nothing for a single file.
void WriteFileNames(const std::vector<read::LogFile>& files, Console& console);

} // namespace marvane::tool
