#include "logger/log/phase_text.h"

#include <cstdio>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "platform/process.h"

namespace marvane {
namespace {

using namespace std::string_view_literals;

constexpr const char* Marker = "\t\t\t\t...\n";

/// A text while logging is active, the settings as they were at the end.
class PhaseTextTest : public ::testing::Test
{
protected:
    PhaseTextTest()
    {
        Reset();
        SetSetting(NumericKey::LogEnabled, 1);
    }
    ~PhaseTextTest() override { Reset(); }

    std::string Text() const { return std::string(text->Text()); }

    /// Fills the buffer with `count` characters in statements that leave it open.
    void Fill(std::size_t count, char filler = 'f')
    {
        text->Add("%s"_fmt, std::string(count, filler));
        ASSERT_EQ(text->Text().size(), count);
    }

    const std::unique_ptr<PhaseText> text = std::make_unique<PhaseText>(PhaseTime(7, 8, 9, 10));

private:
    static void Reset()
    {
        for (const NumericKeyName& key : NumericKeyNames)
            SetSetting(key.Key, key.Default);
    }
};

TEST_F(PhaseTextTest, BeginsEmptyAndStatementsFollowEachOther)
{
    EXPECT_EQ(Text(), "");
    text->Add("+ %s"_fmt, "PDUConnect");
    text->Add("(hMod=%u)"_fmt, 1u);
    text->Add("\n"_fmt);
    EXPECT_EQ(Text(), "+ PDUConnect(hMod=1)\n");
}

TEST_F(PhaseTextTest, ALineEndingStatementBringsItsOwnLineBreak)
{
    text->AddLine("one"_fmt);
    text->AddLine("%s = %u"_fmt, "two", 2u);
    text->AddLine(""_fmt);
    EXPECT_EQ(Text(), "one\ntwo = 2\n\n");
}

TEST_F(PhaseTextTest, NothingIsComposedWhileLoggingIsNotActive)
{
    text->Add("kept"_fmt);
    SetSetting(NumericKey::LogEnabled, 0);
    text->Add("dropped"_fmt);
    text->AddLine("%s"_fmt, "dropped");
    text->AddStamp();
    EXPECT_EQ(Text(), "kept");
    SetSetting(NumericKey::LogEnabled, 1);
    text->Add(" again"_fmt);
    EXPECT_EQ(Text(), "kept again");
}

TEST_F(PhaseTextTest, TheLastByteAboveTheReserveBringsNoMarker)
{
    // 14,991 less 14,790 leaves 201.
    Fill(14790);
    EXPECT_TRUE(text->HasRoom());
    text->Add("x"_fmt);
    EXPECT_EQ(Text(), std::string(14790, 'f') + "x" + Marker);
}

TEST_F(PhaseTextTest, TheStatementThatReachesTheReserveIsFollowedByTheMarker)
{
    text->Add("%s"_fmt, std::string(14791, 'f'));
    EXPECT_EQ(Text(), std::string(14791, 'f') + Marker);
    EXPECT_FALSE(text->HasRoom());
}

TEST_F(PhaseTextTest, AfterTheMarkerEveryStatementIsDroppedAndNoSecondMarkerComes)
{
    text->Add("%s"_fmt, std::string(14800, 'f'));
    text->Add("dropped"_fmt);
    text->AddLine("dropped %u"_fmt, 1u);
    text->AddStamp();
    text->Add(""_fmt);
    EXPECT_EQ(Text(), std::string(14800, 'f') + Marker);
}

TEST_F(PhaseTextTest, ALongStatementMayUseTheReserve)
{
    Fill(14700);
    text->Add("%s"_fmt, std::string(250, 's'));
    EXPECT_EQ(Text(), std::string(14700, 'f') + std::string(250, 's') + Marker);
}

TEST_F(PhaseTextTest, ARoomBelowZeroIsNoLargeRoom)
{
    // Text and marker are longer than the 14,991 from which the room is counted.
    text->Add("%s"_fmt, std::string(14990, 'f'));
    EXPECT_EQ(Text().size(), 14998u);
    EXPECT_FALSE(text->HasRoom());
    text->Add("dropped"_fmt);
    EXPECT_EQ(Text(), std::string(14990, 'f') + Marker);
}

TEST_F(PhaseTextTest, TheLineBreakCountsAsPartOfItsStatement)
{
    Fill(14780);
    text->AddLine("%s"_fmt, "0123456789");
    EXPECT_EQ(Text(), std::string(14780, 'f') + "0123456789\n" + Marker);
}

TEST_F(PhaseTextTest, ALineEndingStatementInTheReserveKeepsItsLineBreak)
{
    Fill(14790);
    text->AddLine("%s"_fmt, std::string(100, 's'));
    EXPECT_EQ(Text(), std::string(14790, 'f') + std::string(100, 's') + "\n" + Marker);
}

TEST_F(PhaseTextTest, AStatementLongerThanTheBufferIsCutInFrontOfTheMarker)
{
    text->Add("<%s>"_fmt, std::string(20000, 's'));
    EXPECT_EQ(Text(), std::string("<") + std::string(14990, 's') + Marker);
    text->Clear();
    text->AddLine("<%s>"_fmt, std::string(20000, 's').c_str());
    EXPECT_EQ(Text(), std::string("<") + std::string(14990, 's') + Marker);
    EXPECT_LT(Text().size(), LogBuffer::Size);
}

TEST_F(PhaseTextTest, AClearedBufferIsEmptyAndTakesStatementsAndAMarkerAgain)
{
    text->Add("%s"_fmt, std::string(14800, 'f'));
    text->Clear();
    EXPECT_EQ(Text(), "");
    text->Add("new"_fmt);
    EXPECT_EQ(Text(), "new");
    text->Add("%s"_fmt, std::string(14800, 'g'));
    EXPECT_EQ(Text(), std::string("new") + std::string(14800, 'g') + Marker);
}

TEST_F(PhaseTextTest, AStampIsTimeAndThread)
{
    text->AddStamp();
    PhaseText late(PhaseTime(23, 59, 59, 999));
    late.AddStamp();
    char expected[100];
    const auto thread = static_cast<unsigned>(platform::CurrentThreadId());
    std::snprintf(expected, sizeof expected, "{07:08:09.010 - %08X} {23:59:59.999 - %08X} ", thread, thread);
    EXPECT_EQ(Text() + std::string(late.Text()), expected);
}

TEST_F(PhaseTextTest, WithoutATimeTheStampIsMidnight)
{
    PhaseText untimed;
    untimed.AddStamp();
    untimed.AddStamped("a"sv, "b"sv, "c"sv);
    const std::string stamp(PhaseTime(0, 0, 0, 0).StampText());
    EXPECT_EQ(untimed.Text(), stamp + stamp + "abc");
    EXPECT_EQ(untimed.Reserve(1), nullptr);
}

TEST_F(PhaseTextTest, AStampedTextIsTwoStatementsAtTheEndOfTheBuffer)
{
    const std::size_t stampEnd = LogBuffer::Capacity - LogBuffer::Margin;
    Fill(stampEnd - StampLength - 1);
    const std::string before = Text();
    const std::string stamp(text->Time().StampText());
    text->AddStamped(marks::Entry, "PDUConnect"sv);
    EXPECT_EQ(Text(), before + stamp + "+ PDUConnect" + Marker);
    text->Clear();
    Fill(stampEnd - StampLength);
    text->AddStamped(marks::Entry, "PDUConnect"sv);
    EXPECT_EQ(Text(), before + "f" + stamp + Marker);
}

TEST_F(PhaseTextTest, BeginsAPhaseOnlyWhileLoggingIsActive)
{
    text->Add("first"_fmt);
    SetSetting(NumericKey::LogEnabled, 0);
    text->Begin();
    EXPECT_EQ(Text(), "first");
    SetSetting(NumericKey::LogEnabled, 1);
    PhaseText untimed;
    untimed.Add("first"_fmt);
    untimed.Begin();
    EXPECT_EQ(untimed.Text(), "");
    EXPECT_TRUE(untimed.Time().IsSet());
}

TEST_F(PhaseTextTest, LoggingIsActiveByEitherOfTwoSettingsAtExactlyOne)
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
