// A file a day, and logs that are followed.
#include <filesystem>

#include <gtest/gtest.h>

#include "platform/files.h"
#include "tests/support/child_program.h"
#include "tool/read/byte_source.h"

namespace marvane::testing {
namespace {

namespace fs = std::filesystem;

std::string Line(const std::string& time, const std::string& text)
{
    return "{" + time + " - 00001A2C} + PDUGetVersion(" + text + ")\n";
}

/// A log with a line of each of two days.
void WriteTwoDays(const TemporaryFolder& folder, const std::string& last)
{
    WriteFileBytes(folder / "D-PDU_API_Logger_25-11-2026_23-00-00.LGR",
                   Line("23:00:00.000", "first") + Line("01:00:00.000", last));
}

std::string Unpacked(const fs::path& path)
{
    std::string text;
    char part[4096];
    const auto source = read::MaybeUnpacked(read::OpenFileSource(path));
    for (std::size_t count; (count = source->Read(part)) > 0;)
        text.append(part, count);
    EXPECT_EQ(source->Trouble(), "");
    return text;
}

/// How often a text is in another one.
int Count(const std::string& text, const std::string& part)
{
    int count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
        ++count;
    return count;
}

ProgramResult Export(const TemporaryFolder& logs, const TemporaryFolder& out, const std::string& options = "")
{
    return RunProgram("marvane", "export --format jsonl --host bench --out " + Quoted(out.Path().string()) +
                                     " " + options + " " + Quoted(logs.Path().string()));
}

TEST(DayFolder, HasAFileADayThatBeginsWithTheFirstRecord)
{
    const TemporaryFolder logs, out;
    WriteTwoDays(logs, "second");
    EXPECT_EQ(Export(logs, out).Status, 0);
    const std::string first = Unpacked(out.Path() / "bench" / "2026-11-25.jsonl.gz");
    const std::string second = Unpacked(out.Path() / "bench" / "2026-11-26.jsonl.gz");
    for (const std::string& file : {first, second}) {
        EXPECT_TRUE(file.starts_with("{\"kind\":\"log\","));
        EXPECT_EQ(Count(file, "\"kind\":\"log\""), 1);
        EXPECT_EQ(Count(file, "\"kind\":\"call\""), 1);
    }
    EXPECT_EQ(Count(first, "\"args\":\"first\"") + Count(second, "\"args\":\"second\""), 2);
}

TEST(DayFolder, ADayIsReplacedWhole)
{
    const TemporaryFolder logs, out;
    WriteTwoDays(logs, "second");
    EXPECT_EQ(Export(logs, out).Status, 0);
    WriteTwoDays(logs, "other");
    EXPECT_EQ(Export(logs, out).Status, 0);
    const std::string second = Unpacked(out.Path() / "bench" / "2026-11-26.jsonl.gz");
    EXPECT_EQ(Count(second, "\"args\":\"second\""), 0);
    EXPECT_EQ(Count(second, "\"args\":\"other\""), 1);
    EXPECT_EQ(std::distance(fs::directory_iterator(out.Path() / "bench"), fs::directory_iterator()), 2);
}

TEST(DayFolder, AHostIsOneFolderWhateverItsName)
{
    const TemporaryFolder logs, out;
    WriteTwoDays(logs, "second");
    EXPECT_EQ(Export(logs, out, "--host ../a").Status, 0);
    EXPECT_TRUE(fs::exists(out.Path() / ".._a" / "2026-11-25.jsonl.gz"));
}

TEST(DayFolder, FollowingAddsWholeLinesToADay)
{
    const TemporaryFolder logs, out;
    WriteTwoDays(logs, "second");
    EXPECT_EQ(Export(logs, out, "-f --timeout 0").Status, 1);
    EXPECT_EQ(Export(logs, out, "-f --timeout 0").Status, 1);
    const std::string second = Unpacked(out.Path() / "bench" / "2026-11-26.jsonl.gz");
    EXPECT_EQ(Count(second, "\"kind\":\"log\""), 1);
    EXPECT_EQ(Count(second, "\"args\":\"second\""), 2);
}

TEST(ExportFollow, AddsWholeLinesToAFile)
{
    const TemporaryFolder logs, out;
    WriteTwoDays(logs, "second");
    const std::string file = out / "live.jsonl";
    WriteFileBytes(file, "{}\n");
    const std::string arguments =
        "export --format jsonl -f --timeout 0 -o " + Quoted(file) + " " + Quoted(logs.Path().string());
    EXPECT_EQ(RunProgram("marvane", arguments).Status, 1);
    const std::string text = FileText(file);
    EXPECT_TRUE(text.starts_with("{}\n{\"kind\":\"log\","));
    EXPECT_TRUE(text.ends_with("}\n"));
    EXPECT_EQ(Count(text, "\"kind\":\"call\""), 2);
}

TEST(ExportFollow, IsNotForAFormatThatNeedsItsEnd)
{
    const TemporaryFolder logs;
    WriteTwoDays(logs, "second");
    EXPECT_EQ(RunProgram("marvane", "export --format sql -f " + Quoted(logs.Path().string())).Errors,
              "marvane: a log can't be followed with --format sql\nTry 'marvane export --help'.\n");
}

TEST(ExportTime, ZoneAndDateAreTakenFromTheCommandLine)
{
    const TemporaryFolder logs;
    WriteFileBytes(logs / "unnamed.LGR", Line("14:03:07.250", "x"));
    const ProgramResult result =
        RunProgram("marvane", "export --format csv --table problems --zone -03:30 --date 2024-02-29 " +
                                  Quoted(logs / "unnamed.LGR"));
    EXPECT_EQ(result.Output,
              "ts,session,what,seq,text,file,line,redacted,bytes_replaced\n"
              "2024-02-29T14:03:07.250-03:30,1,in_flight,1,\"PDUGetVersion: entered, never returned: "
              "the log ends here\",unnamed.LGR,1,,\n");
}

TEST(ExportTime, WithoutAZoneTheMachinesApplies)
{
    if (platform::PathSeparator == '\\')
        GTEST_SKIP() << "the zone is the system's, whatever TZ says";
    const TemporaryFolder logs;
    WriteTwoDays(logs, "second");
    const EnvironmentValue zone("TZ", "CET-1CEST,M3.5.0,M10.5.0/3");
    const ProgramResult result =
        RunProgram("marvane", "export --format csv --table problems " + Quoted(logs.Path().string()));
    EXPECT_NE(result.Output.find("2026-11-25T23:00:00.000+01:00"), std::string::npos) << result.Output;
}

} // namespace
} // namespace marvane::testing
