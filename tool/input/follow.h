// Following a log: going on with what the application adds to it.
#pragma once

#include <functional>
#include <vector>

#include "tool/console/arguments.h"
#include "tool/console/console.h"
#include "tool/read/log_files.h"
#include "tool/read/log_reader.h"

namespace marvane::tool {

/// True if the command line asks for it (-f).
bool IsFollowing(const Arguments& arguments);

/// In place of ReadLogs if IsFollowing: reads the files, then what is added to the last one of each family
/// and to files that are begun after it in the same folder, polling ten times a second; only half a line is
/// waited for. Files that it finds are added to `files`, whose places are the numbers of files in the reader.
/// `afterBatch` is called after each part that was read, for the command to write what is complete; then the
/// output is flushed. Ends with --until-match as soon as a line with that text was written (returns 0), with
/// --timeout (returns 1), else when the process is ended. Standard input is followed to its end (returns 1 if
/// the text did not come, else 0).
int FollowLogs(
    const Arguments& arguments, Console& console, std::vector<read::LogFile>& files, read::LogReader& reader,
    const std::function<void()>& afterBatch = [] {});

/// Calls `find` until it returns true or the time-out of the command line is over.
bool WaitFor(const Arguments& arguments, const std::function<bool()>& find);

} // namespace marvane::tool
