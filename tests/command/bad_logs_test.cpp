// Input that is no log, given to the commands that understand logs: one line that names the file, nothing
// about a log that was not read, the others read on, status 2.
#include <fstream>

#include <gtest/gtest.h>
#include <zlib.h>

#include "tests/command/sample_log.h"
#include "tests/support/child_program.h"

namespace marvane::testing {
namespace {

/// A file or folder that is no log, and what is said about it.
struct BadInput
{
    const char* Name;
    const char* Reason;
    void (*Make)(const std::string& path);
};

void MakeText(const std::string& path)
{
    WriteFileBytes(path, "Dear diary\n{14:03 nothing happened}\n");
}

void MakeEmpty(const std::string& path)
{
    WriteFileBytes(path, "");
}

void MakeBinary(const std::string& path)
{
    std::string bytes;
    for (unsigned i = 0; i < 100'000; ++i)
        bytes += static_cast<char>(i * 7919 >> 3);
    WriteFileBytes(path, bytes);
}

void MakeFolder(const std::string& path)
{
    std::filesystem::create_directory(path);
}

void MakeNothing(const std::string&) {}

/// Its header is damaged, so that not one line can be had from it.
void MakeDamaged(const std::string& path)
{
    gzFile file = gzopen(path.c_str(), "wb");
    const std::string log = SampleLog();
    gzwrite(file, log.data(), static_cast<unsigned>(log.size()));
    gzclose(file);
    std::string bytes = FileBytes(path);
    bytes[10] = '\x07'; // a kind of block that does not exist
    WriteFileBytes(path, bytes);
}

constexpr BadInput Inputs[] = {
    {"notes.txt", "is no log", MakeText},
    {"empty.LGR", "is empty", MakeEmpty},
    {"binary.LGR", "is no log", MakeBinary},
    {"nothing", "no logs in this folder", MakeFolder},
    {"absent.LGR", "no such file", MakeNothing},
    {"damaged.LGR.gz", "the compressed file is damaged", MakeDamaged},
};

/// A command that understands logs, and its exit status for the sample log, in which one call failed.
struct LogCommand
{
    const char* Words;
    int Status;
};

constexpr LogCommand Commands[] = {
    {"talk", 0}, {"errors", 1}, {"errors --json", 1}, {"summary", 0}, {"params", 0}};

ProgramResult RunOn(const LogCommand& command, const std::string& files)
{
    return RunProgram("marvane", command.Words + (" " + files));
}

/// Its date is before that of every file without a date in its name.
const std::string GoodName = "D-PDU_API_Logger_25-11-2001_14-03-00.LGR";

/// JSON without the names of the files.
std::string WithoutFileList(const std::string& output)
{
    const std::size_t files = output.find("\"files\":[");
    return files == std::string::npos ? output
                                      : output.substr(0, files) + output.substr(output.find(']', files));
}

class BadLogs : public ::testing::TestWithParam<BadInput>
{
protected:
    BadLogs()
    {
        GetParam().Make(folder_ / GetParam().Name);
        WriteFileBytes(Good(), SampleLog());
    }

    std::string Bad() const { return folder_ / GetParam().Name; }
    std::string Good() const { return folder_ / GoodName; }
    /// What follows the result of several files: those that could be opened.
    std::string FileNames() const
    {
        const std::string name = GetParam().Name;
        if (name == "nothing" || name == "absent.LGR")
            return "";
        return "\nfile 1   " + GoodName + "\nfile 2   " + name + "\n";
    }
    std::string Complaint() const { return "marvane: " + Bad() + ": " + GetParam().Reason + "\n"; }

    TemporaryFolder folder_;
};

TEST_P(BadLogs, AloneGiveOneLineAndNoResult)
{
    for (const LogCommand& command : Commands) {
        const ProgramResult result = RunOn(command, Quoted(Bad()));
        EXPECT_EQ(result.Status, 2) << command.Words;
        EXPECT_EQ(result.Output, "") << command.Words;
        EXPECT_EQ(result.Errors, Complaint()) << command.Words;
    }
}

TEST_P(BadLogs, DoNotKeepTheOthersFromBeingRead)
{
    for (const LogCommand& command : Commands) {
        const ProgramResult alone = RunOn(command, Quoted(Good()));
        EXPECT_EQ(alone.Status, command.Status) << command.Words;
        EXPECT_EQ(alone.Errors, "") << command.Words;
        EXPECT_NE(alone.Output, "") << command.Words;
        const ProgramResult result = RunOn(command, Quoted(Good()) + " " + Quoted(Bad()));
        EXPECT_EQ(result.Status, 2) << command.Words;
        EXPECT_EQ(result.Errors, Complaint()) << command.Words;
        EXPECT_EQ(WithoutFileList(result.Output),
                  alone.Output.starts_with('{') ? WithoutFileList(alone.Output) : alone.Output + FileNames())
            << command.Words;
    }
}

TEST_P(BadLogs, CanNotBeCompared)
{
    for (const bool isFirst : {true, false}) {
        const std::string files =
            isFirst ? Quoted(Bad()) + " " + Quoted(Good()) : Quoted(Good()) + " " + Quoted(Bad());
        const ProgramResult result = RunProgram("marvane", "diff " + files);
        EXPECT_EQ(result.Status, 2);
        EXPECT_EQ(result.Output, "");
        EXPECT_EQ(result.Errors, Complaint());
    }
}

std::string NameOf(const ::testing::TestParamInfo<BadInput>& input)
{
    const std::string name = input.param.Name;
    return name.substr(0, name.find('.'));
}
INSTANTIATE_TEST_SUITE_P(Inputs, BadLogs, ::testing::ValuesIn(Inputs), NameOf);

TEST(BadLogsWithoutRights, AreNamed)
{
    const TemporaryFolder folder;
    const std::string secret = folder / "secret.LGR";
    WriteFileBytes(secret, SampleLog());
    std::filesystem::permissions(secret, std::filesystem::perms::none);
    if (std::ifstream(secret).is_open())
        GTEST_SKIP() << "this user may read every file";
    for (const LogCommand& command : Commands) {
        const ProgramResult result = RunOn(command, Quoted(secret));
        EXPECT_EQ(result.Status, 2) << command.Words;
        EXPECT_EQ(result.Output, "") << command.Words;
        EXPECT_EQ(result.Errors, "marvane: " + secret + ": can't be opened\n") << command.Words;
    }
}

TEST(BadLogsCutShort, ShowWhatCanBeHad)
{
    const TemporaryFolder folder;
    const std::string path = folder / (LogName + ".gz");
    gzFile file = gzopen(path.c_str(), "wb1");
    std::string log = SampleLog();
    for (unsigned i = 0; i < 20'000; ++i)
        log += LogCall(i % 60, "PDUGetTimestamp", "hMod=0x00000001, p=" + std::to_string(i * 7919));
    gzwrite(file, log.data(), static_cast<unsigned>(log.size()));
    gzclose(file);
    const std::string whole = FileBytes(path);
    WriteFileBytes(path, whole.substr(0, whole.size() / 2));
    for (const LogCommand& command : Commands) {
        const ProgramResult result = RunOn(command, Quoted(path));
        EXPECT_EQ(result.Status, 2) << command.Words;
        EXPECT_NE(result.Output, "") << command.Words;
        EXPECT_EQ(result.Errors, "marvane: " + path + ": the compressed file ends too early\n")
            << command.Words;
    }
}

} // namespace
} // namespace marvane::testing
