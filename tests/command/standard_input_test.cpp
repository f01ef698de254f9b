// Logs that come through standard input: the same bytes, once or several times, packed or not.

#include <gtest/gtest.h>
#include <zlib.h>

#include "platform/files.h"
#include "tests/command/sample_log.h"
#include "tests/support/child_program.h"
#include "tests/support/session.h"

namespace marvane::testing {
namespace {

/// A log with the line ends of Windows, in which a text holds the byte that ends a text file there.
std::string WindowsLog()
{
    std::string log =
        SampleLog() + LogCall(5, "PDUGetObjectId", "pShortname=\"\x1A\"") + LogCall(6, "PDUConnect");
    for (std::size_t at = log.find('\n'); at != std::string::npos; at = log.find('\n', at + 2))
        log.insert(at, 1, '\r');
    return log;
}

void Pack(const std::string& path, const std::string& bytes)
{
    gzFile file = gzopen(path.c_str(), "wb");
    gzwrite(file, bytes.data(), static_cast<unsigned>(bytes.size()));
    gzclose(file);
}

class StandardInput : public ::testing::Test
{
protected:
    StandardInput()
    {
        WriteFileBytes(plain_, WindowsLog());
        Pack(packed_, WindowsLog());
    }

    /// Runs a command with a file as its standard input; what it writes goes to the files output and errors.
    int Run(const std::string& arguments, const std::string& input) const
    {
        return RunWithStreams("marvane", arguments, {input, folder_ / "output", folder_ / "errors"});
    }

    /// What a command writes, byte by byte.
    std::string Bytes(const std::string& arguments, const std::string& input) const
    {
        EXPECT_EQ(Run(arguments, input), 0) << arguments;
        return FileBytes(folder_ / "output");
    }

    TemporaryFolder folder_;
    std::string plain_ = folder_ / "plain.LGR";
    std::string packed_ = folder_ / "packed.LGR.gz";
};

TEST_F(StandardInput, IsReadAsAFileIs)
{
    const std::string shown = Bytes("show " + Quoted(plain_), plain_);
    EXPECT_NE(shown.find("PDUConnect"), std::string::npos);
    EXPECT_EQ(Bytes("show -", plain_), shown);
    EXPECT_EQ(Bytes("show -", packed_), shown);
}

TEST_F(StandardInput, IsReadTwiceByteForByte)
{
    EXPECT_EQ(Bytes("cut --since 1990-01-01 -", plain_), WindowsLog());
    EXPECT_EQ(Bytes("cut --since 1990-01-01 -", packed_), WindowsLog());
    EXPECT_EQ(Bytes("cut --until -1s -", packed_), Bytes("cut --until -1s " + Quoted(plain_), plain_));
    EXPECT_EQ(Bytes("around --line 7 -", packed_), Bytes("around --line 7 " + Quoted(plain_), plain_));
}

TEST_F(StandardInput, IsKeptNowhereElseThanInTheTemporaryFolder)
{
    const std::string none = folder_ / "none";
    std::vector<std::unique_ptr<EnvironmentValue>> temp;
    for (const char* const name : {"TMPDIR", "TMP", "TEMP"})
        temp.push_back(std::make_unique<EnvironmentValue>(name, none));
    EXPECT_EQ(Run("around --line 7 -", plain_), 2);
    EXPECT_EQ(FileText(folder_ / "output"), "");
    EXPECT_EQ(FileText(folder_ / "errors"),
              "marvane: standard input can't be kept in the temporary folder\n");
}

} // namespace
} // namespace marvane::testing
