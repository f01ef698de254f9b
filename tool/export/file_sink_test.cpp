#include "tool/export/sink.h"

#include <filesystem>

#include <gtest/gtest.h>

#include "tests/support/temporary_folder.h"
#include "tool/console/arguments.h"

namespace marvane::tool {
namespace {

const std::string Line = std::string(1023, 'a') + "\n";
constexpr int ManyLines = 1024;

class FileSinkTest : public ::testing::Test
{
protected:
    std::string Contents() const { return testing::FileText(path_); }

    testing::TemporaryFolder folder_;
    std::string path_ = folder_ / "export";
};

TEST_F(FileSinkTest, AFileHasItsNameOnlyWhenItIsComplete)
{
    const auto sink = MakeFileSink(path_, Existing::Refused);
    for (int i = 0; i < ManyLines; ++i)
        sink->Write(Line);
    EXPECT_FALSE(std::filesystem::exists(path_));
    sink->Finish();
    EXPECT_EQ(Contents().size(), ManyLines * Line.size());
}

TEST_F(FileSinkTest, WithoutAnEndNothingIsLeft)
{
    MakeFileSink(path_, Existing::Refused)->Write(Line);
    EXPECT_TRUE(std::filesystem::is_empty(folder_.Path()));
}

TEST_F(FileSinkTest, AFileThatIsExtendedGrowsByWholeLinesWhileItIsWritten)
{
    testing::WriteFileBytes(path_, "first\n");
    const auto sink = MakeFileSink(path_, Existing::Extended);
    for (int i = 0; i < ManyLines; ++i)
        sink->Write(Line);
    const std::string grown = Contents();
    EXPECT_GT(grown.size(), ManyLines * Line.size() / 2) << "memory is bounded";
    EXPECT_TRUE(grown.starts_with("first\na"));
    EXPECT_EQ((grown.size() - 6) % Line.size(), 0u);
}

TEST_F(FileSinkTest, AFileThatExistsIsReplacedOnlyIfThatIsAskedFor)
{
    testing::WriteFileBytes(path_, "old\n");
    EXPECT_THROW(MakeFileSink(path_, Existing::Refused), Trouble);
    const auto sink = MakeFileSink(path_, Existing::Replaced);
    sink->Write("new\n");
    EXPECT_EQ(Contents(), "old\n");
    sink->Finish();
    EXPECT_EQ(Contents(), "new\n");
}

} // namespace
} // namespace marvane::tool
