#include "logger/log/log_file.h"

#include <gtest/gtest.h>

#include "tests/support/process_state.h"
#include "tests/support/temporary_folder.h"

namespace marvane {
namespace {

constexpr std::size_t Page = 4096;

/// Letters in a run that shows where a piece is missing.
std::string Letters(std::size_t count)
{
    std::string text(count, ' ');
    for (std::size_t i = 0; i < count; ++i)
        text[i] = static_cast<char>('a' + i % 23);
    return text;
}

class LogFileTest : public ::testing::Test
{
protected:
    std::string OnDisc() const { return testing::FileText(path); }

    const testing::TemporaryFolder folder;
    const std::string path = folder / "log";
};

TEST_F(LogFileTest, TextsAreWrittenOutWhereAPageOfTheFileEnds)
{
    const std::string text = Letters(3 * Page);
    const auto file = LogFile::Open(path);
    for (std::size_t at = 0; at < text.size(); at += 96) {
        file->Write(std::string_view(text).substr(at, 96), false);
        const std::size_t written = std::min(at + 96, text.size());
        ASSERT_EQ(OnDisc(), text.substr(0, written / Page * Page)) << at;
    }
    EXPECT_EQ(OnDisc(), text);
}

TEST_F(LogFileTest, ATextOfSeveralPagesLeavesItsEndInTheBuffer)
{
    const std::string text = Letters(3 * Page + 500);
    const auto file = LogFile::Open(path);
    file->Write(std::string_view(text).substr(0, 100), false);
    file->Write(std::string_view(text).substr(100), false);
    EXPECT_EQ(OnDisc(), text.substr(0, 3 * Page));
    file->Flush();
    EXPECT_EQ(OnDisc(), text);
}

TEST_F(LogFileTest, AFlushedTextIsWholeAndThePagesStayWhereTheyAre)
{
    const std::string text = Letters(2 * Page);
    const auto file = LogFile::Open(path);
    file->Write(std::string_view(text).substr(0, 1000), false);
    file->Write(std::string_view(text).substr(1000, 1000), true);
    EXPECT_EQ(OnDisc(), text.substr(0, 2000));
    file->Write(std::string_view(text).substr(2000, Page - 2001), false);
    EXPECT_EQ(OnDisc(), text.substr(0, 2000));
    file->Write(std::string_view(text).substr(Page - 1, 2), false);
    EXPECT_EQ(OnDisc(), text.substr(0, Page));
    EXPECT_EQ(file->FlushedSize(), Page + 1);
    EXPECT_EQ(OnDisc(), text.substr(0, Page + 1));
}

TEST_F(LogFileTest, AFileThatIsContinuedHasItsPagesWhereTheyWere)
{
    std::string text = Letters(2 * Page);
    text[1233] = '\n'; // else a file after a cut line would begin with a line end
    testing::WriteFileBytes(path, text.substr(0, 1234));
    const auto file = LogFile::Open(path);
    file->Write(std::string_view(text).substr(1234, Page - 1235), false);
    EXPECT_EQ(OnDisc(), text.substr(0, 1234));
    file->Write(std::string_view(text).substr(Page - 1, 500), false);
    EXPECT_EQ(OnDisc(), text.substr(0, Page));
}

TEST_F(LogFileTest, AFileThatIsSharedGetsWholeTexts)
{
    const std::string text = Letters(2 * Page);
    const auto file = LogFile::Open(path);
    file->Write(std::string_view(text).substr(0, 100), false);
    file->Share();
    EXPECT_EQ(OnDisc(), text.substr(0, 100));
    std::size_t written = 100;
    for (std::size_t at = 100; at < text.size(); at += 300) {
        const std::string_view piece = std::string_view(text).substr(at, 300);
        file->Write(piece, false);
        if (OnDisc().size() != written) {
            written = at + piece.size();
            ASSERT_EQ(OnDisc(), text.substr(0, written));
        }
    }
    EXPECT_GT(written, Page);
    EXPECT_LT(written, text.size());
}

/// A line of one of two writers.
std::string NumberedLine(char writer, int number)
{
    return std::string(1, writer) + std::to_string(number) + Letters(80) + "\n";
}

TEST_F(LogFileTest, AFileThatTurnsOutToBeSharedGetsWholeLinesFromThenOn)
{
    {
        const auto a = LogFile::Open(path);
        const auto b = LogFile::Open(path);
        for (int i = 0; i < 500; ++i) {
            a->Write(NumberedLine('a', i), false);
            b->Write(NumberedLine('b', i), false);
        }
    }
    const std::string text = "\n" + OnDisc();
    // The first page, which was written while there was but one writer, may end within a line.
    for (int i = 100; i < 500; ++i)
        for (const char writer : {'a', 'b'})
            ASSERT_NE(text.find("\n" + NumberedLine(writer, i)), std::string::npos) << writer << i;
}

TEST_F(LogFileTest, AWriterWhoJoinsLaterIsNoticedWithinEightPages)
{
    {
        const auto first = LogFile::Open(path);
        for (int i = 0; i < 1000; ++i)
            first->Write(NumberedLine('f', i), false);
        first->Flush();
        const auto second = LogFile::Open(path);
        for (int i = 1000; i < 2000; ++i) {
            first->Write(NumberedLine('f', i), false);
            second->Write(NumberedLine('s', i), false);
        }
    }
    const std::string text = OnDisc();
    const std::size_t joined = text.find("\n" + NumberedLine('f', 999));
    int torn = 0;
    for (int i = 1000; i < 2000; ++i)
        for (const char writer : {'f', 's'})
            torn += text.find("\n" + NumberedLine(writer, i), joined) == std::string::npos;
    // An end of a page can tear a line and the beginning of another writer's.
    EXPECT_LE(torn, 2 * 8);
}

TEST_F(LogFileTest, WhatIsInTheBufferIsWrittenWhenTheFileIsClosed)
{
    const std::string text = Letters(Page + 17);
    LogFile::Open(path)->Write(text, false);
    EXPECT_EQ(OnDisc(), text);
}

TEST_F(LogFileTest, TheSizeCountsLineEndsAsTheSystemWritesThem)
{
    const auto file = LogFile::Open(path);
    for (int i = 0; i < 1000; ++i)
        file->Write("a line\n", false);
    const std::uint64_t size = file->FlushedSize();
    EXPECT_EQ(size, std::filesystem::file_size(path));
}

/// Tests of files that can't grow past a size, as on a full disk.
class FullDisk : public LogFileTest
{
protected:
    void SetUp() override
    {
        if (!testing::LargestFile::IsInForce())
            GTEST_SKIP() << "this system can't limit the size of files";
    }

    /// Size in bytes at which the disk is full.
    static constexpr std::size_t Room = 5000;
};

TEST_F(FullDisk, TextThatWasNotWrittenDoesNotCountAsSize)
{
    const auto file = LogFile::Open(path);
    const testing::LargestFile full(Room);
    for (int i = 0; i < 8; ++i) {
        file->Write(Letters(999) + "\n", true);
        EXPECT_EQ(file->FlushedSize(), std::filesystem::file_size(path)) << i;
    }
    EXPECT_EQ(file->FlushedSize(), Room);
}

TEST_F(FullDisk, BufferedTextThatWasNotWrittenDoesNotCountAsSize)
{
    testing::WriteFileBytes(path, Letters(Room - 200));
    const auto file = LogFile::Open(path);
    const testing::LargestFile full(Room);
    for (int i = 0; i < 5; ++i)
        file->Write(Letters(299) + "\n", false);
    EXPECT_EQ(file->FlushedSize(), Room);
}

TEST_F(FullDisk, ATextThatWasCutIsFollowedByALineEnd)
{
    const auto file = LogFile::Open(path);
    {
        const testing::LargestFile full(Room);
        file->Write(Letters(Room + 100) + "\n", true);
        file->Write("lost\n", true);
    }
    file->Write("next\n", true);
    EXPECT_EQ(OnDisc(), Letters(Room) + "\nnext\n");
    EXPECT_EQ(file->FlushedSize(), std::filesystem::file_size(path));
}

TEST_F(FullDisk, ABufferedTextThatWasCutIsFollowedByALineEnd)
{
    const std::string lines = Letters(2 * Page) + "\nrest of the text that is cut\n";
    const auto file = LogFile::Open(path);
    {
        const testing::LargestFile full(Room);
        file->Write(lines, false);
        file->Write("lost\n", true);
    }
    file->Write("next\n", false);
    file->Flush();
    EXPECT_EQ(OnDisc(), Letters(Room) + "\nnext\n");
}

TEST_F(FullDisk, ALineThatEndedInTheFileNeedsNoOtherEnd)
{
    const auto file = LogFile::Open(path);
    {
        const testing::LargestFile full(Room);
        file->Write(Letters(Room - 1) + "\n", true);
        file->Write("lost\n", true);
    }
    file->Write("next\n", true);
    EXPECT_EQ(OnDisc(), Letters(Room - 1) + "\nnext\n");
}

TEST_F(FullDisk, ALineThatWasCutIsEndedWhenTheFileIsOpenedAgain)
{
    {
        const testing::LargestFile full(Room);
        const auto file = LogFile::Open(path);
        file->Write(Letters(Room + 100) + "\n", true);
    }
    EXPECT_EQ(OnDisc(), Letters(Room));
    LogFile::Open(path)->Write("next\n", true);
    EXPECT_EQ(OnDisc(), Letters(Room) + "\nnext\n");
}

TEST_F(FullDisk, PagesAreWhereTheyWereAfterACut)
{
    const auto file = LogFile::Open(path);
    {
        const testing::LargestFile full(Room);
        file->Write(Letters(3 * Page), false);
    }
    // The line end goes ahead; the page is full one character earlier.
    file->Write(Letters(2 * Page - Room - 2), false);
    EXPECT_EQ(OnDisc(), Letters(Room));
    file->Write("xyz", false);
    EXPECT_EQ(OnDisc(), Letters(Room) + "\n" + Letters(2 * Page - Room - 2) + "x");
}

} // namespace
} // namespace marvane
