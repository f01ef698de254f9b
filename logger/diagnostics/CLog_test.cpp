#include "logger/diagnostics/CLog.h"

#include <array>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/process.h"
#include "tests/support/diagnostic_log.h"
#include "tests/support/pattern.h"

namespace marvane {
namespace {

using testing::DiagnosticLog;

void Report(DebugLevel level, Subsystem subsystem = Subsystem::GENERAL)
{
    Diagnose({level, subsystem, "lib/CLog", "Test::Function"}, "message ", 255);
}

std::array<std::int32_t, SubsystemCount> Levels(std::int32_t level)
{
    std::array<std::int32_t, SubsystemCount> levels;
    levels.fill(level);
    return levels;
}

TEST(DiagnosticRecord, HasTimeLevelThreadPlaceAndMessage)
{
    const DiagnosticLog log;
    Report(DebugLevel::Warn);
    char thread[40];
    std::snprintf(thread, sizeof thread, "%5x", static_cast<unsigned>(platform::CurrentThreadId()));
    const std::string form = std::string(R"([0-2]\d:[0-5]\d:[0-5]\d\.\d{6} WARN   )") + thread +
                             R"(:lib/CLog:\d+:Test::Function:message 255\n)";
    const std::string text = testing::FileText(log.Folder().Path() / "records.log");
    EXPECT_TRUE(testing::HasForm(text, form)) << text;
}

TEST(DiagnosticRecord, AppearsOnlyUpToTheLevelOfItsSubsystem)
{
    const DiagnosticLog log(1);
    auto levels = Levels(1);
    levels[static_cast<std::size_t>(Subsystem::APP)] = 4;
    // In place, since Windows cuts no file that is mapped.
    std::fstream(log.LevelFile(), std::ios::in | std::ios::out | std::ios::binary)
        << testing::LevelBytes(levels);
    Report(DebugLevel::Notice);
    Report(DebugLevel::Debug, Subsystem::APP);
    Report(DebugLevel::Debug1, Subsystem::APP);
    EXPECT_EQ(log.Records(), "DEBUG|lib/CLog|Test::Function|message 255\n");
}

TEST(DiagnosticRecord, ANegativeLevelSilencesEvenErrors)
{
    const DiagnosticLog log(-1);
    Report(DebugLevel::Error);
    EXPECT_EQ(log.Records(), "");
}

TEST(LevelFile, IsMadeWithItsFoldersAndNineteenWarnings)
{
    const DiagnosticLog log(-2);
    EXPECT_TRUE(CLog::EnsureLevelTable());
    EXPECT_EQ(testing::FileBytes(log.LevelFile()), testing::LevelBytes(Levels(1)));
}

TEST(LevelFile, OfEightBytesIsExtendedAndKeepsItsFirstTwoLevels)
{
    const DiagnosticLog log(-2);
    std::filesystem::create_directories(log.LevelFile().parent_path());
    auto levels = Levels(1);
    levels[0] = 5;
    levels[1] = 6;
    testing::WriteFileBytes(log.LevelFile(), testing::LevelBytes(levels).substr(0, 8));
    EXPECT_TRUE(CLog::EnsureLevelTable());
    EXPECT_EQ(testing::FileBytes(log.LevelFile()), testing::LevelBytes(levels));
    EXPECT_TRUE(CLog::Wanted(DebugLevel::Debug2, Subsystem::APP));
    EXPECT_FALSE(CLog::Wanted(DebugLevel::Notice, Subsystem::MODULE));
}

TEST(LevelFile, OfAnOddSizeIsExtendedBehindItsEnd)
{
    const DiagnosticLog log(-2);
    std::filesystem::create_directories(log.LevelFile().parent_path());
    testing::WriteFileBytes(log.LevelFile(), std::string("\x07\0\0\0\x05", 5));
    EXPECT_TRUE(CLog::EnsureLevelTable());
    EXPECT_EQ(testing::FileBytes(log.LevelFile()).size(), 5u + 18 * 4);
    EXPECT_TRUE(CLog::Wanted(DebugLevel::Debug3, Subsystem::GENERAL));
}

TEST(LevelFile, LongerThanNeededKeepsItsExtraBytes)
{
    const DiagnosticLog log(-2);
    std::filesystem::create_directories(log.LevelFile().parent_path());
    const std::string bytes = testing::LevelBytes(Levels(2)) + "extra bytes";
    testing::WriteFileBytes(log.LevelFile(), bytes);
    EXPECT_TRUE(CLog::EnsureLevelTable());
    EXPECT_EQ(testing::FileBytes(log.LevelFile()), bytes);
}

TEST(LevelFile, AChangeFromOutsideAppliesToTheNextStatement)
{
    const DiagnosticLog log(1);
    EXPECT_FALSE(CLog::Wanted(DebugLevel::Debug, Subsystem::COMMS));
    std::FILE* const file = std::fopen(log.LevelFile().string().c_str(), "r+b");
    ASSERT_NE(file, nullptr);
    std::fseek(file, 7 * 4, SEEK_SET);
    std::fputc(4, file);
    std::fclose(file);
    EXPECT_TRUE(CLog::Wanted(DebugLevel::Debug, Subsystem::COMMS));
    EXPECT_FALSE(CLog::Wanted(DebugLevel::Debug, Subsystem::CLL));
}

TEST(LevelFile, ThatCanNotBeMadeLeavesErrorsAndWarnings)
{
    const DiagnosticLog log(-2);
    testing::WriteFileBytes(log.Folder().Path() / "Kestrix", "a file where the folder should be");
    EXPECT_FALSE(CLog::EnsureLevelTable());
    EXPECT_TRUE(CLog::Wanted(DebugLevel::Error, Subsystem::APP));
    EXPECT_TRUE(CLog::Wanted(DebugLevel::Warn, Subsystem::APP));
    EXPECT_FALSE(CLog::Wanted(DebugLevel::Notice, Subsystem::APP));
}

TEST(LevelFile, ThatCanNotBeMadeIsReportedOnceWithItsPathAndTheRecordsHaveNoTime)
{
    const DiagnosticLog log(-2);
    testing::WriteFileBytes(log.Folder().Path() / "Kestrix", "a file where the folder should be");
    ::testing::internal::CaptureStderr();
    Report(DebugLevel::Warn);
    Report(DebugLevel::Warn);
    const std::string text = ::testing::internal::GetCapturedStderr();
    char record[80];
    std::snprintf(record, sizeof record, "%5x:lib/CLog:", static_cast<unsigned>(platform::CurrentThreadId()));
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    ASSERT_EQ(lines.size(), 3u) << text;
    EXPECT_TRUE(lines[0].starts_with("CLog failed to initialise - ")) << text;
    EXPECT_TRUE(lines[0].ends_with(": " + log.LevelFile().string())) << text;
    for (const std::size_t i : {1u, 2u}) {
        EXPECT_TRUE(lines[i].starts_with(record)) << text;
        EXPECT_TRUE(lines[i].ends_with(":Test::Function:message 255")) << text;
    }
}

/// The records of bringing the log up with a level for all subsystems.
std::string InitRecords(std::int32_t level)
{
    const DiagnosticLog log(-2);
    std::filesystem::create_directories(log.LevelFile().parent_path());
    testing::WriteFileBytes(log.LevelFile(), testing::LevelBytes(Levels(level)));
    ::testing::internal::CaptureStderr();
    CLog::EnsureLevelTable();
    return DiagnosticLog::Stripped(::testing::internal::GetCapturedStderr() +
                                   testing::FileText(log.InitLog()));
}

TEST(InitLog, ItsTwoRecordsNeedLevelsTwoAndThree)
{
    const std::string notice =
        "NOTICE|lib/CLog|CLog::SetInitLogFile|Failed to re-direct startup to init log file: "
        "d-pdu-api_All_x64_init.log\n";
    const std::string info =
        "INFO|lib/CLog|CLog::SetInitLogFile|Directed to init log file: d-pdu-api_All_x64_init.log\n";
    EXPECT_EQ(InitRecords(1), "");
    EXPECT_EQ(InitRecords(2), notice);
    EXPECT_EQ(InitRecords(3), notice + info);
}

TEST(InitLog, ThatCanNotBeOpenedFallsBackToTheErrorStream)
{
    const DiagnosticLog log(1);
    const testing::EnvironmentValue nowhere("TEMP", log.Folder() / "no such folder");
    ::testing::internal::CaptureStderr();
    CLog::SetInitLogFile(true);
    Report(DebugLevel::Warn);
    EXPECT_EQ(DiagnosticLog::Stripped(::testing::internal::GetCapturedStderr()),
              "WARN|lib/CLog|Test::Function|message 255\n");
}

TEST(InitLog, WithoutATemporaryFolderTheOutputFallsBackToTheErrorStream)
{
    const DiagnosticLog log(1);
    const testing::EnvironmentValue undefined("TEMP", std::nullopt);
    // A stand-in where there is one.
    const testing::EnvironmentValue nowhere("TMPDIR", log.Folder() / "no such folder");
    ::testing::internal::CaptureStderr();
    CLog::SetInitLogFile(true);
    Report(DebugLevel::Warn);
    EXPECT_EQ(DiagnosticLog::Stripped(::testing::internal::GetCapturedStderr()),
              "WARN|lib/CLog|Test::Function|message 255\n");
}

TEST(Pipe, ThatIsInUseAlreadyIsReturnedWithoutARecord)
{
    const DiagnosticLog log(3);
    std::FILE* const stream = std::tmpfile();
    std::FILE* const former = CLog::SetPipe(stream);
    EXPECT_EQ(log.Records(), "INFO|lib/CLog|CLog::SetPipe|Leaving initial log file\n");
    EXPECT_EQ(CLog::SetPipe(stream), stream);
    EXPECT_EQ(std::ftell(stream), 0);
    EXPECT_EQ(CLog::SetPipe(former), stream);
    std::fclose(stream);
}

TEST(Pipe, NoneReturnsToTheInitLogAppending)
{
    const DiagnosticLog log(3);
    testing::WriteFileBytes(log.InitLog(), "kept\n");
    std::FILE* const former = CLog::SetPipe(nullptr);
    EXPECT_EQ(log.Records(),
              "INFO|lib/CLog|CLog::SetPipe|Returning to initial log file\n"
              "NOTICE|lib/CLog|CLog::SetInitLogFile|Failed to re-direct startup to init log file: "
              "d-pdu-api_All_x64_init.log\n");
    EXPECT_EQ(
        DiagnosticLog::Stripped(testing::FileText(log.InitLog())),
        "kept\nINFO|lib/CLog|CLog::SetInitLogFile|Directed to init log file: d-pdu-api_All_x64_init.log\n");
    std::fclose(former);
}

TEST(Shutdown, LeavesOneRecordInTheInitLog)
{
    const DiagnosticLog log(3);
    std::fclose(CLog::SetPipe(nullptr));
    CLog::Shutdown();
    const std::string text = DiagnosticLog::Stripped(testing::FileText(log.InitLog()));
    EXPECT_TRUE(text.ends_with("INFO|lib/CLog|CLog::Shutdown|Closing log file\n")) << text;
}

} // namespace
} // namespace marvane
