#include "logger/log/log_buffer.h"

#include <cstdio>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "platform/process.h"

namespace marvane {
namespace {

constexpr const char* Marker = "\t\t\t\t...\n";

/// A buffer while logging is active, the settings as they were at the end.
class LogBufferTest : public ::testing::Test
{
protected:
    LogBufferTest()
    {
        Reset();
        SetSetting(NumericKey::LogEnabled, 1);
    }
    ~LogBufferTest() override { Reset(); }

    std::string Text() const { return std::string(buffer->Text()); }

    /// Fills the buffer with `count` characters in statements that leave it open.
    void Fill(std::size_t count, char filler = 'f')
    {
        LogAppend(*buffer, "%s"_fmt, std::string(count, filler));
        ASSERT_EQ(buffer->Text().size(), count);
    }

    const std::unique_ptr<LogBuffer> buffer = std::make_unique<LogBuffer>();

private:
    static void Reset()
    {
        for (const NumericKeyName& key : NumericKeyNames)
            SetSetting(key.Key, key.Default);
    }
};

TEST_F(LogBufferTest, BeginsEmptyAndStatementsFollowEachOther)
{
    EXPECT_EQ(Text(), "");
    LogAppend(*buffer, "+ %s"_fmt, "PDUConnect");
    LogAppend(*buffer, "(hMod=%u)"_fmt, 1u);
    LogAppend(*buffer, "\n"_fmt);
    EXPECT_EQ(Text(), "+ PDUConnect(hMod=1)\n");
}

TEST_F(LogBufferTest, ALineEndingStatementBringsItsOwnLineBreak)
{
    LogAppendLine(*buffer, "one"_fmt);
    LogAppendLine(*buffer, "%s = %u"_fmt, "two", 2u);
    LogAppendLine(*buffer, ""_fmt);
    EXPECT_EQ(Text(), "one\ntwo = 2\n\n");
}

TEST_F(LogBufferTest, NothingIsComposedWhileLoggingIsNotActive)
{
    LogAppend(*buffer, "kept"_fmt);
    SetSetting(NumericKey::LogEnabled, 0);
    LogAppend(*buffer, "dropped"_fmt);
    LogAppendLine(*buffer, "%s"_fmt, "dropped");
    LogStamp(*buffer, {1, 2, 3, 4});
    EXPECT_EQ(Text(), "kept");
    SetSetting(NumericKey::LogEnabled, 1);
    LogAppend(*buffer, " again"_fmt);
    EXPECT_EQ(Text(), "kept again");
}

TEST_F(LogBufferTest, TheLastByteAboveTheReserveBringsNoMarker)
{
    // 14,991 less 14,790 leaves 201.
    Fill(14790);
    EXPECT_TRUE(buffer->HasRoom());
    LogAppend(*buffer, "x"_fmt);
    EXPECT_EQ(Text(), std::string(14790, 'f') + "x" + Marker);
}

TEST_F(LogBufferTest, TheStatementThatReachesTheReserveIsFollowedByTheMarker)
{
    LogAppend(*buffer, "%s"_fmt, std::string(14791, 'f'));
    EXPECT_EQ(Text(), std::string(14791, 'f') + Marker);
    EXPECT_FALSE(buffer->HasRoom());
}

TEST_F(LogBufferTest, BehindTheMarkerEveryStatementIsDroppedAndNoSecondMarkerComes)
{
    LogAppend(*buffer, "%s"_fmt, std::string(14800, 'f'));
    LogAppend(*buffer, "dropped"_fmt);
    LogAppendLine(*buffer, "dropped %u"_fmt, 1u);
    LogStamp(*buffer, {1, 2, 3, 4});
    LogAppend(*buffer, ""_fmt);
    EXPECT_EQ(Text(), std::string(14800, 'f') + Marker);
}

TEST_F(LogBufferTest, ALongStatementMayUseTheReserve)
{
    Fill(14700);
    LogAppend(*buffer, "%s"_fmt, std::string(250, 's'));
    EXPECT_EQ(Text(), std::string(14700, 'f') + std::string(250, 's') + Marker);
}

TEST_F(LogBufferTest, ARoomBelowZeroIsNoLargeRoom)
{
    // Text and marker are longer than the 14,991 from which the room is counted.
    LogAppend(*buffer, "%s"_fmt, std::string(14990, 'f'));
    EXPECT_EQ(Text().size(), 14998u);
    EXPECT_FALSE(buffer->HasRoom());
    LogAppend(*buffer, "dropped"_fmt);
    EXPECT_EQ(Text(), std::string(14990, 'f') + Marker);
}

TEST_F(LogBufferTest, TheLineBreakCountsAsPartOfItsStatement)
{
    Fill(14780);
    LogAppendLine(*buffer, "%s"_fmt, "0123456789");
    EXPECT_EQ(Text(), std::string(14780, 'f') + "0123456789\n" + Marker);
}

TEST_F(LogBufferTest, ALineEndingStatementInTheReserveKeepsItsLineBreak)
{
    Fill(14790);
    LogAppendLine(*buffer, "%s"_fmt, std::string(100, 's'));
    EXPECT_EQ(Text(), std::string(14790, 'f') + std::string(100, 's') + "\n" + Marker);
}

TEST_F(LogBufferTest, AStatementLongerThanTheBufferIsCutInFrontOfTheMarker)
{
    LogAppend(*buffer, "<%s>"_fmt, std::string(20000, 's'));
    EXPECT_EQ(Text(), std::string("<") + std::string(14990, 's') + Marker);
    buffer->Clear();
    LogAppendLine(*buffer, "<%s>"_fmt, std::string(20000, 's').c_str());
    EXPECT_EQ(Text(), std::string("<") + std::string(14990, 's') + Marker);
    EXPECT_LT(Text().size(), LogBuffer::Size);
}

TEST_F(LogBufferTest, AClearedBufferIsEmptyAndTakesStatementsAndAMarkerAgain)
{
    LogAppend(*buffer, "%s"_fmt, std::string(14800, 'f'));
    buffer->Clear();
    EXPECT_EQ(Text(), "");
    LogAppend(*buffer, "new"_fmt);
    EXPECT_EQ(Text(), "new");
    LogAppend(*buffer, "%s"_fmt, std::string(14800, 'g'));
    EXPECT_EQ(Text(), std::string("new") + std::string(14800, 'g') + Marker);
}

TEST_F(LogBufferTest, AStampIsTimeAndThread)
{
    LogStamp(*buffer, {7, 8, 9, 10});
    LogStamp(*buffer, {23, 59, 59, 999});
    char expected[100];
    const auto thread = static_cast<unsigned>(platform::CurrentThreadId());
    std::snprintf(expected, sizeof expected, "{07:08:09.010 - %08X} {23:59:59.999 - %08X} ", thread, thread);
    EXPECT_EQ(Text(), expected);
}

TEST_F(LogBufferTest, LoggingIsActiveByEitherOfTwoSettingsAtExactlyOne)
{
    for (const std::uint32_t enabled : {0u, 1u, 2u, 0xFFFFFFFFu})
        for (const std::uint32_t newFile : {0u, 1u, 2u, 0xFFFFFFFFu}) {
            SetSetting(NumericKey::LogEnabled, enabled);
            SetSetting(NumericKey::LogNewFileCfg, newFile);
            EXPECT_EQ(LoggingActive(), enabled == 1 || newFile == 1) << enabled << " " << newFile;
        }
}

} // namespace
} // namespace marvane
