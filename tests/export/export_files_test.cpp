// Where an export goes, and that no half of one is ever found under its name.
#include <filesystem>

#include <gtest/gtest.h>

#include "platform/files.h"
#include "tests/support/child_program.h"
#include "tool/console/nearest.h"
#include "tool/export/format.h"

namespace marvane::testing {
namespace {

namespace fs = std::filesystem;

const std::string Demo = MARVANE_SOURCE_DIR "/tests/logs/demo/D-PDU_API_Logger_22-11-2026_00-27-36.LGR";

ProgramResult Export(const std::string& arguments)
{
    return RunProgram("marvane", "export --format jsonl " + arguments + " " + Quoted(Demo));
}

std::size_t FilesIn(const TemporaryFolder& folder)
{
    return static_cast<std::size_t>(
        std::distance(fs::directory_iterator(folder.Path()), fs::directory_iterator()));
}

TEST(ExportFiles, TheNamesOfTheOptionAreThoseOfTheTable)
{
    std::vector<std::string_view> names;
    for (const tool::Format& format : tool::Formats())
        names.push_back(format.Name);
    EXPECT_EQ(names, tool::Words(tool::FormatNames));
}

TEST(ExportFiles, AFileHoldsWhatStandardOutputWouldShow)
{
    const TemporaryFolder folder;
    const ProgramResult shown = Export("-o -");
    const ProgramResult written = Export("-o " + Quoted(folder / "demo.jsonl"));
    EXPECT_EQ(shown.Status, 0);
    EXPECT_EQ(written.Status, 0);
    EXPECT_EQ(written.Output + written.Errors, "");
    EXPECT_EQ(FileText(folder / "demo.jsonl"), shown.Output);
    EXPECT_EQ(FilesIn(folder), 1u);
}

TEST(ExportFiles, AFileThatExistsIsReplacedOnlyIfAsked)
{
    const TemporaryFolder folder;
    const std::string path = folder / "kept.jsonl";
    WriteFileBytes(path, "kept");
    const ProgramResult refused = Export("-o " + Quoted(path));
    EXPECT_EQ(refused.Status, 2);
    EXPECT_EQ(refused.Errors, "marvane: " + path + ": exists (--force replaces it)\n");
    EXPECT_EQ(FileText(path), "kept");
    EXPECT_EQ(Export("--force -o " + Quoted(path)).Status, 0);
    EXPECT_EQ(FileText(path), Export("").Output);
}

TEST(ExportFiles, AFolderThatIsNotThereIsOneLine)
{
    const TemporaryFolder folder;
    const std::string path = (folder.Path() / "absent" / "x.jsonl").string();
    const ProgramResult result = Export("-o " + Quoted(path));
    EXPECT_EQ(result.Status, 2);
    EXPECT_EQ(result.Errors, "marvane: " + path + ": No such file or directory\n");
    EXPECT_EQ(FilesIn(folder), 0u);
}

TEST(ExportFiles, AFolderIsNoFile)
{
    const TemporaryFolder folder;
    const std::string path = folder.Path().string();
    EXPECT_EQ(Export("-o " + Quoted(path)).Errors, "marvane: " + path + ": is a folder\n");
}

TEST(ExportFiles, AFullDiskIsOneLine)
{
    if (platform::PathSeparator == '\\')
        GTEST_SKIP() << "there is no device that is always full";
    const ProgramResult result = Export("-o /dev/full");
    EXPECT_EQ(result.Status, 2);
    EXPECT_EQ(result.Errors, "marvane: /dev/full: No space left on device\n");
    EXPECT_TRUE(fs::exists("/dev/full"));
}

TEST(ExportFiles, AFormatThatIsUnknownIsWrongUsage)
{
    const ProgramResult result = RunProgram("marvane", "export --format jsnl " + Quoted(Demo));
    EXPECT_EQ(result.Status, 2);
    EXPECT_NE(result.Errors.find("did you mean 'jsonl'?"), std::string::npos) << result.Errors;
    EXPECT_EQ(RunProgram("marvane", "export " + Quoted(Demo)).Errors,
              "marvane: export needs --format\nTry 'marvane export --help'.\n");
}

} // namespace
} // namespace marvane::testing
