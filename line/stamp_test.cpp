#include "line/stamp.h"

#include <string>

#include <gtest/gtest.h>

namespace marvane {
namespace {

std::string Text(const Stamp& stamp)
{
    char text[StampLength];
    return {text, PutStamp(text, stamp)};
}

TEST(Stamp, HasTimeAndThread)
{
    EXPECT_EQ(Text({14, 3, 7, 250, 0x1A2C}), "{14:03:07.250 - 00001A2C} ");
    EXPECT_EQ(Text({0, 0, 0, 0, 0}), "{00:00:00.000 - 00000000} ");
    EXPECT_EQ(Text({23, 59, 60, 999, 0xFFFFFFFF}), "{23:59:60.999 - FFFFFFFF} ");
}

TEST(Stamp, MillisecondsCanBeReplaced)
{
    std::string text = Text({14, 3, 7, 250, 0x1A2C});
    PutStampMilliseconds(text.data(), 9);
    EXPECT_EQ(text, "{14:03:07.009 - 00001A2C} ");
}

TEST(Stamp, IsReadBack)
{
    for (const Stamp& stamp : {Stamp{0, 0, 0, 0, 0}, Stamp{14, 3, 7, 250, 0x1A2C},
                               Stamp{23, 59, 60, 999, 0xFFFFFFFF}, Stamp{9, 8, 7, 6, 0xABCDEF01}})
        EXPECT_EQ(ParseStamp(Text(stamp) + "+ PDUConnect"), stamp);
}

TEST(Stamp, IsReadFromTheBeginningOfALineOnly)
{
    EXPECT_EQ(ParseStamp(""), std::nullopt);
    EXPECT_EQ(ParseStamp("{14:03:07.250 - 00001A2C}"), std::nullopt) << "the blank is missing";
    EXPECT_EQ(ParseStamp(" {14:03:07.250 - 00001A2C} "), std::nullopt);
    EXPECT_EQ(ParseStamp("\t\t\t\tCoPDataSize=3, pCoPData=0000000000CBDA90"), std::nullopt);
}

TEST(Stamp, WithOneWrongCharacterIsNone)
{
    const std::string good = "{14:03:07.250 - 00001A2C} ";
    for (std::size_t i = 0; i < good.size(); ++i) {
        std::string wrong = good;
        wrong[i] = '?';
        EXPECT_EQ(ParseStamp(wrong), std::nullopt) << wrong;
    }
    EXPECT_EQ(ParseStamp("{14:03:07.250 - 00001a2c} "), std::nullopt) << "lower case is not ours";
}

TEST(Stamp, WithATimeThatNoClockShowsIsNone)
{
    EXPECT_EQ(ParseStamp("{24:03:07.250 - 00001A2C} "), std::nullopt);
    EXPECT_EQ(ParseStamp("{14:60:07.250 - 00001A2C} "), std::nullopt);
    EXPECT_EQ(ParseStamp("{14:03:61.250 - 00001A2C} "), std::nullopt);
}

} // namespace
} // namespace marvane
