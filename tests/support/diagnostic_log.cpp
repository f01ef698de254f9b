#include "tests/support/diagnostic_log.h"

#include <cstdio>
#include <cstring>

#include "tests/support/pattern.h"

namespace marvane::testing {

DiagnosticLog::DiagnosticLog(std::int32_t level)
    : temp_("TEMP", folder_.Path().string()), appData_("APPDATA", folder_.Path().string())
{
    CLog::ReleaseLevelTable();
    if (level == -2)
        return;
    std::filesystem::create_directories(LevelFile().parent_path());
    std::array<std::int32_t, SubsystemCount> levels;
    levels.fill(level);
    WriteFileBytes(LevelFile(), LevelBytes(levels));
    CLog::EnsureLevelTable();
    std::FILE* const replaced = CLog::SetPipe(std::fopen((folder_ / "records.log").c_str(), "w"));
    if (replaced)
        std::fclose(replaced);
}

DiagnosticLog::~DiagnosticLog()
{
    CLog::UseConfiguredLevels(nullptr);
    std::FILE* const replaced = CLog::SetPipe(nullptr);
    if (replaced && replaced != stderr)
        std::fclose(replaced);
    CLog::Shutdown();
    CLog::ReleaseLevelTable();
}

std::filesystem::path DiagnosticLog::LevelFile() const
{
    return folder_.Path() / "Kestrix" / "PDUAPI" / "DEBUG.CFG";
}

std::string DiagnosticLog::Stripped(const std::string& records)
{
    return ReplaceMatches(
        records,
        R"([0-2]\d:[0-5]\d:[0-5]\d\.\d{6} ([A-Z0-9]+) +[0-9a-f]+:((?:class )?[\w/]+):\d+:((?:\w|::)+):)",
        "$1|$2|$3|");
}

std::string LevelBytes(const std::array<std::int32_t, SubsystemCount>& levels)
{
    std::string bytes(sizeof levels, '\0');
    std::memcpy(bytes.data(), levels.data(), sizeof levels);
    return bytes;
}

} // namespace marvane::testing
