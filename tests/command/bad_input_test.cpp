// Input that is no log: said in one line that names the file, the others are read, status 2 at the end.
#include <fstream>

#include <gtest/gtest.h>
#include <zlib.h>

#include "tests/command/sample_log.h"
#include "tests/support/child_program.h"

namespace marvane::testing {
namespace {

/// What the program says about a file that is no good, and whether it read the good one beside it.
void ExpectComplaint(const TemporaryFolder& folder, const std::string& name, const std::string& reason)
{
    WriteFileBytes(folder / "good.LGR", SampleLog());
    const ProgramResult result =
        RunProgram("marvane", "show --call PDUModuleConnect " + Quoted(folder / name) + " " +
                                  Quoted(folder / "good.LGR"));
    EXPECT_EQ(result.Status, 2);
    EXPECT_EQ(result.Output, LogCall(3, "PDUModuleConnect", "hMod=0x00000001"));
    EXPECT_EQ(result.Errors, "marvane: " + folder / name + ": " + reason + "\n");
}

std::string Compressed(const std::string& bytes, const std::string& path)
{
    gzFile file = gzopen(path.c_str(), "wb");
    gzwrite(file, bytes.data(), static_cast<unsigned>(bytes.size()));
    gzclose(file);
    return FileBytes(path);
}

TEST(BadInput, AFileThatIsNotThere)
{
    const TemporaryFolder folder;
    ExpectComplaint(folder, "absent.LGR", "no such file");
}

TEST(BadInput, AnEmptyFile)
{
    const TemporaryFolder folder;
    WriteFileBytes(folder / "empty.LGR", "");
    ExpectComplaint(folder, "empty.LGR", "is empty");
}

TEST(BadInput, TextThatIsNoLog)
{
    const TemporaryFolder folder;
    WriteFileBytes(folder / "notes.txt", "Dear diary\n{14:03 nothing happened}\n");
    ExpectComplaint(folder, "notes.txt", "is no log");
}

TEST(BadInput, ABinaryFile)
{
    const TemporaryFolder folder;
    std::string bytes;
    for (unsigned i = 0; i < 100'000; ++i)
        bytes += static_cast<char>(i * 7919 >> 3);
    WriteFileBytes(folder / "binary.LGR", bytes);
    ExpectComplaint(folder, "binary.LGR", "is no log");
}

TEST(BadInput, AFolderWithoutLogs)
{
    const TemporaryFolder folder;
    std::filesystem::create_directory(folder / "nothing");
    ExpectComplaint(folder, "nothing", "no logs in this folder");
}

TEST(BadInput, AFileWithoutRights)
{
    const TemporaryFolder folder;
    WriteFileBytes(folder / "secret.LGR", SampleLog());
    std::filesystem::permissions(folder / "secret.LGR", std::filesystem::perms::none);
    if (std::ifstream(folder / "secret.LGR").is_open())
        GTEST_SKIP() << "this user may read every file";
    ExpectComplaint(folder, "secret.LGR", "can't be opened");
}

TEST(BadInput, ADamagedCompressedFile)
{
    const TemporaryFolder folder;
    const std::string whole = Compressed(SampleLog(), folder / "whole.gz");
    WriteFileBytes(folder / "cut.LGR.gz", whole.substr(0, whole.size() / 2));
    WriteFileBytes(folder / "good.LGR", SampleLog());
    const ProgramResult result =
        RunProgram("marvane", "show -n 1 --call PDUConstruct " + Quoted(folder / "cut.LGR.gz"));
    EXPECT_EQ(result.Status, 2);
    EXPECT_EQ(result.Errors.find("marvane: " + folder / "cut.LGR.gz" + ": "), 0u) << result.Errors;
    EXPECT_EQ(std::count(result.Errors.begin(), result.Errors.end(), '\n'), 1) << result.Errors;
}

TEST(BadInput, ACompressedFileIsReadAsItsContents)
{
    const TemporaryFolder folder;
    Compressed(SampleLog(), folder / (LogName + ".gz"));
    const ProgramResult result = RunProgram("marvane", "show " + Quoted(folder / (LogName + ".gz")));
    EXPECT_EQ(result.Status, 0);
    EXPECT_EQ(result.Output, SampleLog());
}

} // namespace
} // namespace marvane::testing
