#include "logger/target/library_path.h"

#include "tests/support/logger_state.h"
#include "tests/support/session.h"

namespace marvane {
namespace {

class VersionText : public testing::LoggerState
{
protected:
    const std::string target = testing::BuildFolder() + testing::LibraryName("fake_target");
    std::string text = "<UNREAD>";
};

TEST_F(VersionText, IsTheProductVersionInFourGroups)
{
    EXPECT_TRUE(ReadVersionText(target, text));
    EXPECT_EQ(text, "R04.003.0002.0001");
}

TEST_F(VersionText, StaysUnreadWhileLoggingIsOff)
{
    SetSetting(NumericKey::LogEnabled, 0);
    EXPECT_FALSE(ReadVersionText(target, text));
    EXPECT_EQ(text, "<UNREAD>");
    EXPECT_FALSE(ReadVersionText(folder / "none", text));
    EXPECT_EQ(text, "<UNREAD>");
}

TEST_F(VersionText, OfAFileWithoutAVersionTakesThePlaceOfEightCharacters)
{
    EXPECT_FALSE(ReadVersionText(folder / "none", text));
    EXPECT_EQ(text, "<UNKNOWN");
}

TEST_F(VersionText, OfAnEarlierReadKeepsItsEndAfterTheFallback)
{
    ReadVersionText(target, text);
    EXPECT_FALSE(ReadVersionText(folder / "none", text));
    EXPECT_EQ(text, "<UNKNOWN0002.0001");
    EXPECT_TRUE(ReadVersionText(target, text));
    EXPECT_EQ(text, "R04.003.0002.0001");
}

} // namespace
} // namespace marvane
