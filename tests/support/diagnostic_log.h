// The diagnostic log in unit tests: its files in a temporary folder, its records without time and thread.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "logger/diagnostics/CLog.h"
#include "tests/support/temporary_folder.h"

namespace marvane::testing {

/// Starts the diagnostic log in a new folder, with one level for all subsystems. The records go to a file
/// there until the end, or until the test redirects them.
class DiagnosticLog
{
public:
    /// With level -2 no level file is created.
    explicit DiagnosticLog(std::int32_t level = 7);
    ~DiagnosticLog();
    DiagnosticLog(const DiagnosticLog&) = delete;
    DiagnosticLog& operator=(const DiagnosticLog&) = delete;

    const TemporaryFolder& Folder() const { return folder_; }
    std::filesystem::path LevelFile() const;
    std::filesystem::path InitLog() const { return folder_.Path() / "d-pdu-api_All_x64_init.log"; }

    /// The records so far as "LEVEL|file|function|message" lines.
    std::string Records() const { return Stripped(FileText(folder_.Path() / "records.log")); }

    /// Converts the records of a text to that form. Other lines stay as they are.
    static std::string Stripped(const std::string& records);

private:
    TemporaryFolder folder_;
    EnvironmentValue temp_;
    EnvironmentValue appData_;
};

/// Bytes of a level file.
std::string LevelBytes(const std::array<std::int32_t, SubsystemCount>& levels);

} // namespace marvane::testing
