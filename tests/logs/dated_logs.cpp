#include "tests/logs/dated_logs.h"

#include <chrono>
#include <filesystem>

#include "tests/logs/log_digest.h"

namespace marvane::testing {

namespace fs = std::filesystem;

namespace {

/// Noon, so that it is the same day in nearly all zones.
fs::file_time_type Change()
{
    using namespace std::chrono;
    return file_clock::from_sys(system_clock::time_point(sys_days(2026y / 11 / 22) + 12h));
}

} // namespace

std::string DatedLogs::Path(const std::string& name) const
{
    const fs::path copy = folder_.Path() / name;
    fs::create_directories(copy.parent_path());
    fs::copy(HandMadeLog(name), copy, fs::copy_options::recursive | fs::copy_options::skip_existing);
    if (fs::is_regular_file(copy))
        fs::last_write_time(copy, Change());
    else
        for (const fs::directory_entry& entry : fs::recursive_directory_iterator(copy))
            if (entry.is_regular_file())
                fs::last_write_time(entry.path(), Change());
    return copy.string();
}

} // namespace marvane::testing
