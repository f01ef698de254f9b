// The diagnostic log of a unit test: its files in a folder of the test's own, its records without what
// varies.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "logger/diagnostics/CLog.h"
#include "tests/support/temporary_folder.h"

namespace marvane::testing {

/// Points the diagnostic log at a new folder and brings it up with one level for all subsystems. The records
/// go to a file of their own until the end, or until the test redirects them.
class DiagnosticLog
{
public:
    /// A level of -2 leaves the level file unmade.
    explicit DiagnosticLog(std::int32_t level = 7);
    ~DiagnosticLog();
    DiagnosticLog(const DiagnosticLog&) = delete;
    DiagnosticLog& operator=(const DiagnosticLog&) = delete;

    const TemporaryFolder& Folder() const { return folder_; }
    std::filesystem::path LevelFile() const;
    std::filesystem::path InitLog() const { return folder_.Path() / "d-pdu-api_All_x64_init.log"; }

    /// The records so far as "LEVEL|file|function|message" lines.
    std::string Records() const { return Stripped(FileText(folder_.Path() / "records.log")); }

    /// Records of a text in that form. A record of another shape stays as it is.
    static std::string Stripped(const std::string& records);

private:
    TemporaryFolder folder_;
    EnvironmentValue temp_;
    EnvironmentValue appData_;
};

/// Bytes of a level file.
std::string LevelBytes(const std::array<std::int32_t, SubsystemCount>& levels);

} // namespace marvane::testing
